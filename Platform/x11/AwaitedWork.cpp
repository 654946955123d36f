#include "Platform/x11/AwaitedWork.h"

namespace kestrova {

AwaitedWork::~AwaitedWork() {
    close();
}

void AwaitedWork::close() {
    // One at a time: a frame that unwinds may let go of others.
    while (!m_waiting->empty()) {
        if (const auto waiting = m_waiting->back().lock()) {
            waiting->isClosed = true;
            resume(*m_waiting, *waiting);
        } else {
            m_waiting->pop_back();
        }
    }
}

void AwaitedWork::resume(List& list, Waiting& waiting) {
    std::erase_if(list, [&waiting](const std::weak_ptr<Waiting>& each) {
        const auto other = each.lock();
        return !other || other.get() == &waiting;
    });
    waiting.frame.resume();
}

} // namespace kestrova
