#include "Platform/x11/FontMemory.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <sys/mman.h>

namespace kestrova {
namespace {

constexpr std::size_t size = 256 * 1024;

/// A file that is mapped for reading, as fonts are, and wholly read.
class MappedFile {
public:
    explicit MappedFile(const QString& path) : m_path(path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadWrite));
        file.write(QByteArray(size, 'f'));
        file.flush();
        m_bytes = static_cast<const char*>(::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.handle(), 0));
        EXPECT_TRUE(isIntact());
    }
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;
    ~MappedFile() { ::munmap(const_cast<char*>(m_bytes), size); }

    bool isIntact() const {
        return std::all_of(m_bytes, m_bytes + size, [](char byte) { return byte == 'f'; });
    }
    /// In kilobytes, as the system tells; -1 if it does not know the mapping.
    int residentSize() const {
        QFile maps(QStringLiteral("/proc/self/smaps"));
        EXPECT_TRUE(maps.open(QIODevice::ReadOnly));
        bool isThis = false;
        for (const auto& line : maps.readAll().split('\n')) {
            if (line.endsWith(m_path.toLocal8Bit()))
                isThis = true;
            else if (isThis && line.startsWith("Rss:"))
                return line.mid(4).trimmed().split(' ').first().toInt();
        }
        return -1;
    }

private:
    QString m_path;
    const char* m_bytes = nullptr;
};

TEST(FontMemoryTest, PagesOfFontFilesAreLetGoAndReadAgainWhenNeeded) {
    const QTemporaryDir folder;
    const MappedFile font(folder.filePath(QStringLiteral("font.ttf")));
    const MappedFile other(folder.filePath(QStringLiteral("font.txt")));
    ASSERT_EQ(font.residentSize(), 256);
    letGoOfFontPages();
    EXPECT_EQ(font.residentSize(), 0);
    EXPECT_EQ(other.residentSize(), 256);
    EXPECT_TRUE(font.isIntact());
}

} // namespace
} // namespace kestrova
