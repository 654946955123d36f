#pragma once

#include "Platform/UserDefaults.h"

#include <QString>

namespace kestrova {

/// A boolean that lives in the user defaults and nowhere else: what is set here is at once what everybody
/// reads there. Absent or of another type it has its default. Main thread only.
class StoredFlag {
public:
    /// `defaults` outlives the object.
    StoredFlag(UserDefaults& defaults, QString key, bool byDefault)
        : m_defaults(defaults), m_key(std::move(key)), m_byDefault(byDefault) {}

    operator bool() const { return m_defaults.boolean(m_key).value_or(m_byDefault); }
    StoredFlag& operator=(bool value) {
        m_defaults.set(m_key, value);
        return *this;
    }
    void flip() { *this = !*this; }
    const QString& key() const { return m_key; }

private:
    UserDefaults& m_defaults;
    const QString m_key;
    const bool m_byDefault;
};

} // namespace kestrova
