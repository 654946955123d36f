#include "Platform/x11/QtMainQueue.h"

#include <QMetaObject>
#include <QTimer>

#include <utility>

namespace kestrova {

QtMainQueue::QtMainQueue() = default;

QtMainQueue::~QtMainQueue() {
    close();
}

void QtMainQueue::postFromAnyThread(Block block) {
    QMetaObject::invokeMethod(&m_receiver, std::move(block), Qt::QueuedConnection);
}

std::uint64_t QtMainQueue::schedule(Duration delay, Repeat repeat, Block block) {
    const auto id = ++m_lastID;
    auto scheduled = std::make_shared<Scheduled>();
    scheduled->block = std::move(block);
    if (delay > Duration::zero() || repeat == Repeat::Yes) {
        scheduled->timer = std::make_unique<QTimer>();
        scheduled->timer->setTimerType(Qt::PreciseTimer);
        scheduled->timer->setSingleShot(repeat == Repeat::No);
        QObject::connect(scheduled->timer.get(), &QTimer::timeout, &m_receiver,
                         [this, id, repeat] { run(id, repeat); });
        scheduled->timer->start(delay);
    } else {
        postFromAnyThread([this, id, repeat] { run(id, repeat); });
    }
    m_scheduled.emplace(id, std::move(scheduled));
    return id;
}

void QtMainQueue::run(std::uint64_t id, Repeat repeat) {
    const auto found = m_scheduled.find(id);
    if (found == m_scheduled.end())
        return;
    // The block may cancel itself.
    const auto running = found->second;
    if (repeat == Repeat::No)
        m_scheduled.erase(found);
    running->block();
    // The timer is still within its own signal if the block has cancelled it.
    if (running.use_count() == 1 && running->timer)
        running->timer.release()->deleteLater();
}

void QtMainQueue::cancel(std::uint64_t id) {
    const auto found = m_scheduled.find(id);
    if (found == m_scheduled.end())
        return;
    if (found->second->timer)
        found->second->timer->stop();
    m_scheduled.erase(found);
}

} // namespace kestrova
