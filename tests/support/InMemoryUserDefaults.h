#pragma once

#include "Platform/UserDefaults.h"

#include <QJsonObject>

namespace kestrova {

/// Defaults that nothing writes to disk.
class InMemoryUserDefaults final : public UserDefaults {
public:
    QJsonValue object(const QString& key) const override { return m_values.value(key); }
    void set(const QString& key, const QJsonValue& value) override {
        if (m_values.value(key) == value)
            return;
        m_values.insert(key, value);
        notify(key);
    }

private:
    QJsonObject m_values;
};

} // namespace kestrova
