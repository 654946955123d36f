#pragma once

#include <QJsonValue>
#include <QString>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>

namespace kestrova {

class UserDefaults;

/// Owns one observation of a UserDefaults and ends it when it goes.
class DefaultsObservation {
public:
    DefaultsObservation() = default;
    DefaultsObservation(UserDefaults& defaults, std::uint64_t id) : m_defaults(&defaults), m_id(id) {}
    DefaultsObservation(DefaultsObservation&& other) noexcept
        : m_defaults(std::exchange(other.m_defaults, nullptr)), m_id(other.m_id) {}
    DefaultsObservation& operator=(DefaultsObservation&& other) noexcept;
    ~DefaultsObservation();

private:
    UserDefaults* m_defaults = nullptr;
    std::uint64_t m_id = 0;
};

/// The person's preferences by key, kept across starts. Main thread only.
///
/// A typed read of an absent key, or of one whose value has another type, is absent: the caller then uses its
/// default. A change is seen by the next read, wherever it was made, and told to the observers of its key.
class UserDefaults {
public:
    using Observer = std::function<void()>;

    virtual ~UserDefaults() = default;

    /// The stored value; `QJsonValue::Undefined` for an absent key.
    virtual QJsonValue object(const QString& key) const = 0;
    std::optional<bool> boolean(const QString& key) const;
    std::optional<std::int64_t> integer(const QString& key) const;
    std::optional<double> number(const QString& key) const;
    std::optional<QString> text(const QString& key) const;

    /// Stores `value`; `QJsonValue::Undefined` removes the key. A value that cannot be written to disk is
    /// logged and holds until the program ends.
    virtual void set(const QString& key, const QJsonValue& value) = 0;

    /// Calls `observer` after each change of `key` until the result goes. Within the call `object` already
    /// gives the new value.
    [[nodiscard]] DefaultsObservation observe(const QString& key, Observer observer);

protected:
    /// An implementation calls it after each change of `key`.
    void notify(const QString& key);

private:
    friend class DefaultsObservation;

    std::map<std::uint64_t, std::pair<QString, Observer>> m_observers;
    std::uint64_t m_lastObserver = 0;
};

} // namespace kestrova
