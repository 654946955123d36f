#include "bench/ProcessUse.h"

#include <QByteArrayList>
#include <QDir>
#include <QFile>
#include <QSet>

#include <algorithm>
#include <stdexcept>

namespace kestrova::bench {
namespace {

using namespace Qt::StringLiterals;

QByteArray readAll(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("cannot read " + path.toStdString());
    return file.readAll();
}

/// The file that a line of `maps` or `smaps` which opens a mapping names; empty for memory without a file.
QByteArray mappedFile(const QByteArray& line) {
    const auto slash = line.indexOf('/');
    return slash < 0 ? QByteArray() : line.mid(slash);
}

QSet<QByteArray> filesMappedBy(qint64 pid) {
    // Processes of other people cannot be read and those that have ended are empty; neither shares much with
    // us.
    QFile maps(u"/proc/%1/maps"_s.arg(pid));
    QSet<QByteArray> files;
    if (maps.open(QIODevice::ReadOnly))
        for (const auto& line : maps.readAll().split('\n'))
            if (const auto file = mappedFile(line); !file.isEmpty())
                files.insert(file);
    return files;
}

bool isOfTheToolkit(const QSet<QByteArray>& files) {
    return std::ranges::any_of(files, [](const QByteArray& file) { return file.contains("/libQt6Core.so"); });
}

/// Files that `pid` maps and no program of another toolkit does.
QSet<QByteArray> filesOfTheToolkitIn(qint64 pid) {
    auto files = filesMappedBy(pid);
    for (const auto& name : QDir(u"/proc"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        bool isProcess = false;
        const auto others = filesMappedBy(name.toLongLong(&isProcess));
        if (isProcess && !isOfTheToolkit(others))
            files.subtract(others);
    }
    return files;
}

} // namespace

MemoryUse memoryUseOf(qint64 pid) {
    const auto ofTheToolkit = filesOfTheToolkitIn(pid);
    MemoryUse use;
    bool countsInFull = false;
    for (const auto& line : readAll(u"/proc/%1/smaps"_s.arg(pid)).split('\n')) {
        const auto colon = line.indexOf(':');
        const auto blank = line.indexOf(' ');
        // The names of quantities end in a colon; the addresses that open a mapping hold none before a blank.
        if (colon < 0 || (blank >= 0 && blank < colon)) {
            countsInFull = ofTheToolkit.contains(mappedFile(line));
            continue;
        }
        const auto name = line.left(colon);
        const double megabytes = line.mid(colon + 1).trimmed().split(' ').first().toDouble() * 1024 / 1e6;
        if (name == "Rss") {
            use.resident += megabytes;
            use.proportional += countsInFull ? megabytes : 0;
        } else if (name == "Pss") {
            use.proportionalAsTold += megabytes;
            use.proportional += countsInFull ? 0 : megabytes;
        } else if (name == "Anonymous") {
            use.anonymous += megabytes;
        }
    }
    return use;
}

double processorMillisecondsOf(qint64 pid) {
    const QString tasks = u"/proc/%1/task"_s.arg(pid);
    double nanoseconds = 0;
    for (const auto& task : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        nanoseconds += readAll(tasks + u'/' + task + u"/schedstat"_s).split(' ').first().toDouble();
    return nanoseconds / 1e6;
}

} // namespace kestrova::bench
