#pragma once

#include "Kestrova/capture/OverlayPanel.h"
#include "Kestrova/capture/SelectionOverlayView.h"
#include "Platform/Screens.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kestrova {

/// The overlays that a session has made, in order, and what became of each.
class FakeOverlayPanels {
public:
    struct Panel {
        Screen screen;
        std::shared_ptr<SelectionOverlayView> view;
        bool isAlive = true;
        bool isVisible = false;
        OverlayCursor cursor = OverlayCursor::arrow;
        int displaysNeeded = 0;
    };

    /// `onEffect` may be empty; it is told what was asked of which panel.
    explicit FakeOverlayPanels(std::function<void(const QString&)> onEffect = {})
        : m_onEffect(std::move(onEffect)) {}

    std::unique_ptr<OverlayPanel> make(const Screen& screen) {
        auto panel = std::make_shared<Panel>(Panel{.screen = screen, .view = nullptr});
        all.push_back(panel);
        tell(*panel, QStringLiteral("made"));
        return std::make_unique<Fake>(*this, std::move(panel));
    }

    std::vector<std::shared_ptr<Panel>> all;

private:
    class Fake final : public OverlayPanel {
    public:
        Fake(FakeOverlayPanels& owner, std::shared_ptr<Panel> panel)
            : m_owner(owner), m_panel(std::move(panel)) {}
        Fake(const Fake&) = delete;
        Fake& operator=(const Fake&) = delete;
        ~Fake() override {
            m_panel->isAlive = false;
            m_panel->view = nullptr;
        }

        void setContentView(std::shared_ptr<SelectionOverlayView> view) override {
            m_panel->view = std::move(view);
            m_owner.tell(*m_panel, QStringLiteral("setContentView"));
        }
        void orderFrontRegardless() override {
            m_panel->isVisible = true;
            m_owner.tell(*m_panel, QStringLiteral("orderFrontRegardless"));
        }
        void makeKey() override { m_owner.tell(*m_panel, QStringLiteral("makeKey")); }
        void orderOut() override {
            m_panel->isVisible = false;
            m_owner.tell(*m_panel, QStringLiteral("orderOut"));
        }
        void setCursor(OverlayCursor cursor) override {
            m_panel->cursor = cursor;
            m_owner.tell(*m_panel, QStringLiteral("setCursor ") + word(cursor));
        }
        void setNeedsDisplay() override { ++m_panel->displaysNeeded; }

    private:
        static QString word(OverlayCursor cursor) {
            switch (cursor) {
            case OverlayCursor::arrow:
                return QStringLiteral("arrow");
            case OverlayCursor::openHand:
                return QStringLiteral("openHand");
            case OverlayCursor::crosshair:
                return QStringLiteral("crosshair");
            }
            Q_UNREACHABLE();
        }

        FakeOverlayPanels& m_owner;
        const std::shared_ptr<Panel> m_panel;
    };

    void tell(const Panel& panel, const QString& effect) const {
        if (m_onEffect)
            m_onEffect(QStringLiteral("panel%1.%2").arg(panel.screen.identifier).arg(effect));
    }

    std::function<void(const QString&)> m_onEffect;
};

} // namespace kestrova
