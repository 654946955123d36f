#pragma once

#include "Platform/SingleInstance.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
#include <utility>

namespace kestrova {

/// Hands the arguments of a later start to the running instance of the same history.
class InstanceClient {
public:
    /// `answerDeadline` is how long a running instance may take over one command.
    explicit InstanceClient(QString dataDirectory,
                            std::chrono::milliseconds answerDeadline = std::chrono::seconds{60})
        : m_dataDirectory(std::move(dataDirectory)), m_answerDeadline(answerDeadline) {}

    /// Whether an instance runs.
    bool isRunning() const;
    /// The instance's answer; absent if none runs or none that can be reached. One that is still starting is
    /// waited for. Arguments are never sent again once they may have been carried out: an instance that takes
    /// them and stays silent is answered for by an error. Blocks.
    std::optional<CommandReply> send(const QStringList& arguments) const;

private:
    std::optional<CommandReply> sendByBus(const QStringList& arguments) const;
    std::optional<CommandReply> sendBySocket(const QStringList& arguments) const;

    QString m_dataDirectory;
    std::chrono::milliseconds m_answerDeadline;
};

} // namespace kestrova
