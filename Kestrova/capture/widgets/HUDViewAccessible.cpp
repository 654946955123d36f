#include "Kestrova/capture/widgets/HUDViewAccessible.h"

#include "Kestrova/capture/widgets/HUDView.h"

namespace kestrova {

namespace {

QAccessibleInterface* make(const QString&, QObject* object) {
    auto* const view = dynamic_cast<HUDView*>(object);
    return view ? new HUDViewAccessible(*view) : nullptr;
}

} // namespace

HUDViewAccessible::HUDViewAccessible(HUDView& view)
    : QAccessibleWidget(&view, QAccessible::Notification), m_view(view) {}

void HUDViewAccessible::install() {
    QAccessible::installFactory(make);
}

QStringList HUDViewAccessible::actionNames() const {
    return {pressAction()};
}

void HUDViewAccessible::doAction(const QString& actionName) {
    if (actionName == pressAction())
        m_view.tap();
}

} // namespace kestrova
