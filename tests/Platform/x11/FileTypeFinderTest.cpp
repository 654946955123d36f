#include "Platform/x11/FileTypeFinder.h"

#include "Platform/x11/QtMainQueue.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

/// Files of which those whose name begins with "hung" lie on a disk that does not answer until it is told to.
/// As the finder's threads may outlive a test, so does this.
class Disk {
public:
    FileFacts look(const QByteArray& path, FirstBytes) {
        std::unique_lock lock(m_mutex);
        ++m_looks;
        m_changed.notify_all();
        if (path.startsWith("hung"))
            m_changed.wait(lock, [this] { return m_answers; });
        ++m_answered;
        m_changed.notify_all();
        return {.kind = FileFacts::Kind::directory, .firstBytes = {}};
    }
    void answer() {
        const std::scoped_lock lock(m_mutex);
        m_answers = true;
        m_changed.notify_all();
    }
    void awaitLooks(int count) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_looks >= count; });
    }
    void awaitAnswered(int count) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_answered >= count; });
    }
    int looks() {
        const std::scoped_lock lock(m_mutex);
        return m_looks;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_answers = false;
    int m_looks = 0;
    int m_answered = 0;
};

/// Turns by itself, but its clock stands still until a test has no more patience.
class PatientQueue final : public MainQueue {
public:
    ~PatientQueue() override { close(); }

    void postFromAnyThread(Block block) override { m_turns.postFromAnyThread(std::move(block)); }
    void losePatience() {
        for (const auto& [id, block] : std::exchange(m_delayed, {}))
            block();
    }

protected:
    std::uint64_t schedule(Duration delay, Repeat, Block block) override {
        if (delay == Duration::zero())
            m_turns.post(std::move(block));
        else
            m_delayed.emplace(++m_lastID, std::move(block));
        return m_lastID;
    }
    void cancel(std::uint64_t id) override { m_delayed.erase(id); }

private:
    QtMainQueue m_turns;
    std::map<std::uint64_t, Block> m_delayed;
    std::uint64_t m_lastID = 0;
};

class FileTypeFinderTest : public ::testing::Test {
protected:
    ~FileTypeFinderTest() override { m_disk->answer(); }

    template<typename Happened>
    static void processUntil(Happened happened) {
        while (!happened())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    }
    void find(const QString& path) {
        m_finder->find(path, [this, path](const QMimeType& type) {
            m_found.append(path + u' ' + type.name());
            m_thread = std::this_thread::get_id();
        });
    }

    const std::shared_ptr<Disk> m_disk = std::make_shared<Disk>();
    PatientQueue m_queue;
    std::optional<FileTypeFinder> m_finder{std::in_place, m_queue,
                                           [disk = m_disk](const QByteArray& path, FirstBytes firstBytes) {
                                               return disk->look(path, firstBytes);
                                           }};
    QStringList m_found;
    std::thread::id m_thread;
};

TEST_F(FileTypeFinderTest, TellsTheTypeInALaterTurnOnTheMainThread) {
    find(u"a"_s);
    m_disk->awaitAnswered(1);
    EXPECT_TRUE(m_found.isEmpty());
    processUntil([&] { return !m_found.isEmpty(); });
    EXPECT_EQ(m_found, QStringList{u"a inode/directory"_s});
    EXPECT_EQ(m_thread, std::this_thread::get_id());
}

TEST_F(FileTypeFinderTest, LooksAtTheDiskItself) {
    const QTemporaryDir directory;
    QFile file(directory.filePath(u"picture"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("\x89PNG\r\n\x1a\n");
    file.close();
    FileTypeFinder finder(m_queue);
    QString found;
    finder.find(file.fileName(), [&](const QMimeType& type) { found = type.name(); });
    processUntil([&] { return !found.isEmpty(); });
    EXPECT_EQ(found, u"image/png"_s);
}

TEST_F(FileTypeFinderTest, ADiskThatDoesNotAnswerHoldsUpNoOther) {
    find(u"hung.pdf"_s);
    find(u"a"_s);
    processUntil([&] { return !m_found.isEmpty(); });
    EXPECT_EQ(m_found, QStringList{u"a inode/directory"_s});
}

TEST_F(FileTypeFinderTest, WhereTheDiskDoesNotAnswerTheNameMustDo) {
    find(u"hung.pdf"_s);
    m_queue.losePatience();
    EXPECT_EQ(m_found, QStringList{u"hung.pdf application/pdf"_s});
    // The answer that comes after all is one too many.
    m_disk->answer();
    find(u"a"_s);
    processUntil([&] { return m_found.size() > 1; });
    EXPECT_EQ(m_found.last(), u"a inode/directory"_s);
}

TEST_F(FileTypeFinderTest, OnlySoManyFilesAreLookedAtSideBySide) {
    for (std::size_t count = 0; count < FileTypeFinder::maximumLooks; ++count)
        find(u"hung"_s);
    find(u"a"_s);
    m_disk->awaitLooks(FileTypeFinder::maximumLooks);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_disk->looks(), static_cast<int>(FileTypeFinder::maximumLooks));
    // They come to be overdue, and it is the next one's turn.
    m_queue.losePatience();
    processUntil([&] { return m_found.contains(u"a inode/directory"_s); });
}

TEST_F(FileTypeFinderTest, WithTooManyThreadsOverdueTheNameMustDoUntilOneIsBack) {
    constexpr auto most = static_cast<int>(FileTypeFinder::maximumOverdue);
    for (int count = 0; count < most; ++count)
        find(u"hung"_s);
    while (m_found.size() < most) {
        m_disk->awaitLooks(static_cast<int>(m_found.size() + FileTypeFinder::maximumLooks));
        m_queue.losePatience();
    }
    find(u"a.pdf"_s);
    EXPECT_EQ(m_found.size(), most);
    processUntil([&] { return m_found.size() > most; });
    EXPECT_EQ(m_found.last(), u"a.pdf application/pdf"_s);
    EXPECT_EQ(m_disk->looks(), most);
    m_disk->answer();
    processUntil([&] {
        find(u"a.pdf"_s);
        QCoreApplication::processEvents();
        return m_found.last() == u"a.pdf inode/directory"_s;
    });
}

TEST_F(FileTypeFinderTest, GoingItWaitsForNoDiskAndTellsNothing) {
    find(u"hung"_s);
    find(u"a"_s);
    m_disk->awaitAnswered(1);
    m_disk->awaitLooks(2);
    m_finder.reset();
    m_disk->answer();
    m_disk->awaitAnswered(2);
    QCoreApplication::processEvents();
    EXPECT_TRUE(m_found.isEmpty());
}

} // namespace
} // namespace kestrova
