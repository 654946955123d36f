#include "tests/desktop/SessionSweep.h"

#include "tests/desktop/Waiting.h"

#include <QDir>
#include <QFile>

#include <csignal>
#include <set>
#include <sys/wait.h>
#include <unistd.h>

namespace kestrova::test {

using namespace Qt::StringLiterals;

std::vector<pid_t> processesMarked(const QByteArray& marker) {
    std::vector<pid_t> found;
    for (const QString& name : QDir(u"/proc"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        bool isNumber = false;
        const pid_t pid = name.toInt(&isNumber);
        if (!isNumber || pid == ::getpid())
            continue;
        // Unreadable for processes of other users and empty for those that have ended: neither is ours to
        // end.
        QFile environment(u"/proc/%1/environ"_s.arg(pid));
        if (environment.open(QIODevice::ReadOnly) && environment.readAll().split('\0').contains(marker))
            found.push_back(pid);
    }
    return found;
}

void endProcessesMarked(const QByteArray& marker) {
    std::set<pid_t> dying;
    eventually([&marker, &dying] {
        const std::vector<pid_t> left = processesMarked(marker);
        for (const pid_t pid : left) {
            ::kill(pid, SIGKILL);
            dying.insert(pid);
        }
        std::erase_if(dying, [](pid_t pid) { return ::waitpid(pid, nullptr, WNOHANG) != 0; });
        return left.empty() && dying.empty();
    });
}

} // namespace kestrova::test
