#include "Platform/x11/CanberraSoundPlayer.h"

#include "Platform/x11/CanberraBackend.h"
#include "tests/support/LogCapture.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr auto generously = 20s;

/// What the player asks of its backend, seen from the test's thread. It keeps the backend waiting on demand.
class Stage {
public:
    void begin(std::string path) {
        std::unique_lock lock(m_mutex);
        m_played.push_back(std::move(path));
        m_thread = std::this_thread::get_id();
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return !m_isStuck; });
    }
    void setBackends(int change) {
        const std::lock_guard lock(m_mutex);
        m_backends += change;
        m_changed.notify_all();
    }
    void setStuck(bool isStuck) {
        const std::lock_guard lock(m_mutex);
        m_isStuck = isStuck;
        m_changed.notify_all();
    }

    bool waitForPlays(std::size_t count) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, generously, [&] { return m_played.size() >= count; });
    }
    bool waitForNoBackend() {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, generously, [&] { return m_backends == 0; });
    }
    std::vector<std::string> played() const {
        const std::lock_guard lock(m_mutex);
        return m_played;
    }
    int backends() const {
        const std::lock_guard lock(m_mutex);
        return m_backends;
    }
    std::thread::id thread() const {
        const std::lock_guard lock(m_mutex);
        return m_thread;
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::string> m_played;
    std::thread::id m_thread;
    int m_backends = 0;
    bool m_isStuck = false;
};

class StageBackend : public SoundBackend {
public:
    explicit StageBackend(Stage& stage) : m_stage(stage) { m_stage.setBackends(1); }
    StageBackend(const StageBackend&) = delete;
    StageBackend& operator=(const StageBackend&) = delete;
    ~StageBackend() override { m_stage.setBackends(-1); }

    void play(const std::string& path) override { m_stage.begin(path); }

private:
    Stage& m_stage;
};

class CanberraSoundPlayerTest : public ::testing::Test {
protected:
    CanberraSoundPlayerTest() {
        QDir(folder.path()).mkdir(u"sounds"_s);
        for (const QString& name : {u"Glass"_s, u"Ping"_s, u"Pop"_s}) {
            QFile file(folder.filePath(u"sounds/%1.wav"_s.arg(name)));
            EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        }
        player.emplace(folder.path(), [this] { return std::make_unique<StageBackend>(stage); });
    }
    ~CanberraSoundPlayerTest() override {
        stage.setStuck(false);
        player.reset();
        // Its thread may outlive the player, but not what it speaks to.
        EXPECT_TRUE(stage.waitForNoBackend());
    }

    std::string pathOf(const QString& name) const {
        return folder.filePath(u"sounds/%1.wav"_s.arg(name)).toStdString();
    }

    const QTemporaryDir folder;
    Stage stage;
    std::optional<CanberraSoundPlayer> player;
};

TEST_F(CanberraSoundPlayerTest, NothingBeginsBeforeTheFirstSound) {
    player.reset();
    EXPECT_EQ(stage.backends(), 0);
    EXPECT_TRUE(stage.played().empty());
}

TEST_F(CanberraSoundPlayerTest, ANameIsPlayedFromItsFile) {
    player->play(u"Glass"_s);
    ASSERT_TRUE(stage.waitForPlays(1));
    EXPECT_EQ(stage.played(), std::vector{pathOf(u"Glass"_s)});
}

TEST_F(CanberraSoundPlayerTest, ItIsPlayedOnAnotherThread) {
    player->play(u"Glass"_s);
    ASSERT_TRUE(stage.waitForPlays(1));
    EXPECT_NE(stage.thread(), std::this_thread::get_id());
}

TEST_F(CanberraSoundPlayerTest, OneBackendPlaysAllSounds) {
    player->play(u"Glass"_s);
    ASSERT_TRUE(stage.waitForPlays(1));
    player->play(u"Ping"_s);
    ASSERT_TRUE(stage.waitForPlays(2));
    EXPECT_EQ(stage.played(), (std::vector{pathOf(u"Glass"_s), pathOf(u"Ping"_s)}));
    EXPECT_EQ(stage.backends(), 1);
}

TEST_F(CanberraSoundPlayerTest, AnUnknownNameDoesNotTakeThePlaceOfASoundThatWaits) {
    stage.setStuck(true);
    player->play(u"Glass"_s);
    ASSERT_TRUE(stage.waitForPlays(1));
    player->play(u"Ping"_s);
    for (const QString& name : {u"Gong"_s, u"../sounds/Pop"_s, QString()})
        player->play(name);
    stage.setStuck(false);
    ASSERT_TRUE(stage.waitForPlays(2));
    EXPECT_EQ(stage.played(), (std::vector{pathOf(u"Glass"_s), pathOf(u"Ping"_s)}));
}

TEST_F(CanberraSoundPlayerTest, WhileTheServerKeepsItWaitingTheCallerGoesOnAndTheLastSoundFollows) {
    stage.setStuck(true);
    player->play(u"Glass"_s);
    ASSERT_TRUE(stage.waitForPlays(1));
    // Were they to wait for the server, the test would end here.
    player->play(u"Ping"_s);
    player->play(u"Pop"_s);
    stage.setStuck(false);
    ASSERT_TRUE(stage.waitForPlays(2));
    EXPECT_EQ(stage.played(), (std::vector{pathOf(u"Glass"_s), pathOf(u"Pop"_s)}));
}

TEST_F(CanberraSoundPlayerTest, AtItsEndTheBackendIsGone) {
    // The usual time may be too short on a loaded machine.
    std::optional<SoundThread> thread(
        std::in_place, [this] { return std::make_unique<StageBackend>(stage); }, generously);
    thread->play("any");
    ASSERT_TRUE(stage.waitForPlays(1));
    thread.reset();
    EXPECT_EQ(stage.backends(), 0);
}

TEST_F(CanberraSoundPlayerTest, AServerThatNeverAnswersDoesNotHoldItsEnd) {
    stage.setStuck(true);
    player->play(u"Glass"_s);
    ASSERT_TRUE(stage.waitForPlays(1));
    const auto begin = std::chrono::steady_clock::now();
    player.reset();
    EXPECT_GE(std::chrono::steady_clock::now() - begin, SoundThread::usualTimeToEnd);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, SoundThread::usualTimeToEnd + 5s);
    EXPECT_EQ(stage.backends(), 1);
}

/// What the real library says with a driver of that name, asked to play two files that are not there.
QStringList saidWithDriver(const char* driver) {
    qputenv("CANBERRA_DRIVER", driver);
    const LogCapture log;
    {
        CanberraBackend backend("org.example.Test");
        backend.play("/nonexistent/one.wav");
        backend.play("/nonexistent/other.wav");
    }
    qunsetenv("CANBERRA_DRIVER");
    return log.lines();
}

TEST(CanberraBackendTest, WithoutADriverItSaysSoOnce) {
    EXPECT_EQ(saidWithDriver("none-of-that-name"),
              QStringList{u"[SoundPlayer] no sound driver opens: No such driver"_s});
}

TEST(CanberraBackendTest, AFileThatIsNotThereIsNamedOnce) {
    EXPECT_EQ(saidWithDriver("alsa"),
              QStringList{u"[SoundPlayer] /nonexistent/one.wav cannot be played: File or data not found"_s});
}

} // namespace
} // namespace kestrova
