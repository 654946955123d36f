#include "Kestrova/capture/NewFile.h"

#include "tests/Kestrova/capture/FileSystemFaults.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <ostream>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

/// No file of this process grows beyond `bytes` while it lives: as on a disk that is full, a write stops
/// half-way and the next one fails.
class SmallFiles {
public:
    explicit SmallFiles(rlim_t bytes) : m_formerHandler(std::signal(SIGXFSZ, SIG_IGN)) {
        if (::getrlimit(RLIMIT_FSIZE, &m_former) != 0)
            throw std::runtime_error("the limit is unknown");
        rlimit limit = m_former;
        limit.rlim_cur = bytes;
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0)
            throw std::runtime_error("the limit does not hold");
    }
    ~SmallFiles() {
        ::setrlimit(RLIMIT_FSIZE, &m_former);
        std::signal(SIGXFSZ, m_formerHandler);
    }
    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;

private:
    rlimit m_former{};
    void (*const m_formerHandler)(int);
};

/// The umask while it lives.
class Umask {
public:
    explicit Umask(mode_t mask) : m_former(::umask(mask)) {}
    ~Umask() { ::umask(m_former); }
    Umask(const Umask&) = delete;
    Umask& operator=(const Umask&) = delete;

private:
    const mode_t m_former;
};

/// A file system by what it cannot do.
struct Kind {
    const char* name;
    FileSystemFaults faults;
};
void PrintTo(const Kind& kind, std::ostream* stream) {
    *stream << kind.name;
}

constexpr Kind usual{"one that can do everything", {}};

class NewFileTest : public testing::TestWithParam<Kind> {
protected:
    QString path(const QString& name = u"a.png"_s) const { return m_directory.filePath(name); }
    /// Hidden ones too.
    QStringList files() const {
        return QDir(m_directory.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    static QByteArray contentOf(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }
    mode_t modeOf(const QString& of) const {
        struct stat status {};
        return ::stat(QFile::encodeName(of).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
    }

    const QTemporaryDir m_directory;
    FileSystemWithFaults fileSystem{GetParam().faults};
    const QByteArray large = QByteArray(1 << 20, 'x');
};

TEST_P(NewFileTest, TheFileHoldsTheBytesAndNothingElseIsLeft) {
    EXPECT_EQ(writeNewFile(path(), large), std::error_code());
    EXPECT_EQ(contentOf(path()), large);
    EXPECT_THAT(files(), ElementsAre(u"a.png"_s));
}

TEST_P(NewFileTest, AFileMayBeEmpty) {
    EXPECT_EQ(writeNewFile(path(), {}), std::error_code());
    EXPECT_EQ(contentOf(path()), QByteArray());
}

TEST_P(NewFileTest, AFileThatIsThereStaysAsItIs) {
    ASSERT_FALSE(writeNewFile(path(), "first"));
    EXPECT_EQ(writeNewFile(path(), "second"), std::errc::file_exists);
    EXPECT_EQ(contentOf(path()), "first");
    EXPECT_THAT(files(), ElementsAre(u"a.png"_s));
}

TEST_P(NewFileTest, ALinkThatIsThereIsNotFollowed) {
    ASSERT_TRUE(QFile::link(path(u"target"_s), path()));
    EXPECT_EQ(writeNewFile(path(), large), std::errc::file_exists);
    EXPECT_THAT(files(), ElementsAre(u"a.png"_s));
}

TEST_P(NewFileTest, OfSeveralThatWantANameAtOnceExactlyOneGetsIt) {
    for (int round = 0; round < 20; ++round) {
        const auto wanted = path(QString::number(round));
        std::vector<std::error_code> results(4);
        {
            std::vector<std::jthread> writers;
            for (std::size_t writer = 0; writer < results.size(); ++writer)
                writers.emplace_back(
                    [&, writer] { results[writer] = writeNewFile(wanted, QByteArray::number(int(writer))); });
        }
        const auto winner = std::ranges::find(results, std::error_code());
        ASSERT_NE(winner, results.end());
        EXPECT_EQ(contentOf(wanted), QByteArray::number(int(winner - results.begin())));
        EXPECT_EQ(std::count(results.begin(), results.end(), std::errc::file_exists), 3);
    }
    EXPECT_EQ(files().size(), 20);
}

TEST_P(NewFileTest, AWriteThatStopsHalfWayLeavesNoFile) {
    const SmallFiles limit(64 * 1024);
    EXPECT_EQ(writeNewFile(path(), large), std::errc::file_too_large);
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_FALSE(writeNewFile(path(), large.left(64 * 1024)));
    EXPECT_THAT(files(), ElementsAre(u"a.png"_s));
}

TEST_P(NewFileTest, AFolderThatIsNotThereIsAnError) {
    EXPECT_EQ(writeNewFile(path(u"none/a.png"_s), large), std::errc::no_such_file_or_directory);
}

TEST_P(NewFileTest, ANameThatEndsBeforeItsTextIsRefused) {
    EXPECT_EQ(writeNewFile(path(u"a"_s + QChar(QChar::Null) + u".png"_s), large),
              std::errc::invalid_argument);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_P(NewFileTest, WhoMayReadItIsForTheUmask) {
    {
        const Umask open(022);
        ASSERT_FALSE(writeNewFile(path(u"open"_s), large));
    }
    {
        const Umask closed(077);
        ASSERT_FALSE(writeNewFile(path(u"closed"_s), large));
    }
    EXPECT_EQ(modeOf(path(u"open"_s)), 0644u);
    EXPECT_EQ(modeOf(path(u"closed"_s)), 0600u);
}

TEST_P(NewFileTest, AWriteThatASignalInterruptsGoesOn) {
    fileSystem.faults().interruptedWrites = 3;
    EXPECT_EQ(writeNewFile(path(), large), std::error_code());
    EXPECT_EQ(contentOf(path()), large);
}

class FailingClose : public NewFileTest {};

TEST_P(FailingClose, LeavesNoFile) {
    fileSystem.faults().closing = EDQUOT;
    EXPECT_EQ(writeNewFile(path(), large), std::error_code(EDQUOT, std::generic_category()));
    fileSystem.faults().closing = 0;
    EXPECT_THAT(files(), IsEmpty());
}

class KilledWriter : public NewFileTest {};

TEST_P(KilledWriter, LeavesNothing) {
    const auto write = [this] {
        fileSystem.faults().isKilledWriting = true;
        const auto error = writeNewFile(path(), large);
        static_cast<void>(error);
    };
    EXPECT_EXIT(write(), testing::KilledBySignal(SIGKILL), "");
    EXPECT_THAT(files(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Usual, KilledWriter, testing::Values(usual));

constexpr Kind allKinds[]{
    usual,
    {"no unnamed files", {.unnamedFiles = EOPNOTSUPP}},
    {"an old kernel", {.unnamedFiles = EISDIR}},
    // Without /proc.
    {"unnamed files that stay so", {.links = ENOENT}},
    {"links, but only renaming that replaces", {.unnamedFiles = EOPNOTSUPP, .renamingWithFlags = EINVAL}},
    {"the same without the call", {.unnamedFiles = EOPNOTSUPP, .renamingWithFlags = ENOSYS}},
    {"only renaming that replaces",
     {.unnamedFiles = EOPNOTSUPP, .renamingWithFlags = EINVAL, .links = EPERM}},
    {"the same of a user-space program",
     {.unnamedFiles = EOPNOTSUPP, .renamingWithFlags = EOPNOTSUPP, .links = EOPNOTSUPP}},
    {"the same of an old one", {.unnamedFiles = EOPNOTSUPP, .renamingWithFlags = ENOSYS, .links = ENOSYS}},
};
INSTANTIATE_TEST_SUITE_P(Kinds, NewFileTest, testing::ValuesIn(allKinds));
INSTANTIATE_TEST_SUITE_P(Kinds, FailingClose, testing::ValuesIn(allKinds));

} // namespace
} // namespace kestrova
