#include "Platform/x11/QtMenuTracking.h"

#include <QApplication>
#include <QEvent>
#include <QMenu>

namespace kestrova {

class QtMenuTracking::Filter final : public QObject {
public:
    explicit Filter(QtMenuTracking& tracking) : m_tracking(tracking) {}

    bool eventFilter(QObject* receiver, QEvent* event) override {
        if (event->type() == QEvent::Show && qobject_cast<QMenu*>(receiver))
            m_tracking.onShown(receiver);
        // A menu that is hidden by its destructor is no menu any more.
        else if (event->type() == QEvent::Hide)
            m_tracking.onHidden(receiver);
        return false;
    }

private:
    QtMenuTracking& m_tracking;
};

QtMenuTracking::QtMenuTracking() : m_filter(std::make_unique<Filter>(*this)) {
    qApp->installEventFilter(m_filter.get());
}

QtMenuTracking::~QtMenuTracking() = default;

void QtMenuTracking::onShown(QObject* menu) {
    if (!m_open.insert(menu).second)
        return;
    QObject::connect(menu, &QObject::destroyed, m_filter.get(), [this, menu] { onHidden(menu); });
    if (m_open.size() == 1 && onDidBegin)
        onDidBegin();
}

void QtMenuTracking::onHidden(const QObject* menu) {
    if (m_open.erase(menu) == 0)
        return;
    QObject::disconnect(menu, &QObject::destroyed, m_filter.get(), nullptr);
    if (m_open.empty() && onDidEnd)
        onDidEnd();
}

} // namespace kestrova
