#include "Platform/x11/SelectionSnapshot.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QSysInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

QByteArray png(int width, int height) {
    QByteArray bytes;
    QBuffer target{&bytes};
    target.open(QIODevice::WriteOnly);
    QImage image{width, height, QImage::Format_RGB32};
    image.fill(Qt::darkCyan);
    image.save(&target, "PNG");
    return bytes;
}

QStringList read(const QByteArray& list) {
    QStringList texts;
    for (const auto& url : urlsFromList(list))
        texts.append(QString::fromLatin1(url.toEncoded()));
    return texts;
}

TEST(UrlListTest, GoodListsKeepTheirOrder) {
    struct Row {
        QByteArray list;
        QStringList urls;
    };
    const std::vector<Row> rows{
        {"file:///a\r\n", {u"file:///a"_s}},
        {"file:///a", {u"file:///a"_s}},
        {"file:///b\r\nfile:///a\r\n", {u"file:///b"_s, u"file:///a"_s}},
        {"file:///a\nfile:///b\n", {u"file:///a"_s, u"file:///b"_s}},
        {"# a comment\r\nfile:///a\r\n", {u"file:///a"_s}},
        {"\r\n\r\nfile:///a\r\n\r\n", {u"file:///a"_s}},
        {"file:///a%20b\r\n", {u"file:///a%20b"_s}},
        {"file:///a b\r\n", {u"file:///a%20b"_s}},
        {"file:///\xed\x95\x9c.png\r\n", {u"file:///%ED%95%9C.png"_s}},
        {"https://example.org/x?y=1#z\r\n", {u"https://example.org/x?y=1#z"_s}},
        {"file://localhost/a\r\n", {u"file:///a"_s}},
        {"file:///a%23b\r\n", {u"file:///a%23b"_s}},
        {"file:/a\r\n", {u"file:///a"_s}},
        {QByteArray("file:///a\0", 10), {u"file:///a"_s}},
        {QByteArray("file:///a\r\nfile:///b\r\n\0", 23), {u"file:///a"_s, u"file:///b"_s}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(read(row.list), row.urls) << row.list.constData();
}

TEST(UrlListTest, WhatIsNoUrlIsLeftOut) {
    const std::vector<QByteArray> rows{"",
                                       "\r\n",
                                       "#",
                                       "#file:///a",
                                       "/home/me/a.png\r\n",
                                       "a.png",
                                       "../a",
                                       "://",
                                       ":",
                                       "http://[::1",
                                       "http://a:99999999/",
                                       "1http://a/",
                                       "ht tp://a/",
                                       QByteArray("file:///a\0b\r\n", 13),
                                       QByteArray("\0\0\0\0", 4),
                                       "\xff\xfe\xfd",
                                       "//host/a"};
    for (const auto& row : rows)
        EXPECT_EQ(read(row), QStringList{}) << row.constData();
}

TEST(UrlListTest, ABadLineDoesNotSpoilTheOthers) {
    EXPECT_EQ(read("nonsense\r\nfile:///a\r\nhttp://[\r\nfile:///b"),
              (QStringList{u"file:///a"_s, u"file:///b"_s}));
}

TEST(UrlListTest, AFileOnThisMachineByNameIsALocalFile) {
    const auto list = "file://"_ba + QSysInfo::machineHostName().toLatin1() + "/a\r\n"_ba;
    EXPECT_EQ(read(list), QStringList{u"file:///a"_s});
}

TEST(SelectionTextTest, TheTargetNamesTheEncoding) {
    struct Row {
        QByteArray target;
        QByteArray bytes;
        QString text;
    };
    const std::vector<Row> rows{
        {"UTF8_STRING", "\xed\x95\x9c", u"한"_s},
        {"text/plain;charset=utf-8", "\xed\x95\x9c", u"한"_s},
        {"text/plain", "\xed\x95\x9c", u"한"_s},
        {"text/plain", "caf\xe9", u"café"_s},
        {"STRING", "caf\xe9", u"café"_s},
        {"STRING", "caf\xc3\xa9", u"cafÃ©"_s},
        {"UTF8_STRING", "caf\xe9!", u"caf\uFFFD!"_s},
        {"UTF8_STRING", QByteArray("a\0b\0\0", 5), QString::fromLatin1("a\0b", 3)},
        {"UTF8_STRING", QByteArray("\0", 1), u""_s},
        {"UTF8_STRING", "", u""_s},
        {"UTF8_STRING", "  \r\n", u"  \r\n"_s},
    };
    for (const auto& row : rows)
        EXPECT_EQ(textFromTarget(row.target, row.bytes), row.text) << row.target.constData();
}

class DecodedSnapshotTest : public testing::Test {
protected:
    QUrl file(const QString& name, const QByteArray& bytes) const {
        QFile file{m_directory.filePath(name)};
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return QUrl::fromLocalFile(file.fileName());
    }
    static SelectionSnapshot decoded(const QList<QUrl>& urls) {
        FetchedSelection fetched;
        fetched.urls = urls;
        return decodedSnapshot(fetched, {u"png"_s});
    }

    const QTemporaryDir m_directory;
};

TEST_F(DecodedSnapshotTest, TheFirstFileIsDecodedIfItsExtensionIsAPictures) {
    const auto snapshot = decoded({file(u"a.PNG"_s, png(3, 2)), file(u"b.png"_s, png(5, 5))});
    ASSERT_TRUE(snapshot.pictureOfFile);
    EXPECT_EQ(snapshot.pictureOfFile->pixels, QSize(3, 2));
}

TEST_F(DecodedSnapshotTest, OtherFilesAreNotDecoded) {
    EXPECT_FALSE(decoded({file(u"a.txt"_s, png(3, 2))}).pictureOfFile);
    EXPECT_FALSE(decoded({file(u"png"_s, png(3, 2))}).pictureOfFile);
    EXPECT_FALSE(decoded({file(u"a.txt"_s, {}), file(u"b.png"_s, png(5, 5))}).pictureOfFile);
    EXPECT_FALSE(decoded({QUrl(u"https://example.org/a.png"_s)}).pictureOfFile);
    EXPECT_FALSE(decoded({}).pictureOfFile);
}

TEST_F(DecodedSnapshotTest, AFileThatIsNoPictureIsStillAFile) {
    const auto url = file(u"a.png"_s, "no picture");
    const auto snapshot = decoded({url});
    EXPECT_FALSE(snapshot.pictureOfFile);
    EXPECT_EQ(snapshot.urls, QList{url});
}

TEST(HoldsTest, AnUnchangedEntryIsRecognisedByItsContent) {
    SelectionSnapshot text;
    text.text = u"a"_s;
    SelectionSnapshot picture;
    picture.image = PasteboardImage{.png = "bytes", .pixels = {1, 1}};
    SelectionSnapshot file;
    file.urls = {QUrl(u"file:///a"_s)};
    EXPECT_TRUE(holds(text, PlainText{u"a"_s}));
    EXPECT_TRUE(holds(picture, PngData{"bytes"}));
    EXPECT_TRUE(holds(file, FileReference{QUrl(u"file:///a"_s)}));

    EXPECT_FALSE(holds(text, PlainText{u"A"_s}));
    EXPECT_FALSE(holds(text, PngData{"bytes"}));
    EXPECT_FALSE(holds(picture, PngData{"other"}));
    EXPECT_FALSE(holds(file, PlainText{u"file:///a"_s}));
    file.urls.append(QUrl(u"file:///b"_s));
    EXPECT_FALSE(holds(file, FileReference{QUrl(u"file:///a"_s)}));
    EXPECT_FALSE(holds({}, PlainText{u""_s}));
}

} // namespace
} // namespace kestrova
