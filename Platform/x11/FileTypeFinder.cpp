#include "Platform/x11/FileTypeFinder.h"

#include <QFile>

#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace kestrova {

namespace {

QMimeType typeByName(const QString& path) {
    return typeOfFile(path, {});
}

} // namespace

/// What the threads and the finder have in common. The threads are left to themselves: one that comes back
/// when the finder has gone, perhaps while the program ends, touches nothing but this.
class FileTypeFinder::Threads : public std::enable_shared_from_this<Threads> {
public:
    using Found = std::function<void(std::uint64_t number, const QMimeType& type)>;

    Threads(MainQueue& mainQueue, Look look, Found found)
        : m_look(std::move(look)), m_mainQueue(&mainQueue), m_found(std::move(found)) {}

    /// Throws std::system_error if there can be no further thread.
    void start(std::uint64_t number, const QString& path) {
        std::thread([self = shared_from_this(), number, path] { self->run(number, path); }).detach();
    }

    void close() {
        const std::scoped_lock lock{m_mutex};
        m_mainQueue = nullptr;
    }

    void tell(std::uint64_t number, const QMimeType& type) const {
        if (m_mainQueue)
            m_found(number, type);
    }

private:
    void run(std::uint64_t number, const QString& path) {
        auto firstBytes = FirstBytes::asWell;
        if (!whileOpen([&](MainQueue&) {
                if (isTypeToldByName(path))
                    firstBytes = FirstBytes::leftOut;
            }))
            return;
        const auto facts = m_look(QFile::encodeName(path), firstBytes);
        whileOpen([&](MainQueue& mainQueue) {
            mainQueue.postFromAnyThread([self = shared_from_this(), number, type = typeOfFile(path, facts)] {
                self->tell(number, type);
            });
        });
    }

    /// Does it if the finder is there, which then waits for it.
    template<typename Block>
    bool whileOpen(const Block& block) {
        const std::scoped_lock lock{m_mutex};
        if (m_mainQueue)
            block(*m_mainQueue);
        return m_mainQueue != nullptr;
    }

    const Look m_look;
    std::mutex m_mutex;
    // Null once the finder has gone. Written on the main thread, which may read it without the lock.
    MainQueue* m_mainQueue;
    const Found m_found;
};

FileTypeFinder::FileTypeFinder(MainQueue& mainQueue, Look look)
    : m_mainQueue(mainQueue),
      m_threads(std::make_shared<Threads>(
          mainQueue, std::move(look),
          [this](std::uint64_t number, const QMimeType& type) { onFound(number, type); })) {}

FileTypeFinder::~FileTypeFinder() {
    m_threads->close();
}

void FileTypeFinder::find(const QString& path, Done done) {
    m_waiting.push_back({path, std::move(done)});
    startNext();
}

void FileTypeFinder::startNext() {
    while (!m_waiting.empty() && m_running.size() < maximumLooks) {
        auto request = std::move(m_waiting.front());
        m_waiting.pop_front();
        start(std::move(request));
    }
}

void FileTypeFinder::start(Request request) {
    const auto number = ++m_lastNumber;
    const auto& running = m_running[number] = {
        .request = std::move(request),
        .deadline = m_mainQueue.afterUnlessCancelled(patience, [this, number] { onDeadline(number); })};
    const auto tellName = [this, number, path = running.request.path] {
        m_mainQueue.post([threads = m_threads, number, path] { threads->tell(number, typeByName(path)); });
    };
    if (m_overdue >= maximumOverdue)
        return tellName();
    try {
        m_threads->start(number, running.request.path);
    } catch (const std::system_error&) {
        tellName();
    }
}

void FileTypeFinder::onFound(std::uint64_t number, const QMimeType& type) {
    const auto found = m_running.find(number);
    if (found == m_running.end()) {
        --m_overdue;
        return;
    }
    const auto done = std::move(found->second.request.done);
    m_running.erase(found);
    startNext();
    done(type);
}

void FileTypeFinder::onDeadline(std::uint64_t number) {
    const auto found = m_running.find(number);
    const auto request = std::move(found->second.request);
    m_running.erase(found);
    ++m_overdue;
    startNext();
    request.done(typeByName(request.path));
}

} // namespace kestrova
