#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>
#include <sqlite3.h>

namespace kestrova::test {

/// A database file as another program sees it. Throws std::runtime_error if SQLite refuses.
class StoreFile {
public:
    explicit StoreFile(const QString& path);

    /// Runs statements whose results do not matter.
    void execute(const QByteArray& statements);
    /// The first column of every row that the query gives.
    QStringList query(const QByteArray& statement);

private:
    struct Close {
        void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
    };
    std::unique_ptr<sqlite3, Close> m_database;
};

/// What a copy of the store at `path`, with its side files, says of itself: "ok" if it is sound. The files
/// themselves are not opened, so that the program finds them as they are.
QString integrityOfCopy(const QString& path, const QString& scratchFolder);

} // namespace kestrova::test
