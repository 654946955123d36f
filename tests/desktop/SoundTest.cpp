#include "tests/desktop/DesktopSession.h"
#include "tests/desktop/Waiting.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrova::test {
namespace {

using namespace Qt::StringLiterals;

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The real library plays the real files on a device that is a file.
class SoundTest : public ::testing::Test {
protected:
    SoundTest() {
        // Whatever else is installed where the test runs.
        session.environment().insert(u"CANBERRA_DRIVER"_s, u"alsa"_s);
    }

    void setDevice(const QByteArray& definition) {
        session.environment().insert(
            u"ALSA_CONFIG_PATH"_s,
            session.writeFile(u"asound.conf"_s, "pcm.!default { " + definition + " }\n"));
    }
    void setDeviceThatWritesTo(const QString& path) {
        setDevice("type file file \"" + QFile::encodeName(path) + "\" format raw slave.pcm { type null }");
    }

    Process& startProbe(const QByteArray& names) { return startProbe(names, programFolder); }
    Process& startProbe(const QByteArray& names, const QString& folder) {
        return session.start({.program = QStringLiteral(SOUND_PROBE),
                              .arguments = {folder},
                              .standardInput = names,
                              .inputStaysOpen = true});
    }
    /// What the file of a sound holds behind its header.
    QByteArray samplesOf(const QString& name) const {
        return bytesOf(programFolder + u"/sounds/"_s + name + u".wav"_s).mid(44);
    }

    DesktopSession session{DesktopSession::Bus::None};
    const QString programFolder = QFileInfo(QStringLiteral(KESTROVA_BINARY)).path();
    const QString heard = session.path(u"heard"_s);
};

TEST_F(SoundTest, EverySampleOfASoundReachesTheDevice) {
    setDeviceThatWritesTo(heard);
    Process& probe = startProbe("Glass\n");
    const QByteArray samples = samplesOf(u"Glass"_s);
    ASSERT_FALSE(samples.isEmpty());
    EXPECT_TRUE(eventually([&] { return bytesOf(heard).contains(samples); }));
    probe.closeStandardInput();
    ASSERT_TRUE(probe.waitForEnd(kGenerously));
    EXPECT_EQ(probe.result().exitStatus, 0);
    EXPECT_EQ(probe.result().standardError, "");
}

TEST_F(SoundTest, AnInstalledProgramFindsItsSounds) {
    const QString prefix = session.path(u"prefix"_s);
    const auto installed = session.run(QStringLiteral(CMAKE_PROGRAM),
                                       {u"--install"_s, QStringLiteral(BUILD_FOLDER), u"--prefix"_s, prefix});
    ASSERT_EQ(installed.exitStatus, 0) << installed.standardError.toStdString();
    ASSERT_TRUE(QFileInfo(prefix + u"/bin/kestrova"_s).isExecutable());
    setDeviceThatWritesTo(heard);
    Process& probe = startProbe("Glass\n", prefix + u"/bin"_s);
    const QByteArray samples = samplesOf(u"Glass"_s);
    ASSERT_FALSE(samples.isEmpty());
    EXPECT_TRUE(eventually([&] { return bytesOf(heard).contains(samples); }));
    probe.closeStandardInput();
    ASSERT_TRUE(probe.waitForEnd(kGenerously));
    EXPECT_EQ(probe.result().standardError, "");
}

TEST_F(SoundTest, WithoutADeviceThereIsOneLineInTheLog) {
    setDevice("type hw card 31");
    Process& probe = startProbe("Glass\n");
    EXPECT_TRUE(
        eventually([&] { return probe.standardError().contains("no sound server or device plays"); }));
    probe.closeStandardInput();
    ASSERT_TRUE(probe.waitForEnd(kGenerously));
    EXPECT_EQ(probe.result().exitStatus, 0);
    EXPECT_EQ(probe.result().standardError.count('\n'), 1) << probe.result().standardError.toStdString();
}

TEST_F(SoundTest, ADeviceThatNeverOpensDoesNotHoldTheExit) {
    // The library reads its configuration to the end, which this one never has.
    const QByteArray configuration = QFile::encodeName(session.path(u"endless"_s));
    ASSERT_EQ(::mkfifo(configuration.constData(), 0600), 0);
    session.environment().insert(u"ALSA_CONFIG_PATH"_s, QString::fromLocal8Bit(configuration));
    Process& probe = startProbe("Glass\n");
    int writingEnd = -1;
    // It can be opened only once somebody reads.
    EXPECT_TRUE(eventually([&] {
        writingEnd = ::open(configuration.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        return writingEnd >= 0;
    }));
    probe.closeStandardInput();
    EXPECT_TRUE(probe.waitForEnd(kGenerously));
    ::close(writingEnd);
    ASSERT_TRUE(probe.waitForEnd(kGenerously));
    EXPECT_EQ(probe.result().exitStatus, 0);
    EXPECT_EQ(probe.result().standardError, "");
}

} // namespace
} // namespace kestrova::test
