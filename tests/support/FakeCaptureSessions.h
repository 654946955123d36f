#pragma once

#include "Kestrova/capture/CaptureSession.h"
#include "tests/support/HeldAnswers.h"

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace kestrova {

/// Sessions that show nothing and end when a test says so. It goes before what its sessions' tasks hold.
class FakeCaptureSessions {
public:
    std::shared_ptr<CaptureSession> make(CaptureMode mode) {
        modes.push_back(mode);
        auto session = std::make_shared<Session>(*this);
        last = session;
        return session;
    }

    /// How many have been asked to let the person select.
    std::size_t selecting() const { return m_selections.asked(); }
    /// Ends the index-th of those. What waits for it goes on within the call.
    void end(std::size_t index, std::optional<CaptureSelection> selection) {
        m_selected = std::move(selection);
        m_selections.give(index);
    }

    /// Of all that were made.
    std::vector<CaptureMode> modes;
    std::weak_ptr<CaptureSession> last;

private:
    class Session final : public CaptureSession {
    public:
        explicit Session(FakeCaptureSessions& sessions) : m_sessions(sessions) {}

        QCoro::Task<std::optional<CaptureSelection>> select() override {
            co_await m_sessions.m_selections.next();
            co_return m_sessions.m_selected;
        }

    private:
        FakeCaptureSessions& m_sessions;
    };

    std::optional<CaptureSelection> m_selected;
    HeldAnswers m_selections;
};

} // namespace kestrova
