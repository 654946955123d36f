#include "tests/desktop/PasteDestination.h"

#include "tests/desktop/Mouse.h"
#include "tests/desktop/RealPrograms.h"
#include "tests/desktop/Waiting.h"

#include <QFile>

#include <algorithm>
#include <stdexcept>

namespace kestrova::test {

namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

QString contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// An editor of the desktop. Its title tells whether its text is in its file.
class Mousepad : public PasteDestination {
public:
    explicit Mousepad(DesktopSession& session)
        : PasteDestination(session.display()),
          m_keys(session.display()),
          m_file(session.writeFile(u"home/note.txt"_s, {})) {
        m_process = &session.start({.program = u"mousepad"_s, .arguments = {m_file}});
        awaitWindow(u"Mousepad"_s);
    }

    bool hasText() override { return isUnsaved() || !contents(m_file).isEmpty(); }
    QString text() override {
        if (isUnsaved()) {
            activate();
            m_keys.chord({keyAt::control, keyAt::s});
            eventually([this] { return !isUnsaved(); });
        }
        return contents(m_file);
    }

private:
    bool isUnsaved() const { return m_windows.title(m_window).startsWith(u'*'); }

    KeyPresser m_keys;
    QString m_file;
};

class QtEditor : public PasteDestination {
public:
    explicit QtEditor(DesktopSession& session)
        : PasteDestination(session.display()), m_file(session.writeFile(u"home/qt-note.txt"_s, {})) {
        m_process = &session.start({.program = QStringLiteral(QT_EDITOR_BINARY),
                                    .arguments = {u"plain"_s, m_file, QString(), u"0"_s, u"0"_s}});
        awaitWindow(u"qt_editor"_s);
    }

    QString text() override { return contents(m_file); }

private:
    QString m_file;
};

/// A terminal whose command writes at once what comes from the keyboard, without waiting for a line's end.
class Terminal : public PasteDestination {
public:
    Terminal(DesktopSession& session, const QString& program, const QStringList& arguments,
             const QString& windowClass)
        : PasteDestination(session.display()), m_file(session.path(u"home/terminal.txt"_s)) {
        const QString script = session.writeFile(
            u"home/record"_s, "#!/bin/sh\nstty -icanon -echo\nexec cat > " + m_file.toUtf8() + '\n');
        QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        m_process = &session.start({.program = program, .arguments = arguments + QStringList{script}});
        awaitWindow(windowClass);
        if (!eventually([this] { return QFile::exists(m_file); }))
            throw std::runtime_error("no command runs in " + program.toStdString());
    }

    QString text() override { return contents(m_file); }

private:
    QString m_file;
};

/// A browser on a page whose title repeats what its text area holds.
class Chromium : public PasteDestination {
public:
    explicit Chromium(DesktopSession& session) : PasteDestination(session.display()) {
        const QString page =
            session.writeFile(u"home/form.html"_s, R"(<!doctype html><meta charset="utf-8"><title>Form</title>
<p>Form</p>
<textarea id="area" autofocus rows="30" cols="90"></textarea>
<script>
let isPainted = false;
const tell = () => {
    if (isPainted && document.activeElement === area) document.title = 'Has ' + area.value + ' End';
};
area.addEventListener('input', tell);
area.addEventListener('focus', tell);
)" + realPrograms::browserPaintsContent() +
                                                       R"(.then(() => { isPainted = true; tell(); });
</script>
)");
        m_process = &session.start(
            {.program = u"chromium"_s,
             .arguments = {u"--no-sandbox"_s, u"--disable-gpu"_s, u"--no-first-run"_s,
                           u"--no-default-browser-check"_s, u"--disable-background-networking"_s,
                           u"--disable-component-update"_s, u"--disable-sync"_s, u"--password-store=basic"_s,
                           u"--user-data-dir="_s + session.path(u"home/browser"_s), u"file://"_s + page}});
        awaitWindow(u"Chromium"_s);
        const auto hasFocus = [this] { return m_windows.title(m_window).startsWith(u"Has "_s); };
        Mouse mouse(session.display());
        // A page that comes up while the browser is still busy may not get it by itself.
        if (!eventually([&] {
                if (eventually(hasFocus, 2s))
                    return true;
                mouse.click(m_windows.frame(m_window).center());
                return false;
            }))
            throw std::runtime_error("the page's text area has no focus");
    }

    QString text() override {
        const QString title = m_windows.title(m_window);
        const qsizetype end = title.lastIndexOf(u" End"_s);
        return end < 4 ? QString() : title.mid(4, end - 4);
    }
};

} // namespace

std::unique_ptr<PasteDestination> PasteDestination::start(DesktopSession& session, Kind kind) {
    switch (kind) {
    case Kind::Mousepad:
        return std::make_unique<Mousepad>(session);
    case Kind::QtEditor:
        return std::make_unique<QtEditor>(session);
    case Kind::Xterm:
        return std::make_unique<Terminal>(session, u"xterm"_s, QStringList{u"-e"_s}, u"XTerm"_s);
    case Kind::Lxterminal:
        return std::make_unique<Terminal>(session, u"lxterminal"_s, QStringList{u"--no-remote"_s, u"-e"_s},
                                          u"Lxterminal"_s);
    case Kind::XfceTerminal:
        return std::make_unique<Terminal>(session, u"xfce4-terminal"_s,
                                          QStringList{u"--disable-server"_s, u"-x"_s}, u"Xfce4-terminal"_s);
    case Kind::Chromium:
        return std::make_unique<Chromium>(session);
    }
    throw std::logic_error("no such program");
}

void PasteDestination::awaitWindow(const QString& windowClass) {
    const auto isThere = [&] {
        m_window = m_windows.active();
        return m_window != XCB_WINDOW_NONE &&
               m_windows.windowClass(m_window).contains(windowClass, Qt::CaseInsensitive) && hasKeyboard();
    };
    if (!eventually(isThere))
        throw std::runtime_error("no window of " + windowClass.toStdString() +
                                 " has the keyboard: " + m_process->standardError().toStdString());
}

bool PasteDestination::waitForAnyText() {
    return eventually([this] { return hasText(); });
}

bool PasteDestination::waitForText(const QString& expected) {
    return eventually([&] { return text() == expected; });
}

void PrintTo(PasteDestination::Kind kind, std::ostream* stream) {
    constexpr const char* kNames[]{"Mousepad", "QtEditor", "Xterm", "Lxterminal", "XfceTerminal", "Chromium"};
    *stream << kNames[static_cast<int>(kind)];
}

} // namespace kestrova::test
