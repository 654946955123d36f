#include "tests/desktop/Keys.h"

#include "tests/desktop/Waiting.h"

#include <stdexcept>

namespace kestrova::test {

namespace {

using namespace Qt::StringLiterals;

QString activate(DesktopSession& session, const QString& kind, const QString& pattern) {
    QString window;
    const auto isFound = [&] {
        // Without --sync: that ends with an error when a window goes while it looks, as splash screens do.
        const ProcessResult found =
            session.run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, kind, pattern});
        // A program's window is the last one that it mapped; splash screens come before it.
        window = QString::fromLatin1(found.standardOutput.trimmed().split('\n').last());
        return !window.isEmpty();
    };
    if (!eventually(isFound))
        throw std::runtime_error("no window of " + pattern.toStdString());
    session.run(u"xdotool"_s, {u"windowactivate"_s, u"--sync"_s, window});
    return window;
}

} // namespace

QString activateWindowOfClass(DesktopSession& session, const QString& windowClass) {
    return activate(session, u"--class"_s, windowClass);
}

QString activateWindowTitled(DesktopSession& session, const QString& title) {
    return activate(session, u"--name"_s, title);
}

void giveKeyboardTo(DesktopSession& session, const QString& window) {
    // A window that was only just made cannot have it yet, and what is asked of it then is lost.
    const bool hasIt = eventually([&] {
        session.run(u"xdotool"_s, {u"windowactivate"_s, window});
        return session.run(u"xdotool"_s, {u"getwindowfocus"_s}).standardOutput.trimmed() == window.toLatin1();
    });
    if (!hasIt)
        throw std::runtime_error("the window does not get the keyboard");
}

void pressKeys(DesktopSession& session, const QStringList& chords) {
    session.run(u"xdotool"_s, QStringList{u"key"_s, u"--clearmodifiers"_s, u"--delay"_s, u"30"_s} + chords);
}

} // namespace kestrova::test
