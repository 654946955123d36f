#include "bench/Programs.h"

#include "bench/SocketRequest.h"
#include "bench/Stopwatch.h"

namespace kestrova::bench {
namespace {

using namespace Qt::StringLiterals;

constexpr auto identifier = "com.brelvane.Kestrova"_L1;

test::ProcessSpec kestrovaIn(test::DesktopSession& session, const QString& dataHome) {
    session.environment().insert(u"XDG_DATA_HOME"_s, dataHome);
    return {.program = QStringLiteral(KESTROVA_BINARY)};
}

QString bareSocketIn(const Desktop& desktop) {
    return desktop.session().path(u"bare-socket"_s);
}

test::ProcessSpec bareIn(const Desktop& desktop, std::optional<std::chrono::milliseconds> wakesEvery) {
    QStringList arguments{bareSocketIn(desktop)};
    if (wakesEvery)
        arguments.append(QString::number(wakesEvery->count()));
    return {.program = QStringLiteral(BARE_PROGRAM_BINARY), .arguments = arguments};
}

} // namespace

// Histories that no limit trims: the usual one is far below what is measured here.
Desktop::Desktop() {
    m_session.writeFile(u"config/"_s + identifier + u"/defaults.json"_s, "{\"historyLimit\": 1000000}");
    m_empty = made("empty", {});
    m_texts = made("5000 texts", {.texts = 5'000});
    m_textsAndPictures = made("5000 texts, 200 pictures", {.texts = 5'000, .pictures = 200});
}

const Desktop::History& Desktop::manyTexts() {
    if (!m_manyTexts)
        m_manyTexts = made("100,000 texts", {.texts = 100'000});
    return *m_manyTexts;
}

const Desktop::History& Desktop::largePictures() {
    if (!m_largePictures)
        m_largePictures =
            made("1000 pictures of 3840x2160", {.pictures = 1'000, .pictureSize = {3840, 2160}});
    return *m_largePictures;
}

Desktop::History Desktop::hugePicture() const {
    return made("a picture of 8000x8000", {.pictures = 1, .pictureSize = {8'000, 8'000}});
}

Desktop::History Desktop::holding(const std::string& name, const QString& text) const {
    const QString dataHome = m_session.path(u"history of "_s + QString::fromStdString(name));
    fillStore(dataHome + u'/' + identifier, text);
    return {name, dataHome};
}

Desktop::History Desktop::made(const std::string& name, const SampleHistory& contents) const {
    const QString dataHome = m_session.path(u"history-%1-%2"_s.arg(contents.texts).arg(contents.pictures));
    fillStore(dataHome + u'/' + identifier, contents);
    return {name, dataHome};
}

RunningProgram::RunningProgram(Desktop& desktop, const Desktop::History& history)
    : RunningProgram(desktop.session(), history.dataHome) {}

RunningProgram::RunningProgram(test::DesktopSession& session, const QString& dataHome)
    : RunningProgram(session, dataHome + u'/' + identifier + u"/socket"_s, kestrovaIn(session, dataHome)) {}

RunningProgram::RunningProgram(Desktop& desktop, std::optional<std::chrono::milliseconds> wakesEvery)
    : RunningProgram(desktop.session(), bareSocketIn(desktop), bareIn(desktop, wakesEvery)) {}

RunningProgram::RunningProgram(test::DesktopSession& session, const QString& socketFile,
                               const test::ProcessSpec& spec)
    : m_socketFile(socketFile), m_process([&]() -> test::Process& {
          const Stopwatch watch;
          auto& process = session.start(spec);
          request(socketFile, {u"status"_s});
          m_millisecondsToReady = watch.milliseconds();
          return process;
      }()) {}

RunningProgram::~RunningProgram() {
    m_process.end();
}

QByteArray RunningProgram::ask(const QStringList& arguments) const {
    return request(m_socketFile, arguments);
}

} // namespace kestrova::bench
