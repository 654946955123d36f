#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QSet>
#include <QString>

#include <functional>

namespace kestrova::test {

/// Services of a desktop on the session bus that answer as a test wants. Main thread only.
class BusServices {
public:
    BusServices();
    BusServices(const BusServices&) = delete;
    BusServices& operator=(const BusServices&) = delete;
    ~BusServices();

    /// Takes the watcher's name if it is not taken yet. `state`: "0" or "1" for whether there is a host, of
    /// which a "1" that follows a "0" is told; anything else: questions are answered with an error.
    void watchNotifiers(const QString& state);
    /// Takes the accessibility service's name. It refuses its bus to everybody once and then names
    /// the session bus.
    void refuseAccessibilityOnce();

private:
    class Object final : public QDBusVirtualObject {
    public:
        using Answer = std::function<QDBusMessage(const QDBusMessage&)>;

        explicit Object(Answer answer) : m_answer(std::move(answer)) {}
        QString introspect(const QString&) const override { return {}; }
        bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
            return bus.send(m_answer(message));
        }

    private:
        const Answer m_answer;
    };

    QDBusMessage answerOfWatcher(const QDBusMessage& question) const;
    QDBusMessage answerOfAccessibility(const QDBusMessage& question);

    QDBusConnection m_bus = QDBusConnection::sessionBus();
    QString m_notifierState;
    QSet<QString> m_refused;
    Object m_watcher{[this](const QDBusMessage& question) { return answerOfWatcher(question); }};
    Object m_accessibility{[this](const QDBusMessage& question) { return answerOfAccessibility(question); }};
};

} // namespace kestrova::test
