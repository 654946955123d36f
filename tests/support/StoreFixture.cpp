#include "tests/support/StoreFixture.h"

#include <QFile>

#include <sqlite3.h>

namespace kestrova {

Timestamp moment(int seconds) {
    return Timestamp{std::chrono::seconds{1'700'000'000 + seconds}};
}

std::shared_ptr<ClipboardItem> makeText(const QString& content, int createdAtSeconds) {
    return std::make_shared<ClipboardItem>(content, ClipboardItemType::text, std::nullopt,
                                           moment(createdAtSeconds), false, ItemSource::clipboard);
}

QStringList savedContents(ModelContainer& container) {
    ModelContext context(container);
    QStringList contents;
    const auto items = context.fetch({});
    EXPECT_TRUE(items);
    if (items)
        for (const auto& item : items.value())
            contents.append(item->content());
    return contents;
}

StoreFixture::StoreFixture() {
    EXPECT_TRUE(m_directory.isValid());
    auto opened = ModelContainer::open(storeFile());
    EXPECT_TRUE(opened);
    m_container = std::move(opened.value());
}

std::unique_ptr<ModelContainer> StoreFixture::openedByAnotherProcess() const {
    auto opened = ModelContainer::open(storeFile());
    EXPECT_TRUE(opened);
    return std::move(opened.value());
}

ForeignConnection::ForeignConnection(const QString& file) {
    sqlite3* handle = nullptr;
    EXPECT_EQ(sqlite3_open(QFile::encodeName(file).constData(), &handle), SQLITE_OK);
    m_handle = handle;
}

ForeignConnection::~ForeignConnection() {
    sqlite3_close(static_cast<sqlite3*>(m_handle));
}

void ForeignConnection::execute(const char* sql) {
    EXPECT_EQ(sqlite3_exec(static_cast<sqlite3*>(m_handle), sql, nullptr, nullptr, nullptr), SQLITE_OK)
        << sql;
}

QString ForeignConnection::value(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(static_cast<sqlite3*>(m_handle), sql, -1, &statement, nullptr), SQLITE_OK)
        << sql;
    EXPECT_EQ(sqlite3_step(statement), SQLITE_ROW) << sql;
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)));
    sqlite3_finalize(statement);
    return text;
}

} // namespace kestrova
