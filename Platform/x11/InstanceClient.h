#pragma once

#include "Platform/SingleInstance.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <utility>

namespace kestrova {

/// Hands the arguments of a later start to the running instance of the same history.
class InstanceClient {
public:
    explicit InstanceClient(QString dataDirectory) : m_dataDirectory(std::move(dataDirectory)) {}

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
};

} // namespace kestrova
