#pragma once

#include <QStringList>

#include <functional>
#include <optional>

namespace kestrova {

struct CommandReply;

/// The part of a command that the starting process carries out: wrong use and help need no running program,
/// and the answer of the running one goes to this process's streams and files.
class CommandClient {
public:
    /// Hands arguments to the running program; absent if none runs.
    using Send = std::function<std::optional<CommandReply>(const QStringList&)>;

    explicit CommandClient(Send send) : m_send(std::move(send)) {}

    /// The exit status of the process; absent if the arguments ask to start the program.
    std::optional<int> run(const QStringList& arguments) const;
    /// Tells the running program that it was started again.
    int greetRunningProgram() const;

private:
    int handOver(const QStringList& arguments, const std::optional<QString>& outputFile = {}) const;

    Send m_send;
};

} // namespace kestrova
