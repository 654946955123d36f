#pragma once

#include <concepts>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace kestrova {

/// Runs a state holder's "when this field changes, do that" the way a declarative view runs it: not as a
/// field is set, but when the event handler that set it has returned.
///
/// A holder keeps one of these, declares its reactions in order with `when`, what is only painted with
/// `watch`, and lets everything that enters it (a key, a notice, a queued block) run inside `perform`. Main
/// thread only.
class Reactions {
public:
    Reactions() = default;
    Reactions(const Reactions&) = delete;
    Reactions& operator=(const Reactions&) = delete;

    /// Declares a reaction. `read` gives the watched value, which is remembered by value and compared with
    /// `==`; `react` is called with the old and the new one. Reactions run in the order in which they were
    /// declared. Not to be called within `perform`.
    template<std::invocable Read, typename React>
    void when(Read read, React react) {
        using Value = std::remove_cvref_t<std::invoke_result_t<Read>>;
        static_assert(std::equality_comparable<Value> && std::invocable<React, const Value&, const Value&>);
        m_watched.push_back(std::make_unique<Watched<Value, Read, React>>(std::move(read), std::move(react)));
    }

    /// Declares a value without a reaction: a change of it counts for `onSettled`.
    template<std::invocable Read>
    void watch(Read read) {
        when(std::move(read), [](const auto&, const auto&) {});
    }

    /// Runs `handler`, then the reactions of all that it changed. What those change is looked at in a further
    /// pass, until a pass finds nothing. Within a handler or a reaction a further `perform` only runs its
    /// handler: the outermost one does the rest.
    template<std::invocable Handler>
    void perform(Handler&& handler) {
        bool settledOnAChange = false;
        {
            const Entry entry(*this);
            std::forward<Handler>(handler)();
            if (m_depth == 1)
                settledOnAChange = settle();
        }
        // Outside: whoever paints may enter the holder again.
        if (settledOnAChange && onSettled)
            onSettled();
    }

    /// Called at the end of each outermost `perform` in which a watched value changed: the moment to paint.
    std::function<void()> onSettled;

private:
    struct Field {
        virtual ~Field() = default;
        /// Whether the value differs from the one at the last look, which it then becomes.
        virtual bool hasChanged() = 0;
        /// Reacts to what the last `hasChanged` found.
        virtual void react() = 0;
    };

    template<typename Value, typename Read, typename React>
    struct Watched final : Field {
        Watched(Read readValue, React reaction)
            : read(std::move(readValue)), reactTo(std::move(reaction)), current(read()), previous(current) {}

        bool hasChanged() override {
            auto value = read();
            if (value == current)
                return false;
            previous = std::exchange(current, std::move(value));
            return true;
        }
        void react() override {
            // Copies: a reaction may enter the holder again. What was before is let go of: it may be all that
            // still keeps something that was deleted.
            const Value to = current;
            const Value from = std::exchange(previous, to);
            reactTo(from, to);
        }

        Read read;
        React reactTo;
        Value current;
        Value previous;
    };

    /// Keeps the depth right however a handler ends.
    struct Entry {
        explicit Entry(Reactions& reactions) : depth(reactions.m_depth) { ++depth; }
        ~Entry() { --depth; }
        int& depth;
    };

    /// Whether anything had changed.
    bool settle();

    std::vector<std::unique_ptr<Field>> m_watched;
    int m_depth = 0;
};

} // namespace kestrova
