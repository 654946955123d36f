/// A window with one text control: `qt_editor plain|line|short|password FILE TEXT ANCHOR CARET`. The control
/// shows TEXT, selected from ANCHOR to CARET, and FILE always holds what stands in it now. A short line takes
/// ten characters at most.

#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSaveFile>

namespace {

using namespace Qt::StringLiterals;

void save(const QString& path, const QString& text) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0 || !file.commit())
        qFatal("cannot write %s", qUtf8Printable(path));
}

void show(QWidget& window) {
    window.setWindowTitle(u"Qt editor"_s);
    window.resize(400, 200);
    window.show();
}

int edit(QPlainTextEdit& editor, const QString& path, const QString& text, int anchor, int caret) {
    editor.setPlainText(text);
    auto cursor = editor.textCursor();
    cursor.setPosition(anchor);
    cursor.setPosition(caret, QTextCursor::KeepAnchor);
    editor.setTextCursor(cursor);
    QObject::connect(&editor, &QPlainTextEdit::textChanged, &editor,
                     [&] { save(path, editor.toPlainText()); });
    show(editor);
    return QApplication::exec();
}

int edit(QLineEdit& editor, const QString& path, const QString& text, int anchor, int caret) {
    editor.setText(text);
    QObject::connect(&editor, &QLineEdit::textChanged, &editor,
                     [&path](const QString& now) { save(path, now); });
    // A line that gets the focus from the keyboard selects all of itself.
    QWidget window;
    editor.setParent(&window);
    editor.resize(360, editor.sizeHint().height());
    show(window);
    editor.setFocus(Qt::OtherFocusReason);
    editor.setSelection(anchor, caret - anchor);
    const int status = QApplication::exec();
    editor.setParent(nullptr);
    return status;
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const auto arguments = QApplication::arguments();
    if (arguments.size() != 6)
        qFatal("usage: qt_editor plain|line|short|password FILE TEXT ANCHOR CARET");
    const auto& kind = arguments[1];
    const auto& path = arguments[2];
    const auto& text = arguments[3];
    const int anchor = arguments[4].toInt();
    const int caret = arguments[5].toInt();
    save(path, text);
    if (kind == "plain"_L1) {
        QPlainTextEdit editor;
        return edit(editor, path, text, anchor, caret);
    }
    QLineEdit editor;
    if (kind == "short"_L1)
        editor.setMaxLength(10);
    if (kind == "password"_L1)
        editor.setEchoMode(QLineEdit::Password);
    return edit(editor, path, text, anchor, caret);
}
