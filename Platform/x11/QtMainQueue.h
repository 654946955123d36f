#pragma once

#include "Platform/MainQueue.h"

#include <QObject>

#include <map>
#include <memory>

class QTimer;

namespace kestrova {

/// The main queue over the event loop of the thread that made it, which must be the main thread.
class QtMainQueue final : public MainQueue {
public:
    QtMainQueue();
    ~QtMainQueue() override;

    void postFromAnyThread(Block block) override;

protected:
    std::uint64_t schedule(Duration delay, Repeat repeat, Block block) override;
    void cancel(std::uint64_t id) override;

private:
    void run(std::uint64_t id, Repeat repeat);

    struct Scheduled {
        Block block;
        // None for the next turn: such blocks are events, which keep their order.
        std::unique_ptr<QTimer> timer;
    };

    QObject m_receiver;
    std::map<std::uint64_t, std::shared_ptr<Scheduled>> m_scheduled;
    std::uint64_t m_lastID = 0;
};

} // namespace kestrova
