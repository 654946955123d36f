#include "tests/desktop/FakeApplication.h"

#include "tests/desktop/Waiting.h"

#include <QDir>
#include <QFile>

namespace kestrova::test {

namespace {

using namespace Qt::StringLiterals;

// The notes appear in one piece, when all is written.
constexpr const char* kScript = R"(#!/bin/sh
notes=%1
mkdir "$notes.part"
printf '%s\n' "$@" > "$notes.part/arguments"
printf '%s' "$DESKTOP_STARTUP_ID" > "$notes.part/token"
printf '%s' "$QT_QPA_PLATFORM" > "$notes.part/plugin"
sed -n 's/^SigBlk:[[:space:]]*//p' /proc/self/status > "$notes.part/signals"
ps -o sid= -p $$ | tr -d ' ' > "$notes.part/session"
echo $$ > "$notes.part/process"
mv "$notes.part" "$notes"
)";

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

FakeApplication::FakeApplication(DesktopSession& session, const QString& name,
                                 const QStringList& contentTypes)
    : m_notes(session.path(name + u"-notes"_s)) {
    const auto script =
        session.writeFile(u"bin/"_s + name, QByteArray(kScript).replace("%1", m_notes.toLocal8Bit()));
    QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const auto entry = u"[Desktop Entry]\nType=Application\nName=%1\nExec=%2 %u\nMimeType=%3;\n"_s.arg(
        name, script, contentTypes.join(u';'));
    session.writeFile(u"data/applications/%1.desktop"_s.arg(name), entry.toUtf8());
    auto choices = bytesOf(session.path(u"config/mimeapps.list"_s));
    if (choices.isEmpty())
        choices = "[Default Applications]\n";
    for (const auto& type : contentTypes)
        choices += u"%1=%2.desktop\n"_s.arg(type, name).toUtf8();
    session.writeFile(u"config/mimeapps.list"_s, choices);
}

bool FakeApplication::wasStarted() const {
    return QFile::exists(m_notes);
}

std::optional<FakeApplication::Start> FakeApplication::waitForStart() const {
    if (!eventually([this] { return wasStarted(); }))
        return std::nullopt;
    const QDir notes(m_notes);
    const auto text = [&](const QString& name) {
        return QString::fromUtf8(bytesOf(notes.filePath(name))).trimmed();
    };
    return Start{.arguments = text(u"arguments"_s).split(u'\n'),
                 .token = text(u"token"_s),
                 .displayPlugin = text(u"plugin"_s),
                 .blockedSignals = text(u"signals"_s),
                 .standsApart = text(u"session"_s) == text(u"process"_s)};
}

} // namespace kestrova::test
