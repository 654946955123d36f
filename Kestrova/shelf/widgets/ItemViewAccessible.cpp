#include "Kestrova/shelf/widgets/ItemViewAccessible.h"

#include "Kestrova/shelf/SpokenItem.h"
#include "Kestrova/shelf/widgets/ItemView.h"
#include "KestrovaCore/ClipboardItem.h"

#include <QAccessibleActionInterface>
#include <QPointer>
#include <QWindow>

namespace kestrova {
namespace {

/// One place in the view. The places stay while the items move through them.
class ItemAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    ItemAccessible(ItemView& view, int row) : m_view(&view), m_row(row) {}

    int row() const { return m_row; }

    bool isValid() const override { return m_view && index().isValid(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return m_view ? m_view->window()->windowHandle() : nullptr; }
    QAccessibleInterface* parent() const override {
        return m_view ? QAccessible::queryAccessibleInterface(m_view) : nullptr;
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }

    QString text(QAccessible::Text text) const override {
        const auto item = isValid() ? m_view->item(index()) : nullptr;
        if (!item)
            return {};
        const auto position = static_cast<std::size_t>(m_row);
        if (text == QAccessible::Name)
            return spokenName(*item, position);
        if (text == QAccessible::Description)
            return spokenPosition(position, static_cast<std::size_t>(m_view->model()->rowCount()));
        return {};
    }
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override {
        if (!isValid())
            return {};
        const auto cell = m_view->visualRect(index());
        return {m_view->viewport()->mapToGlobal(cell.topLeft()), cell.size()};
    }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        state.selectable = true;
        state.focusable = true;
        state.selected = m_view->currentIndex().row() == m_row;
        state.focused = state.selected && m_view->isWalked();
        state.active = state.focused;
        state.invisible = !m_view->isVisible();
        state.offscreen = !m_view->viewport()->rect().intersects(m_view->visualRect(index()));
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return {pressAction(), showMenuAction()}; }
    void doAction(const QString& name) override {
        const auto item = isValid() ? m_view->item(index()) : nullptr;
        if (!item)
            return;
        // Readers reach rows that nobody has scrolled to.
        m_view->scrollTo(index());
        if (name == pressAction())
            m_view->select(index());
        else if (name == showMenuAction() && m_view->onContextMenu)
            m_view->onContextMenu(item, m_view->placeOfMenu(index()));
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    QModelIndex index() const { return m_view->model()->index(m_row, 0); }

    QPointer<ItemView> m_view;
    int m_row;
};

} // namespace

ItemViewAccessible::ItemViewAccessible(ItemView& view)
    : QAccessibleWidget(&view, QAccessible::List), m_view(view) {}

ItemViewAccessible::~ItemViewAccessible() {
    for (const auto& [row, id] : m_items)
        QAccessible::deleteAccessibleInterface(id);
}

int ItemViewAccessible::childCount() const {
    return m_view.model() ? m_view.model()->rowCount() : 0;
}

QAccessibleInterface* ItemViewAccessible::child(int index) const {
    if (index < 0 || index >= childCount())
        return nullptr;
    auto& id = m_items[index];
    if (auto* const known = id ? QAccessible::accessibleInterface(id) : nullptr)
        return known;
    auto* const made = new ItemAccessible(m_view, index);
    id = QAccessible::registerAccessibleInterface(made);
    return made;
}

QAccessibleInterface* ItemViewAccessible::childAt(int x, int y) const {
    return child(m_view.indexAt(m_view.viewport()->mapFromGlobal(QPoint(x, y))).row());
}

QAccessibleInterface* ItemViewAccessible::focusChild() const {
    return m_view.isWalked() ? child(m_view.currentIndex().row()) : nullptr;
}

int ItemViewAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const auto* const item = dynamic_cast<const ItemAccessible*>(child);
    return item ? item->row() : -1;
}

void installItemViewAccessibility() {
    QAccessible::installFactory([](const QString&, QObject* object) -> QAccessibleInterface* {
        auto* const view = dynamic_cast<ItemView*>(object);
        return view ? new ItemViewAccessible(*view) : nullptr;
    });
}

} // namespace kestrova
