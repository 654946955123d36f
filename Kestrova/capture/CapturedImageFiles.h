#pragma once

#include "Platform/MainQueue.h"

#include <QDateTime>
#include <QString>
#include <QUrl>

#include <map>
#include <optional>

namespace kestrova {

struct CapturedImagePayload;

/// Files of dragged captures, for applications that take files. Nobody but the person can read them. Each
/// lies in a folder of its own and goes ten minutes after it was written, or with the program: by then
/// whoever took it has read it, and pictures of the screen do not lie about for longer. Main thread only.
class CapturedImageFiles {
public:
    /// `mainQueue` outlives it. What a killed run has left in `temporaryDirectory` goes a while after the
    /// start.
    CapturedImageFiles(MainQueue& mainQueue, QString temporaryDirectory);
    CapturedImageFiles(const CapturedImageFiles&) = delete;
    CapturedImageFiles& operator=(const CapturedImageFiles&) = delete;
    /// Removes all that it has written.
    ~CapturedImageFiles();

    /// A file of its own for each call; complete as soon as it has its name. Absent, with a line in the log,
    /// if it cannot be written.
    std::optional<QUrl> write(const CapturedImagePayload& payload);

    /// Folders that another run has left behind, unless they were made less than ten minutes before `now`.
    void removeLeftBehind(const QDateTime& now) const;

private:
    MainQueue& m_mainQueue;
    QString m_temporaryDirectory;
    ScheduledBlock m_tidying;
    /// When each folder goes.
    std::map<QString, ScheduledBlock> m_folders;
};

} // namespace kestrova
