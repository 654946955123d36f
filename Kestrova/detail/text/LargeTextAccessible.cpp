#include "Kestrova/detail/text/LargeTextAccessible.h"

#include "Kestrova/detail/text/LargeTextEdit.h"

#include <QAccessibleWidget>

#include <algorithm>

namespace kestrova {
namespace {

class LargeTextAccessible final : public QAccessibleWidget,
                                  public QAccessibleTextInterface,
                                  public QAccessibleEditableTextInterface {
public:
    explicit LargeTextAccessible(LargeTextEdit& edit)
        : QAccessibleWidget(&edit, QAccessible::EditableText), m_edit(edit) {}

    QAccessible::State state() const override {
        auto state = QAccessibleWidget::state();
        state.readOnly = m_edit.isReadOnly();
        state.editable = !m_edit.isReadOnly();
        state.multiLine = true;
        state.selectableText = true;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface*>(this);
        if (type == QAccessible::EditableTextInterface && !m_edit.isReadOnly())
            return static_cast<QAccessibleEditableTextInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    void selection(int index, int* start, int* end) const override {
        const bool isThere = index == 0 && selectionCount() == 1;
        *start = isThere ? static_cast<int>(m_edit.selection().start()) : 0;
        *end = isThere ? static_cast<int>(m_edit.selection().end()) : 0;
    }
    int selectionCount() const override { return m_edit.selection().isEmpty() ? 0 : 1; }
    void addSelection(int start, int end) override { m_edit.select(start, end); }
    void removeSelection(int index) override {
        if (index == 0)
            m_edit.select(m_edit.selection().caret, m_edit.selection().caret);
    }
    void setSelection(int index, int start, int end) override {
        if (index == 0)
            m_edit.select(start, end);
    }

    int cursorPosition() const override { return static_cast<int>(m_edit.selection().caret); }
    void setCursorPosition(int position) override {
        m_edit.select(position, position);
        m_edit.reveal(position);
    }

    QString text(int start, int end) const override {
        const auto from = std::max(0, start);
        return m_edit.content().mid(from, end - from);
    }
    int characterCount() const override { return static_cast<int>(m_edit.content().size()); }
    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType boundary, int* start,
                             int* end) const override {
        const auto around = stretchAt(offset, boundary);
        return tell(around.start > 0 ? stretchAt(around.start - 1, boundary) : TextStretch{}, start, end);
    }
    QString textAfterOffset(int offset, QAccessible::TextBoundaryType boundary, int* start,
                            int* end) const override {
        const auto around = stretchAt(offset, boundary);
        const auto size = m_edit.content().size();
        return tell(around.end < size ? stretchAt(around.end, boundary) : TextStretch{size, size}, start,
                    end);
    }
    QString textAtOffset(int offset, QAccessible::TextBoundaryType boundary, int* start,
                         int* end) const override {
        return tell(stretchAt(offset, boundary), start, end);
    }

    QRect characterRect(int offset) const override {
        const auto rect = m_edit.caretRect(offset);
        const auto next = m_edit.caretRect(offset + 1);
        if (!rect)
            return {};
        const bool isSameLine = next && next->top() == rect->top() && next->x() != rect->x();
        const double width = isSameLine ? next->x() - rect->x() : rect->height() / 2;
        const auto onViewport = QRectF(rect->x(), rect->y(), width, rect->height()).normalized().toRect();
        return onViewport.translated(m_edit.viewport()->mapToGlobal(QPoint(0, 0)));
    }
    int offsetAtPoint(const QPoint& point) const override {
        return static_cast<int>(m_edit.positionAt(m_edit.viewport()->mapFromGlobal(QPointF(point))));
    }
    void scrollToSubstring(int start, int) override { m_edit.reveal(start); }
    QString attributes(int offset, int* start, int* end) const override {
        // All of it looks the same; the end is that of what was asked for.
        *start = offset;
        *end = offset + 1;
        return {};
    }

    void deleteText(int start, int end) override { m_edit.replace(start, end - start, {}); }
    void insertText(int offset, const QString& text) override { m_edit.replace(offset, 0, text); }
    void replaceText(int start, int end, const QString& text) override {
        m_edit.replace(start, end - start, text);
    }

private:
    TextStretch stretchAt(qsizetype offset, QAccessible::TextBoundaryType boundary) const {
        // Two offsets are not numbers: the end of the text, and where the caret is.
        if (offset == -1)
            offset = m_edit.content().size();
        else if (offset == -2)
            offset = m_edit.selection().caret;
        return m_edit.stretchAt(offset, boundary);
    }

    QString tell(const TextStretch& stretch, int* start, int* end) const {
        *start = static_cast<int>(stretch.start);
        *end = static_cast<int>(stretch.end);
        return m_edit.content().mid(stretch.start, stretch.end - stretch.start);
    }

    LargeTextEdit& m_edit;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* const edit = dynamic_cast<LargeTextEdit*>(object);
    return edit ? new LargeTextAccessible(*edit) : nullptr;
}

} // namespace

void installLargeTextAccessibility() {
    QAccessible::installFactory(makeInterface);
}

void tellReadersOfEdit(LargeTextEdit& edit, const LargeText::Change& change, const QString& removed) {
    if (!QAccessible::isActive())
        return;
    const auto position = static_cast<int>(change.position);
    if (!removed.isEmpty()) {
        QAccessibleTextRemoveEvent event(&edit, position, removed);
        QAccessible::updateAccessibility(&event);
    }
    if (change.inserted > 0) {
        const auto length = std::min(change.inserted, EditedText::longestTold);
        QAccessibleTextInsertEvent event(&edit, position, edit.content().mid(change.position, length));
        QAccessible::updateAccessibility(&event);
    }
    tellReadersOfSelection(edit);
}

void tellReadersOfSelection(LargeTextEdit& edit) {
    if (!QAccessible::isActive())
        return;
    const auto& selection = edit.selection();
    if (selection.isEmpty()) {
        QAccessibleTextCursorEvent event(&edit, static_cast<int>(selection.caret));
        QAccessible::updateAccessibility(&event);
    } else {
        QAccessibleTextSelectionEvent event(&edit, static_cast<int>(selection.start()),
                                            static_cast<int>(selection.end()));
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace kestrova
