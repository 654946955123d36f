#pragma once

#include <QDBusConnection>
#include <QString>

namespace kestrova::test {

/// An assistive program such as a screen reader: as long as it lives, toolkits of programs that start tell of
/// what happens in them and ask about each key before they act on it. Throws std::runtime_error if the
/// session has no accessibility bus.
class AssistiveProgram {
public:
    /// `sessionBus`: the address of the session's bus.
    explicit AssistiveProgram(const QString& sessionBus);
    AssistiveProgram(const AssistiveProgram&) = delete;
    AssistiveProgram& operator=(const AssistiveProgram&) = delete;
    ~AssistiveProgram();

    /// The bus on which accessible programs are.
    const QDBusConnection& bus() const { return m_bus; }

private:
    static QString accessibilityBus(const QString& sessionBus);

    QDBusConnection m_bus;
};

} // namespace kestrova::test
