#include "Kestrova/detail/widgets/ItemEditScreen.h"

#include "Kestrova/detail/LineEnds.h"
#include "Kestrova/detail/text/LargeTextEdit.h"
#include "Kestrova/detail/text/LargeTextLimit.h"
#include "Kestrova/detail/widgets/DetailBackBar.h"
#include "Kestrova/detail/widgets/EditorGround.h"
#include "Kestrova/detail/widgets/ItemEditor.h"
#include "Kestrova/shelf/controls/SheetButton.h"
#include "Kestrova/shelf/controls/TabStops.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QInputMethod>
#include <QKeyEvent>

#include <utility>

namespace kestrova {
namespace {

/// So many that the toolkit's control would take noticeably long for each letter typed among them.
bool hasManyLines(const QString& text) {
    constexpr qsizetype mostLineEnds = 10'000;
    return text.count(u'\n') + text.count(u'\r') > mostLineEnds;
}

} // namespace

ItemEditScreen::ItemEditScreen(const std::shared_ptr<ClipboardItem>& item, MainQueue& mainQueue,
                               ItemEditView::Callbacks callbacks, QWidget* parent)
    : DetailScreen(parent),
      m_view(item, mainQueue, std::move(callbacks)),
      m_cancel(new SheetButton(SheetButton::Role::cancel, this)),
      m_save(new SheetButton(SheetButton::Role::defaultAction, this)),
      m_ground(new EditorGround(this)),
      m_editor(makeEditor(m_view.text, m_ground)) {
    setFocusPolicy(Qt::NoFocus);
    m_cancel->setText(QStringLiteral("취소"));
    m_cancel->setCapsule({{}, QStringLiteral("Esc")});
    m_cancel->onTap = [this] { m_view.cancel(); };
    m_save->setText(QStringLiteral("저장"));
    m_save->setCapsule({{QStringLiteral("command")}, QStringLiteral("S")});
    m_save->onTap = [this] { save(); };

    auto* const buttons = new QWidget(this);
    auto* const row = new QHBoxLayout(buttons);
    row->setContentsMargins({});
    row->addWidget(m_cancel);
    row->addWidget(m_save);
    auto* const bar = new DetailBackBar(m_view.title(), buttons, this);
    bar->onBack = [this] { m_view.cancel(); };
    m_ground->setEditor(*m_editor.widget);
    setParts(*bar, *m_ground, groundPadding);

    m_editor.widget->setAccessibleName(m_view.title());
    // Before the controls, to which some of the screen's keys mean something else.
    for (auto* const control : tabStopsIn(*this))
        control->installEventFilter(this);
    m_view.onRender = [this] { render(); };
}

ItemEditScreen::Editor ItemEditScreen::makeEditor(const QString& text, QWidget* parent) {
    const bool isLarge = needsLargeTextControl(text) || hasManyLines(text);
    const auto lineEnd = isLarge ? std::nullopt : commonLineEnd(text);
    if (lineEnd) {
        auto* const editor = new ItemEditor(text, *lineEnd, parent);
        return {.widget = editor,
                .text = [editor] { return editor->text(); },
                .setTheme = [editor](const ShelfTheme& theme) { editor->setTheme(theme); }};
    }
    // It keeps every character too.
    auto* const editor = new LargeTextEdit(parent);
    editor->setText(text);
    return {.widget = editor,
            .text = [editor] { return editor->text(); },
            .setTheme = [editor](const ShelfTheme& theme) { editor->setTheme(theme); }};
}

void ItemEditScreen::setTheme(const ShelfTheme& theme) {
    DetailScreen::setTheme(theme);
    m_cancel->setTheme(theme);
    m_save->setTheme(theme);
    m_ground->setTheme(theme);
    m_editor.setTheme(theme);
}

void ItemEditScreen::render() {
    if (m_view.editorFocused && !m_editor.widget->hasFocus())
        m_editor.widget->setFocus(Qt::OtherFocusReason);
}

void ItemEditScreen::save() {
    // What is still being composed is text for the person who sees it.
    QGuiApplication::inputMethod()->commit();
    m_view.save(m_editor.text());
}

void ItemEditScreen::showEvent(QShowEvent*) {
    m_view.viewAppears();
}

bool ItemEditScreen::takes(const QKeyEvent& event) {
    const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_S:
        if (modifiers != Qt::ControlModifier && modifiers != Qt::MetaModifier)
            return false;
        if (!event.isAutoRepeat())
            save();
        return true;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        // The tabulator alone types one.
        return (modifiers & Qt::ControlModifier) && focusNextIn(*this, event.key() == Qt::Key_Tab);
    default:
        return false;
    }
}

bool ItemEditScreen::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress)
        return takes(static_cast<QKeyEvent&>(*event));
    const bool isFocusEvent = event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut;
    if (watched == m_editor.widget && isFocusEvent) {
        const auto& focus = static_cast<QFocusEvent&>(*event);
        // With the window, or for a menu, the keyboard goes only for a while.
        if (focus.gotFocus() ||
            (focus.reason() != Qt::ActiveWindowFocusReason && focus.reason() != Qt::PopupFocusReason))
            m_view.editorFocusChanged(focus.gotFocus());
    }
    return false;
}

void ItemEditScreen::keyPressEvent(QKeyEvent* event) {
    if (takes(*event))
        return;
    if (!hasFocus()) {
        event->ignore();
        return;
    }
    // Typed in the moment before the editor has the keyboard.
    m_view.editorFocusChanged(true);
    render();
    QCoreApplication::sendEvent(m_editor.widget, event);
}

} // namespace kestrova
