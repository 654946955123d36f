#include "Kestrova/shelf/controls/PanelAccessibility.h"

#include "Kestrova/shelf/controls/PanelButton.h"

#include <QAccessibleWidget>
#include <QVariant>

namespace kestrova {
namespace {

constexpr const char* roleProperty = "kestrovaAccessibleRole";

class PanelButtonAccessible final : public QAccessibleWidget {
public:
    PanelButtonAccessible(PanelButton& button, QAccessible::Role role)
        : QAccessibleWidget(&button, role), m_button(button) {}

    QAccessible::Role role() const override {
        const auto role = QAccessibleWidget::role();
        // Readers tell of no button whether it is on.
        return role == QAccessible::Button && m_button.isCheckable() ? QAccessible::CheckBox : role;
    }

    QAccessible::State state() const override {
        auto state = QAccessibleWidget::state();
        state.checkable = m_button.isCheckable();
        state.checked = m_button.isChecked();
        state.selectable = role() == QAccessible::ListItem;
        state.selected = m_button.isSelected();
        state.pressed = m_button.isDown();
        return state;
    }

    QStringList actionNames() const override {
        return QStringList{m_button.isCheckable() ? toggleAction() : pressAction()} +
               QAccessibleWidget::actionNames();
    }

    void doAction(const QString& name) override {
        if (name == pressAction() || name == toggleAction())
            m_button.click();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    PanelButton& m_button;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    const auto role = object->property(roleProperty);
    if (auto* const button = dynamic_cast<PanelButton*>(object))
        return new PanelButtonAccessible(
            *button, role.isValid() ? static_cast<QAccessible::Role>(role.toInt()) : QAccessible::Button);
    if (auto* const widget = qobject_cast<QWidget*>(object); widget && role.isValid())
        return new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt()));
    return nullptr;
}

} // namespace

void installPanelAccessibility() {
    QAccessible::installFactory(makeInterface);
}

bool setSpokenName(QWidget& widget, const QString& name) {
    if (widget.accessibleName() == name)
        return false;
    widget.setAccessibleName(name);
    return true;
}

bool setSpokenDescription(QWidget& widget, const QString& description) {
    if (widget.accessibleDescription() == description)
        return false;
    widget.setAccessibleDescription(description);
    return true;
}

void setAccessibleRole(QWidget& widget, QAccessible::Role role) {
    widget.setProperty(roleProperty, static_cast<int>(role));
}

} // namespace kestrova
