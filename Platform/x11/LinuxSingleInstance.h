#pragma once

#include "Platform/SingleInstance.h"
#include "Platform/x11/InstanceFiles.h"

#include <memory>

class QLocalServer;
class QLocalSocket;

namespace kestrova {

/// One instance by a locked file that the kernel releases with the process, commands by the session bus and
/// by a local socket. The socket is always there: a later start may come from outside the session.
class LinuxSingleInstance final : public SingleInstance {
public:
    /// `dataDirectory` is made, for this user alone, if it is missing.
    explicit LinuxSingleInstance(const QString& dataDirectory);
    ~LinuxSingleInstance() override;

    bool claim() override;
    void serve() override;

private:
    class BusObject;

    void serveSocket();
    void serveBus();
    void answer(QLocalSocket& socket);

    InstanceFiles m_files;
    int m_lock = -1;
    std::unique_ptr<QLocalServer> m_server;
    std::unique_ptr<BusObject> m_busObject;
};

} // namespace kestrova
