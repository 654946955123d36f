#pragma once

#include <QAccessibleWidget>

namespace kestrova {

class HUDView;

/// The toast as assistive programs see it: a notification that can be pressed.
class HUDViewAccessible final : public QAccessibleWidget {
public:
    explicit HUDViewAccessible(HUDView& view);

    /// From now on the toolkit makes one for each view. May be called again.
    static void install();

    QStringList actionNames() const override;
    void doAction(const QString& actionName) override;

private:
    HUDView& m_view;
};

} // namespace kestrova
