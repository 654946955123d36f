#include "tests/desktop/RealPrograms.h"

#include "tests/desktop/ClipboardReader.h"
#include "tests/desktop/Keys.h"
#include "tests/desktop/Waiting.h"

#include <algorithm>
#include <stdexcept>

namespace kestrova::test::realPrograms {

namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// Does what copies until `isCopied`: a program whose window has just come may not listen yet, and copying
/// the same thing again changes nothing.
void repeatUntil(const std::function<bool()>& isCopied, const std::function<void()>& copy) {
    // Each time the program gets longer: one that is busy answers late, and all at once.
    for (auto patience = 1s; patience <= 32s; patience *= 2) {
        copy();
        if (eventually(isCopied, patience))
            return;
    }
    throw std::runtime_error("nothing was copied");
}

void pressUntil(DesktopSession& session, const QStringList& chords, const std::function<bool()>& isCopied) {
    repeatUntil(isCopied, [&] { pressKeys(session, chords); });
}

/// True once another client than the one at construction owns the clipboard.
std::function<bool()> clipboardChangesHands(DesktopSession& session) {
    const auto x = std::make_shared<XConnection>(session.display());
    return [x, before = x->clipboardOwner()] {
        const xcb_window_t now = x->clipboardOwner();
        return now != XCB_WINDOW_NONE && now != before;
    };
}

void expectSuccess(const ProcessResult& result, const char* what) {
    if (result.exitStatus != 0)
        throw std::runtime_error(std::string(what) + ": " + result.standardError.toStdString());
}

} // namespace

void copyFromEditor(DesktopSession& session, const QByteArray& text) {
    const auto isCopied = clipboardChangesHands(session);
    session.start({.program = u"mousepad"_s, .arguments = {session.writeFile(u"home/note.txt"_s, text)}});
    activateWindowOfClass(session, u"Mousepad"_s);
    pressUntil(session, {u"ctrl+a"_s, u"ctrl+c"_s}, isCopied);
}

void copyFromWordProcessor(DesktopSession& session, const QByteArray& text) {
    const auto isCopied = clipboardChangesHands(session);
    session.start({.program = u"abiword"_s, .arguments = {session.writeFile(u"home/letter.txt"_s, text)}});
    activateWindowOfClass(session, u"Abiword"_s);
    pressUntil(session, {u"ctrl+a"_s, u"ctrl+c"_s}, isCopied);
}

void copyAllInFolder(DesktopSession& session, const QString& path) {
    const auto isCopied = clipboardChangesHands(session);
    session.start({.program = u"pcmanfm"_s, .arguments = {u"--no-desktop"_s, path}});
    activateWindowOfClass(session, u"Pcmanfm"_s);
    pressUntil(session, {u"ctrl+a"_s, u"ctrl+c"_s}, isCopied);
}

void copyPassword(DesktopSession& session, const QByteArray& password) {
    const QString database = session.path(u"home/passwords.kdbx"_s);
    // Its search for expired entries would take the keys for a moment after opening.
    session.writeFile(u"config/keepassxc/keepassxc.ini"_s,
                      "[GUI]\nShowExpiredEntriesOnDatabaseUnlock=false\n");
    expectSuccess(session.run({.program = u"keepassxc-cli"_s,
                               .arguments = {u"db-create"_s, u"-q"_s, u"-p"_s, database},
                               .standardInput = "master\nmaster\n"},
                              kGenerously),
                  "no password database");
    expectSuccess(
        session.run({.program = u"keepassxc-cli"_s,
                     .arguments = {u"add"_s, u"-q"_s, u"-u"_s, u"me"_s, u"-p"_s, database, u"Bank"_s},
                     .standardInput = "master\n" + password + '\n'},
                    kGenerously),
        "no password entry");
    session.start(
        {.program = u"keepassxc"_s, .arguments = {u"--pw-stdin"_s, database}, .standardInput = "master\n"});
    activateWindowTitled(session, u"passwords.kdbx"_s);
    ClipboardReader reader(session.display());
    pressUntil(session, {u"ctrl+c"_s},
               [&reader] { return std::ranges::count(reader.targets(), "x-kde-passwordManagerHint") == 1; });
}

QByteArray browserPaintsContent() {
    return R"(new Promise(done => new PerformanceObserver(list => {
    if (list.getEntriesByName('first-contentful-paint').length) done();
}).observe({type: 'paint', buffered: true})))";
}

QString showInBrowser(DesktopSession& session, const QString& title, const QByteArray& page) {
    const QString file = session.writeFile(
        u"home/page.html"_s, "<!doctype html><title>Not painted yet</title>\n" + page + "<script>" +
                                 browserPaintsContent() + ".then(() => document.title = '" + title.toUtf8() +
                                 "')</script>\n");
    session.start(
        {.program = u"chromium"_s,
         .arguments = {u"--no-sandbox"_s, u"--disable-gpu"_s, u"--no-first-run"_s,
                       u"--no-default-browser-check"_s, u"--disable-background-networking"_s,
                       u"--disable-component-update"_s, u"--disable-sync"_s, u"--password-store=basic"_s,
                       u"--user-data-dir="_s + session.path(u"home/browser"_s), u"file://"_s + file}});
    return activateWindowTitled(session, title);
}

Browser::Browser(DesktopSession& session) : m_session(session) {
    showInBrowser(session, u"Picture page"_s, R"(<canvas id="picture" width="64" height="48"></canvas>
<script>
const pen = picture.getContext('2d');
pen.fillStyle = '#2040c0';
pen.fillRect(0, 0, 64, 48);
pen.fillStyle = '#f0a000';
pen.fillRect(8, 8, 20, 20);
document.addEventListener('keydown', async event => {
    if (event.key !== 'j') return;
    const png = await new Promise(resolve => picture.toBlob(resolve));
    await navigator.clipboard.write([new ClipboardItem({'image/png': png})]);
});
</script>
)");
}

void Browser::copyPicture() {
    pressUntil(m_session, {u"j"_s}, clipboardChangesHands(m_session));
}

void Browser::copyTypedAddress(const QString& address) {
    ClipboardReader reader(m_session.display());
    // From the beginning each time: keys that were pressed before the browser listened are lost, and what is
    // typed takes the place of what the address bar had selected.
    repeatUntil([&] { return reader.read("UTF8_STRING") == address.toUtf8(); },
                [&] {
                    activateWindowTitled(m_session, u"Picture page"_s);
                    pressKeys(m_session, {u"ctrl+l"_s});
                    m_session.run(u"xdotool"_s, {u"type"_s, u"--delay"_s, u"15"_s, address});
                    pressKeys(m_session, {u"ctrl+a"_s, u"ctrl+c"_s});
                });
}

void copyFromTerminal(DesktopSession& session, const QByteArray& bytes, const QString& target) {
    const auto isCopied = clipboardChangesHands(session);
    session.start({.program = u"xclip"_s,
                   .arguments = {u"-quiet"_s, u"-selection"_s, u"clipboard"_s, u"-t"_s, target, u"-i"_s},
                   .standardInput = bytes});
    if (!eventually(isCopied))
        throw std::runtime_error("xclip did not take the clipboard");
}

} // namespace kestrova::test::realPrograms
