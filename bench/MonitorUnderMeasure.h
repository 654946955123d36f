#pragma once

#include "tests/support/FakePasteboard.h"
#include "tests/support/InMemoryUserDefaults.h"
#include "tests/support/ManualMainQueue.h"
#include "tests/support/Ports.h"

#include "Kestrova/capture/HUD.h"
#include "Kestrova/clipboard/ClipboardMonitor.h"
#include "Kestrova/clipboard/TextRecognizer.h"
#include "Kestrova/services/LinkPreviewCache.h"
#include "KestrovaCore/KovaStore.h"

namespace kestrova::bench {

/// Shows nothing, so that the monitor alone is measured.
class NoHUD final : public HUD {
public:
    void show(const std::shared_ptr<ClipboardItem>&, HUDEvent) override {}
};

/// The monitor on a store on disk, with a pasteboard in memory before it.
class MonitorUnderMeasure {
public:
    /// Opens the store in `directory`, or makes it. Throws std::runtime_error if that fails.
    MonitorUnderMeasure(const QString& directory, int historyLimit);

    FakePasteboard& pasteboard() { return m_pasteboard; }
    ClipboardMonitor& monitor() { return m_monitor; }
    ModelContainer& container() { return m_container; }

private:
    KovaStore m_store;
    ModelContainer& m_container;
    FakePasteboard m_pasteboard;
    ManualMainQueue m_mainQueue;
    InMemoryUserDefaults m_defaults;
    FakeMachineInfo m_machineInfo;
    NoHUD m_hud;
    NoTextRecognition m_textRecognizer;
    NoLinkPreviews m_linkPreviews;
    ClipboardMonitor m_monitor;
};

} // namespace kestrova::bench
