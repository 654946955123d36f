#pragma once

#include "Platform/MainQueue.h"

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <utility>
#include <variant>
#include <vector>

namespace kestrova {

/// Frames of the main thread that wait for what another thread finds out. Main thread only.
class AwaitedWork {
public:
    AwaitedWork() = default;
    AwaitedWork(const AwaitedWork&) = delete;
    AwaitedWork& operator=(const AwaitedWork&) = delete;
    /// As `close`.
    ~AwaitedWork();

    /// Frames that still wait are resumed with MainQueueClosed, those too that begin to wait meanwhile.
    void close();

    template<typename T>
    class Result;
    /// `co_await work.result<T>(queue, submit)`: `submit` gets a function for the other thread, to be called
    /// once with what finds the result out; its value or its exception goes to the frame. A frame that is
    /// destroyed while it waits is forgotten.
    template<typename T, typename Submit>
    Result<T> result(MainQueue& mainQueue, Submit submit);

private:
    struct Waiting {
        std::coroutine_handle<> frame;
        bool isClosed = false;
    };
    // Owned by the frames: one that is destroyed is not resumed any more. Blocks on their way to the main
    // thread hold the list weakly.
    using List = std::vector<std::weak_ptr<Waiting>>;

    static void resume(List& list, Waiting& waiting);

    std::shared_ptr<List> m_waiting = std::make_shared<List>();
};

/// What `co_await` on a piece of work waits for.
template<typename T>
class AwaitedWork::Result {
public:
    using Find = std::function<T()>;
    /// Called on the other thread, once.
    using Settle = std::function<void(const Find&)>;

    Result(MainQueue& mainQueue, std::shared_ptr<List> list, std::function<void(Settle)> submit)
        : m_mainQueue(mainQueue), m_list(std::move(list)), m_submit(std::move(submit)) {}

    bool await_ready() const { return false; }
    void await_suspend(std::coroutine_handle<> frame) {
        m_state->frame = frame;
        m_list->push_back(m_state);
        m_submit([&queue = m_mainQueue, list = std::weak_ptr(m_list),
                  state = std::weak_ptr(m_state)](const Find& find) {
            auto outcome = std::make_shared<Outcome>(outcomeOf(find));
            queue.postFromAnyThread([list, state, outcome = std::move(outcome)] {
                const auto waiting = state.lock();
                const auto frames = list.lock();
                if (!waiting || !frames)
                    return;
                waiting->outcome = std::move(*outcome);
                resume(*frames, *waiting);
            });
        });
    }
    T await_resume() const {
        if (m_state->isClosed)
            throw MainQueueClosed{};
        if (const auto* const error = std::get_if<std::exception_ptr>(&m_state->outcome))
            std::rethrow_exception(*error);
        return std::get<T>(std::move(m_state->outcome));
    }

private:
    using Outcome = std::variant<std::exception_ptr, T>;
    struct State : Waiting {
        Outcome outcome;
    };

    static Outcome outcomeOf(const Find& find) {
        try {
            return find();
        } catch (...) {
            return std::current_exception();
        }
    }

    MainQueue& m_mainQueue;
    std::shared_ptr<List> m_list;
    std::function<void(Settle)> m_submit;
    std::shared_ptr<State> m_state = std::make_shared<State>();
};

template<typename T, typename Submit>
AwaitedWork::Result<T> AwaitedWork::result(MainQueue& mainQueue, Submit submit) {
    return Result<T>(mainQueue, m_waiting, std::move(submit));
}

} // namespace kestrova
