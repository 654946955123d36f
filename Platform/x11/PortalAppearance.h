#pragma once

#include "Platform/Appearance.h"
#include "Platform/MainQueue.h"

#include <QObject>

class QDBusMessage;

namespace kestrova {

/// Asks the desktop portal on the session bus, and follows what it tells. Nothing is known until it has
/// answered, which no one waits for; where there is no bus or no portal, nothing is ever known.
class PortalAppearance final : public Appearance {
public:
    /// After the application object. `mainQueue` outlives the object.
    explicit PortalAppearance(MainQueue& mainQueue);
    PortalAppearance(const PortalAppearance&) = delete;
    PortalAppearance& operator=(const PortalAppearance&) = delete;

    std::optional<ColorScheme> colorScheme() const override { return m_colorScheme; }

private:
    void follow();
    void ask();
    void onAnswer(const QDBusMessage& answer);
    void settle(std::optional<ColorScheme> colorScheme);

    std::optional<ColorScheme> m_colorScheme;
    // Counts the questions, so that only the last one's answer holds.
    int m_question = 0;
    // The context of what is asked for on the bus: answers that come later are dropped.
    QObject m_bus;
    ScheduledBlock m_start;
};

} // namespace kestrova
