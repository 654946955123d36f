#pragma once

#include "Kestrova/shelf/controls/KeyCapsule.h"
#include "Kestrova/shelf/controls/ShelfTheme.h"

#include <QPushButton>

#include <functional>
#include <optional>

namespace kestrova {

/// A button with a title at the foot of a sheet.
class SheetButton final : public QPushButton {
public:
    /// The default action stands out.
    enum class Role { cancel, defaultAction };

    SheetButton(Role role, QWidget* parent);

    std::function<void()> onTap;

    /// The room around the plate, in which the ring of the focus lies.
    static constexpr int overhang = 4;

    void setTheme(const ShelfTheme& theme);
    /// The keys that do the same, behind the title.
    void setCapsule(const KeyCapsule& capsule);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int capsuleRoom() const;

    ShelfTheme m_theme;
    std::optional<KeyCapsule> m_capsule;
};

} // namespace kestrova
