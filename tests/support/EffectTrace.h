#pragma once

#include "Kestrova/capture/HUD.h"
#include "Kestrova/shelf/ShelfPanel.h"
#include "KestrovaCore/ClipboardItem.h"
#include "Platform/Accessibility.h"
#include "Platform/EventMonitors.h"
#include "Platform/KeyPoster.h"
#include "Platform/Screens.h"
#include "Platform/Sharing.h"
#include "tests/support/FakePasteboard.h"
#include "tests/support/FakeScreens.h"
#include "tests/support/ManualMainQueue.h"
#include "tests/support/Ports.h"

#include <QStringList>

#include <utility>

namespace kestrova {

/// What the program did to the world, one line an effect, each with the moment at which the clock stood.
class EffectTrace {
public:
    explicit EffectTrace(const ManualMainQueue& clock) : m_clock(clock) {}

    void add(const QString& effect) {
        m_lines.append(QStringLiteral("%1 %2").arg(m_clock.now().count()).arg(effect));
    }
    /// The lines since the last call.
    QStringList take() { return std::exchange(m_lines, {}); }

private:
    const ManualMainQueue& m_clock;
    QStringList m_lines;
};

inline QString nameOf(const RunningApplication& application) {
    return application.bundleIdentifier.value_or(QStringLiteral("?"));
}

class TracedPanel final : public ShelfPanel {
public:
    explicit TracedPanel(EffectTrace& effects) : m_trace(effects) {}

    bool isVisible() const override { return visible; }
    std::uint64_t windowNumber() const override { return 77; }
    void setContent(ShelfPanelView& view) override {
        content = &view;
        m_trace.add(QStringLiteral("panel.setContent"));
    }
    ScreenRect frame() const override { return place; }
    void setFrame(const ScreenRect& rect) override {
        place = rect;
        m_trace.add(QStringLiteral("panel.setFrame"));
    }
    void animateFrame(const ScreenRect& rect, Duration duration, AnimationTiming timing) override {
        place = rect;
        m_trace.add(QStringLiteral("panel.animateFrame %1 %2").arg(duration.count()).arg(word(timing)));
    }
    void setAlpha(double alpha) override { m_trace.add(QStringLiteral("panel.setAlpha %1").arg(alpha)); }
    void animateAlpha(double alpha, Duration duration, AnimationTiming timing) override {
        m_trace.add(
            QStringLiteral("panel.animateAlpha %1 %2 %3").arg(alpha).arg(duration.count()).arg(word(timing)));
    }
    void orderFrontRegardless() override {
        visible = true;
        m_trace.add(QStringLiteral("panel.orderFrontRegardless"));
    }
    void orderOut() override {
        visible = false;
        m_trace.add(QStringLiteral("panel.orderOut"));
    }
    void setIgnoresMouseEvents(bool ignores) override {
        m_trace.add(QStringLiteral("panel.setIgnoresMouseEvents %1").arg(ignores));
    }
    void endEditing() override { m_trace.add(QStringLiteral("panel.endEditing")); }
    void pickShareTarget(const std::vector<ShareTarget>& targets,
                         std::function<void(const ShareTarget&)> done) override {
        m_trace.add(QStringLiteral("panel.pickShareTarget %1").arg(targets.size()));
        onSharePicked = std::move(done);
    }

    bool visible = false;
    ScreenRect place;
    ShelfPanelView* content = nullptr;
    std::function<void(const ShareTarget&)> onSharePicked;

private:
    static QString word(AnimationTiming timing) {
        switch (timing) {
        case AnimationTiming::easeIn:
            return QStringLiteral("easeIn");
        case AnimationTiming::easeOut:
            return QStringLiteral("easeOut");
        case AnimationTiming::easeInEaseOut:
            return QStringLiteral("easeInEaseOut");
        }
        Q_UNREACHABLE();
    }

    EffectTrace& m_trace;
};

class TracedWorkspace final : public FakeWorkspace {
public:
    explicit TracedWorkspace(EffectTrace& effects) : m_trace(effects) {}

    std::unique_ptr<ActivationObserver> observeActivations(std::function<void()> handler) override {
        m_trace.add(QStringLiteral("workspace.observeActivations"));
        onDidActivate = std::move(handler);
        return std::make_unique<Observer>(m_trace);
    }
    bool isTerminated(const RunningApplication&) const override { return terminated; }
    void activate(const RunningApplication& application) override {
        m_trace.add(QStringLiteral("workspace.activate %1").arg(nameOf(application)));
    }
    void activateOwnWindow(std::uint64_t window) override {
        m_trace.add(QStringLiteral("workspace.activateOwnWindow %1").arg(window));
    }
    void open(const QUrl& url) override {
        m_trace.add(QStringLiteral("workspace.open %1").arg(url.toString()));
    }
    void reveal(const QUrl& file) override {
        m_trace.add(QStringLiteral("workspace.reveal %1").arg(file.toString()));
    }

    bool terminated = false;
    std::function<void()> onDidActivate;

private:
    struct Observer final : ActivationObserver {
        explicit Observer(EffectTrace& effects) : trace(effects) {}
        ~Observer() override { trace.add(QStringLiteral("workspace.stopObserving")); }
        EffectTrace& trace;
    };

    EffectTrace& m_trace;
};

class TracedSharing final : public Sharing {
public:
    explicit TracedSharing(EffectTrace& effects) : m_trace(effects) {}

    std::vector<ShareTarget> targets(const SharedContent&) override { return all; }
    void share(const SharedContent& content, const ShareTarget& target) override {
        m_trace.add(QStringLiteral("sharing.share %1 %2")
                        .arg(content.text.value_or(QStringLiteral("(other)")), target.identifier));
    }

    std::vector<ShareTarget> all;

private:
    EffectTrace& m_trace;
};

class TracedKeyPoster final : public KeyPoster {
public:
    explicit TracedKeyPoster(EffectTrace& effects) : m_trace(effects) {}

    void postPaste(const std::optional<RunningApplication>& target) override {
        m_trace.add(QStringLiteral("keys.postPaste %1").arg(target ? nameOf(*target) : QStringLiteral("-")));
    }

private:
    EffectTrace& m_trace;
};

/// Answers after `answerDelay`.
class TracedAccessibility final : public Accessibility {
public:
    TracedAccessibility(MainQueue& mainQueue, EffectTrace& effects)
        : m_mainQueue(mainQueue), m_trace(effects) {}

    bool isTrusted() const override { return true; }
    QCoro::Task<bool> setSelectedText(RunningApplication application, QString text) override {
        m_trace.add(QStringLiteral("accessibility.setSelectedText %1 %2").arg(nameOf(application), text));
        if (answerDelay.count() > 0)
            co_await m_mainQueue.delay(answerDelay);
        co_return accepts;
    }

    bool accepts = false;
    MainQueue::Duration answerDelay{};

private:
    MainQueue& m_mainQueue;
    EffectTrace& m_trace;
};

class TracedHUD final : public HUD {
public:
    explicit TracedHUD(EffectTrace& effects) : m_trace(effects) {}

    void show(const std::shared_ptr<ClipboardItem>& item, HUDEvent event) override {
        const auto word = event == HUDEvent::pasted     ? QStringLiteral("pasted")
                          : event == HUDEvent::copied   ? QStringLiteral("copied")
                          : event == HUDEvent::captured ? QStringLiteral("captured")
                                                        : QStringLiteral("other");
        m_trace.add(QStringLiteral("hud.%1 %2").arg(word, item->content()));
    }

private:
    EffectTrace& m_trace;
};

/// Passes everything on to the pasteboard in memory, and tells of writes.
class TracedPasteboard final : public Pasteboard {
public:
    explicit TracedPasteboard(EffectTrace& effects) : m_trace(effects) {
        inner.onPollDue = [this] {
            if (onPollDue)
                onPollDue();
        };
    }

    std::int64_t changeCount() const override { return inner.changeCount(); }
    std::optional<QStringList> types() const override { return inner.types(); }
    QList<QUrl> readURLs() const override { return inner.readURLs(); }
    std::optional<PasteboardImage> readImage() const override { return inner.readImage(); }
    std::optional<QString> string() const override { return inner.string(); }
    std::optional<PasteboardImage> pictureOfFile(const QUrl& url) const override {
        return inner.pictureOfFile(url);
    }
    std::optional<RunningApplication> frontmostApplication() const override {
        return inner.frontmostApplication();
    }
    void pollFinished() override { inner.pollFinished(); }
    void write(const PasteboardEntry& entry) override {
        inner.write(entry);
        const auto* const text = std::get_if<PlainText>(&entry);
        m_trace.add(QStringLiteral("pasteboard.write %1").arg(text ? text->text : QStringLiteral("(other)")));
    }

    FakePasteboard inner;

private:
    EffectTrace& m_trace;
};

/// Lets a test press the mouse elsewhere. Tells of tokens that come and go.
class TracedEventMonitors final : public EventMonitors {
public:
    explicit TracedEventMonitors(EffectTrace& effects) : m_trace(effects) {}

    std::unique_ptr<EventMonitor> addGlobalMonitor(std::uint32_t mask, GlobalHandler handler) override {
        m_trace.add(QStringLiteral("monitors.addGlobal %1").arg(mask));
        if (refuses)
            return nullptr;
        ++globalMonitors;
        onMouseDown = std::move(handler);
        return std::make_unique<Token>(*this);
    }
    std::unique_ptr<EventMonitor> addLocalMonitor(std::uint32_t mask, LocalHandler handler) override {
        m_trace.add(QStringLiteral("monitors.addLocal %1").arg(mask));
        localHandlers[mask] = std::move(handler);
        return std::make_unique<EventMonitor>();
    }
    std::unique_ptr<EventMonitor> tapKeyDowns(KeyDownHandler handler) override {
        m_trace.add(QStringLiteral("monitors.tapKeyDowns"));
        if (refusesTaps)
            return nullptr;
        onKeyDown = std::move(handler);
        return std::make_unique<KeyToken>(m_trace, QStringLiteral("monitors.untapKeyDowns"));
    }
    std::unique_ptr<EventMonitor> addGlobalKeyDownMonitor(KeyDownHandler handler) override {
        m_trace.add(QStringLiteral("monitors.addGlobalKeyDown"));
        onKeyDown = std::move(handler);
        return std::make_unique<KeyToken>(m_trace, QStringLiteral("monitors.removeGlobalKeyDown"));
    }

    bool refuses = false;
    int globalMonitors = 0;
    bool refusesTaps = false;
    GlobalHandler onMouseDown;
    KeyDownHandler onKeyDown;
    std::map<std::uint32_t, LocalHandler> localHandlers;

private:
    struct Token final : EventMonitor {
        explicit Token(TracedEventMonitors& monitors) : owner(monitors) {}
        ~Token() override {
            --owner.globalMonitors;
            owner.m_trace.add(QStringLiteral("monitors.removeGlobal"));
        }
        TracedEventMonitors& owner;
    };
    struct KeyToken final : EventMonitor {
        KeyToken(EffectTrace& effects, QString line) : trace(effects), onRemoval(std::move(line)) {}
        ~KeyToken() override { trace.add(onRemoval); }
        EffectTrace& trace;
        const QString onRemoval;
    };

    EffectTrace& m_trace;
};

} // namespace kestrova
