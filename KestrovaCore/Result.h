#pragma once

#include <utility>
#include <variant>

namespace kestrova {

/// Either a value or the reason why there is none. Failures that a caller can expect are returned in one of
/// these.
template<typename Value, typename Error>
class [[nodiscard]] Result {
public:
    Result(Value value) : m_state(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) : m_state(std::in_place_index<1>, std::move(error)) {}

    explicit operator bool() const { return m_state.index() == 0; }
    Value& value() & { return std::get<0>(m_state); }
    const Value& value() const& { return std::get<0>(m_state); }
    /// By value, so that a loop over the value of a temporary does not outlive it.
    Value value() && { return std::get<0>(std::move(m_state)); }
    const Error& error() const { return std::get<1>(m_state); }

private:
    std::variant<Value, Error> m_state;
};

/// The value of a Result that tells only whether something worked.
struct Done {};

} // namespace kestrova
