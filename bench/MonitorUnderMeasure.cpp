#include "bench/MonitorUnderMeasure.h"

#include <stdexcept>

namespace kestrova::bench {
namespace {

ModelContainer& opened(KovaStore& store) {
    const auto container = store.container();
    if (!container)
        throw std::runtime_error("no store: " + container.error().message.toStdString());
    return *container.value();
}

} // namespace

MonitorUnderMeasure::MonitorUnderMeasure(const QString& directory, int historyLimit)
    : m_store(directory),
      m_container(opened(m_store)),
      m_monitor({.container = m_container,
                 .pasteboard = m_pasteboard,
                 .mainQueue = m_mainQueue,
                 .defaults = m_defaults,
                 .machineInfo = m_machineInfo,
                 .hud = m_hud,
                 .textRecognizer = m_textRecognizer,
                 .linkPreviews = m_linkPreviews}) {
    m_defaults.set(QStringLiteral("historyLimit"), historyLimit);
}

} // namespace kestrova::bench
