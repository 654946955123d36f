#include "tests/desktop/KestrovaProgram.h"

#include "tests/desktop/Waiting.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>

#include <csignal>
#include <stdexcept>

namespace kestrova::test {

namespace {

using namespace Qt::StringLiterals;

constexpr auto kIdentifier = "com.brelvane.Kestrova"_L1;

} // namespace

KestrovaProgram::KestrovaProgram(DesktopSession& session)
    : m_session(session),
      m_binary(qEnvironmentVariable("KESTROVA_BINARY", QStringLiteral(KESTROVA_BINARY))) {}

Process& KestrovaProgram::launch() {
    m_process = &m_session.start({.program = m_binary});
    return *m_process;
}

Process& KestrovaProgram::launchObeyingFilePermissions() {
    m_process = &m_session.start({.program = m_binary, .obeysFilePermissions = true});
    return *m_process;
}

bool KestrovaProgram::start() {
    launch();
    return waitReady();
}

bool KestrovaProgram::waitReady() {
    return eventually([this] { return isReady() || !m_process->isRunning(); }) && m_process->isRunning();
}

ProcessResult KestrovaProgram::command(const QStringList& arguments) {
    return m_session.run(m_binary, arguments);
}

QJsonArray KestrovaProgram::rows() {
    const ProcessResult listed = command({u"list"_s, u"--json"_s, u"--limit"_s, u"1000000"_s});
    const QJsonDocument document = QJsonDocument::fromJson(listed.standardOutput);
    if (listed.exitStatus != 0 || !document.isArray())
        throw std::runtime_error("list failed: " + listed.standardError.toStdString());
    return document.array();
}

QStringList KestrovaProgram::contents() {
    QStringList all;
    for (const QJsonValue row : rows())
        all.append(row[u"content"].toString());
    return all;
}

bool KestrovaProgram::waitForRows(int count) {
    return eventually([this, count] { return rows().size() == count; });
}

bool KestrovaProgram::waitForNewest(const QString& content) {
    return eventually([this, &content] { return newestRow()[u"content"].toString() == content; });
}

QJsonObject KestrovaProgram::status() {
    return QJsonDocument::fromJson(command({u"status"_s, u"--json"_s}).standardOutput).object();
}

qint64 KestrovaProgram::changeCount() {
    return status()[u"changeCount"].toInteger(-1);
}

bool KestrovaProgram::quit() {
    return command({u"quit"_s}).exitStatus == 0 && m_process->waitForEnd(kGenerously);
}

void KestrovaProgram::killNow() {
    m_process->signal(SIGKILL);
    m_process->waitForEnd(kGenerously);
}

QString KestrovaProgram::dataFolder() const {
    return m_session.path(u"data/"_s + kIdentifier);
}

QString KestrovaProgram::configFolder() const {
    return m_session.path(u"config/"_s + kIdentifier);
}

QString KestrovaProgram::cacheFolder() const {
    return m_session.path(u"cache/Kestrova"_s);
}

QStringList KestrovaProgram::backups() const {
    return QDir(dataFolder()).entryList({u"store.backup-*"_s}, QDir::Files, QDir::Name);
}

QJsonObject KestrovaProgram::defaults() const {
    QFile file(defaultsFile());
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

void KestrovaProgram::editDefault(const QString& key, const QJsonValue& value) {
    QJsonObject all = defaults();
    all.insert(key, value);
    QDir().mkpath(configFolder());
    QSaveFile file(defaultsFile());
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(all).toJson()) < 0 || !file.commit())
        throw std::runtime_error("cannot write the defaults");
}

} // namespace kestrova::test
