#include "tests/desktop/ProcessorTime.h"

#include "tests/desktop/Waiting.h"

#include <QByteArrayList>
#include <QFile>

namespace kestrova::test {

namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using Clock = std::chrono::steady_clock;

constexpr qint64 kQuietTicks = 2;
constexpr auto kQuietTime = 300ms;

} // namespace

qint64 processorTicks(qint64 pid) {
    QFile stat(u"/proc/%1/stat"_s.arg(pid));
    if (!stat.open(QIODevice::ReadOnly))
        return -1;
    // The name in parentheses may hold blanks; after it the state is field 3, the two times are fields 14
    // and 15.
    const QByteArray line = stat.readAll();
    const QByteArrayList fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    return fields.size() > 12 ? fields[11].toLongLong() + fields[12].toLongLong() : -1;
}

bool becomesQuiet(qint64 pid, std::chrono::milliseconds deadline) {
    qint64 ticksAtStart = processorTicks(pid);
    auto start = Clock::now();
    return eventually(
        [&] {
            const qint64 ticks = processorTicks(pid);
            if (ticks - ticksAtStart > kQuietTicks) {
                ticksAtStart = ticks;
                start = Clock::now();
            }
            return ticks >= 0 && Clock::now() - start >= kQuietTime;
        },
        deadline);
}

} // namespace kestrova::test
