#pragma once

#include "Platform/MenuTracking.h"

#include <QObject>

#include <memory>
#include <set>

namespace kestrova {

/// Watches the toolkit's menus, which are all that this program opens.
class QtMenuTracking final : public MenuTracking {
public:
    QtMenuTracking();
    QtMenuTracking(const QtMenuTracking&) = delete;
    QtMenuTracking& operator=(const QtMenuTracking&) = delete;
    ~QtMenuTracking() override;

private:
    class Filter;

    void onShown(QObject* menu);
    void onHidden(const QObject* menu);

    std::unique_ptr<Filter> m_filter;
    std::set<const QObject*> m_open;
};

} // namespace kestrova
