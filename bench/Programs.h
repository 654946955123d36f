#pragma once

#include "bench/SampleHistory.h"
#include "tests/desktop/DesktopSession.h"

#include <QStringList>

#include <chrono>
#include <optional>
#include <string>

namespace kestrova::bench {

/// The desktop on which whole programs are measured, and the histories with which they are started, made
/// once.
class Desktop {
public:
    struct History {
        std::string name;
        QString dataHome;
    };

    Desktop();

    test::DesktopSession& session() { return m_session; }
    const test::DesktopSession& session() const { return m_session; }
    const History& empty() const { return m_empty; }
    const History& texts() const { return m_texts; }
    const History& textsAndPictures() const { return m_textsAndPictures; }
    /// Twenty times the usual ones; made when it is first asked for.
    const History& manyTexts();
    /// A thousand of the size of a large display; made when it is first asked for.
    const History& largePictures();
    /// One of 8000 x 8000 pixels. Made at each call.
    History hugePicture() const;
    /// Only this text. Made at each call.
    History holding(const std::string& name, const QString& text) const;

private:
    History made(const std::string& name, const SampleHistory& contents) const;

    test::DesktopSession m_session;
    History m_empty;
    History m_texts;
    History m_textsAndPictures;
    std::optional<History> m_manyTexts;
    std::optional<History> m_largePictures;
};

/// A started program that answers at a socket. It is ended with the object. Throws std::runtime_error if it
/// cannot be started or does not answer.
class RunningProgram {
public:
    /// Kestrova with that history.
    RunningProgram(Desktop& desktop, const Desktop::History& history);
    /// Kestrova on a desktop of another size, with what lies below `dataHome`.
    RunningProgram(test::DesktopSession& session, const QString& dataHome);
    /// The bare program of the same toolkit; with an interval it wakes up that often, for nothing.
    explicit RunningProgram(Desktop& desktop,
                            std::optional<std::chrono::milliseconds> wakesEvery = std::nullopt);
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    ~RunningProgram();

    qint64 pid() const { return m_process.pid(); }
    QByteArray ask(const QStringList& arguments) const;
    /// From just before it was started to its first answer.
    double millisecondsToReady() const { return m_millisecondsToReady; }

private:
    RunningProgram(test::DesktopSession& session, const QString& socketFile, const test::ProcessSpec& spec);

    QString m_socketFile;
    double m_millisecondsToReady = 0;
    test::Process& m_process;
};

} // namespace kestrova::bench
