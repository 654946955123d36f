#pragma once

#include "KestrovaCore/ClipboardItem.h"
#include "KestrovaCore/KovaCollection.h"
#include "KestrovaCore/KovaStore.h"
#include "KestrovaCore/ModelContainer.h"
#include "KestrovaCore/ModelContext.h"

#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace kestrova {

/// `seconds` after a fixed moment.
Timestamp moment(int seconds);

std::shared_ptr<ClipboardItem> makeText(const QString& content, int createdAtSeconds = 0);

/// The contents of all rows, newest first, as a context of its own sees them.
QStringList savedContents(ModelContainer& container);

/// A store of its own on disk for each test.
class StoreFixture : public testing::Test {
protected:
    StoreFixture();

    QString storeFile() const { return m_directory.filePath(QStringLiteral("store.sqlite")); }
    /// Opens the file a second time: to the database that is another process.
    std::unique_ptr<ModelContainer> openedByAnotherProcess() const;

    QTemporaryDir m_directory;
    std::unique_ptr<ModelContainer> m_container;
};

/// Runs statements on a database file with bare SQLite, as any other program could. The hold that an open
/// transaction has lasts as long as the object.
class ForeignConnection {
public:
    explicit ForeignConnection(const QString& file);
    ForeignConnection(const ForeignConnection&) = delete;
    ForeignConnection& operator=(const ForeignConnection&) = delete;
    ~ForeignConnection();

    void execute(const char* sql);
    /// The first column of the first row, as text.
    QString value(const char* sql);

private:
    void* m_handle = nullptr;
};

} // namespace kestrova
