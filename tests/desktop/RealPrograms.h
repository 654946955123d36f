#pragma once

#include "tests/desktop/DesktopSession.h"

/// Real programs in which a person copies. Each function starts the program in the session, waits for its
/// window, copies by keys and returns once the clipboard is the program's. Each throws std::runtime_error if
/// that fails.
namespace kestrova::test::realPrograms {

/// An editor shows a file with `text`; all of it is copied.
void copyFromEditor(DesktopSession& session, const QByteArray& text);
/// A word processor shows a file with `text`; all of it is copied, rich text included.
void copyFromWordProcessor(DesktopSession& session, const QByteArray& text);
/// A file manager shows the folder at `path`; all files in it are copied.
void copyAllInFolder(DesktopSession& session, const QString& path);
/// A password manager opens a database that holds `password`; it is copied.
void copyPassword(DesktopSession& session, const QByteArray& password);

/// What a page's script waits for before it says that it is there: until a browser has painted content, it
/// drops keys and presses.
QByteArray browserPaintsContent();
/// A browser shows `page`, which has some content, under that title. Answers its window as it is activated.
QString showInBrowser(DesktopSession& session, const QString& title, const QByteArray& page);

/// A browser on a page of ours.
class Browser {
public:
    explicit Browser(DesktopSession& session);

    /// The page copies a picture of 64 x 48 pixels.
    void copyPicture();
    /// The person types `address`, selects all of it and copies.
    void copyTypedAddress(const QString& address);

private:
    DesktopSession& m_session;
};

/// A command-line program puts `bytes` of the type `target` on the clipboard.
void copyFromTerminal(DesktopSession& session, const QByteArray& bytes, const QString& target);

} // namespace kestrova::test::realPrograms
