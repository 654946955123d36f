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
    /// Takes the desktop portal's name if it is not taken yet. `state`: the number that is the colour scheme,
    /// of a change of which it tells; "silent": questions are never answered; anything else: they are
    /// answered with an error.
    void offerSettings(const QString& state);
    /// Leaves the desktop portal's name.
    void withdrawSettings();
    /// Takes the file manager's name. It keeps what it is asked to show.
    void manageFiles();
    /// The URLs of the last request to show files and the token that came with it, joined by blanks; empty if
    /// there was none.
    QString shownFiles() const { return m_shownFiles; }
    /// Takes that name as an application that the bus starts. It keeps what it is asked to open.
    void beApplication(const QString& name);
    /// The URLs of the last request to open some and the token that came with it, joined by blanks; empty if
    /// there was none.
    QString openedFiles() const { return m_openedFiles; }
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
            const auto answer = m_answer(message);
            return answer.type() == QDBusMessage::InvalidMessage || bus.send(answer);
        }

    private:
        const Answer m_answer;
    };

    QDBusMessage answerOfWatcher(const QDBusMessage& question) const;
    /// No message at all if it is to stay silent.
    QDBusMessage answerOfPortal(const QDBusMessage& question) const;
    QDBusMessage answerOfFileManager(const QDBusMessage& question);
    QDBusMessage answerOfApplication(const QDBusMessage& question);
    QDBusMessage answerOfAccessibility(const QDBusMessage& question);

    QDBusConnection m_bus = QDBusConnection::sessionBus();
    QString m_notifierState;
    QString m_colorScheme;
    QString m_shownFiles;
    QString m_openedFiles;
    QString m_applicationPath;
    QSet<QString> m_refused;
    Object m_watcher{[this](const QDBusMessage& question) { return answerOfWatcher(question); }};
    Object m_portal{[this](const QDBusMessage& question) { return answerOfPortal(question); }};
    Object m_fileManager{[this](const QDBusMessage& question) { return answerOfFileManager(question); }};
    Object m_application{[this](const QDBusMessage& question) { return answerOfApplication(question); }};
    Object m_accessibility{[this](const QDBusMessage& question) { return answerOfAccessibility(question); }};
};

} // namespace kestrova::test
