#pragma once

#include "Platform/MainQueue.h"
#include "Platform/x11/FileType.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>

namespace kestrova {

/// Finds out of what types files are. Each file is looked at on a thread of its own, because a disk that does
/// not answer keeps the thread for as long as it likes: after `patience` the file's name must do. Main thread
/// only.
class FileTypeFinder {
public:
    using Done = std::function<void(const QMimeType&)>;
    /// As `lookAtFile`.
    using Look = std::function<FileFacts(const QByteArray& path, FirstBytes firstBytes)>;

    static constexpr std::chrono::milliseconds patience{1000};
    /// So many files are looked at side by side; the others wait.
    static constexpr std::size_t maximumLooks = 4;
    /// While so many threads have not come back in time, no file is looked at.
    static constexpr std::size_t maximumOverdue = 12;

    /// `mainQueue` outlives it.
    explicit FileTypeFinder(MainQueue& mainQueue, Look look = lookAtFile);
    FileTypeFinder(const FileTypeFinder&) = delete;
    FileTypeFinder& operator=(const FileTypeFinder&) = delete;
    /// Waits for no disk.
    ~FileTypeFinder();

    /// `done` is called in a later turn, always with a type. Nothing is called once the finder has gone.
    void find(const QString& path, Done done);

private:
    class Threads;
    struct Request {
        QString path;
        Done done;
    };
    struct Running {
        Request request;
        ScheduledBlock deadline;
    };

    void startNext();
    void start(Request request);
    void onFound(std::uint64_t number, const QMimeType& type);
    void onDeadline(std::uint64_t number);

    MainQueue& m_mainQueue;
    const std::shared_ptr<Threads> m_threads;
    std::deque<Request> m_waiting;
    std::map<std::uint64_t, Running> m_running;
    std::size_t m_overdue = 0;
    std::uint64_t m_lastNumber = 0;
};

} // namespace kestrova
