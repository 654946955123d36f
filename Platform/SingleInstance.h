#pragma once

#include <QByteArray>
#include <QStringList>

#include <functional>

namespace kestrova {

/// What the running program answers to one command, for the process that sent it to put out.
struct CommandReply {
    int exitStatus = 0;
    QByteArray standardOutput;
    QByteArray standardError;

    bool operator==(const CommandReply&) const = default;
};

/// Keeps the program to one running instance for one history, and takes the commands of later starts.
/// Main thread only.
class SingleInstance {
public:
    virtual ~SingleInstance() = default;

    /// True if this process is now the one instance, until it ends; false if another one is.
    virtual bool claim() = 0;
    /// From now on commands are answered by `onCommand`. What cannot be served is logged.
    virtual void serve() = 0;

    /// Carries out the arguments of a later start, without the program's name. Set before `serve`.
    std::function<CommandReply(const QStringList& arguments)> onCommand;
};

} // namespace kestrova
