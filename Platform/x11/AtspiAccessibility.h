#pragma once

#include "Platform/Accessibility.h"
#include "Platform/x11/X11Windows.h"

#include <memory>
#include <optional>

namespace kestrova {

class AtspiWorker;
class MainQueue;

/// The elements of other applications over the desktop's accessibility bus. Where there is no such bus, no
/// application has an element.
class AtspiAccessibility final : public Accessibility {
public:
    /// Longer texts take an application longer than the answer may.
    static constexpr qsizetype longestText = 50'000;

    /// `mainQueue` outlives the object.
    explicit AtspiAccessibility(MainQueue& mainQueue);
    AtspiAccessibility(const AtspiAccessibility&) = delete;
    AtspiAccessibility& operator=(const AtspiAccessibility&) = delete;
    /// Frames that still wait for an answer are resumed with MainQueueClosed.
    ~AtspiAccessibility() override;

    /// Whether the accessibility bus is there.
    bool isTrusted() const override;
    QCoro::Task<bool> setSelectedText(RunningApplication application, QString text) override;

private:
    class Answer;
    struct Pending;
    struct Waiting;

    void begin(const std::shared_ptr<Pending>& pending);

    MainQueue& m_mainQueue;
    std::optional<X11Windows> m_windows;
    std::shared_ptr<Waiting> m_waiting;
    std::unique_ptr<AtspiWorker> m_worker;
};

} // namespace kestrova
