#include "tests/desktop/StoreFile.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

namespace kestrova::test {

using namespace Qt::StringLiterals;

namespace {

int appendFirstColumn(void* list, int columns, char** values, char**) {
    if (columns > 0)
        static_cast<QStringList*>(list)->append(QString::fromUtf8(values[0]));
    return 0;
}

} // namespace

StoreFile::StoreFile(const QString& path) {
    sqlite3* database = nullptr;
    const int status = sqlite3_open(path.toUtf8().constData(), &database);
    m_database.reset(database);
    if (status != SQLITE_OK)
        throw std::runtime_error("cannot open " + path.toStdString());
}

void StoreFile::execute(const QByteArray& statements) {
    query(statements);
}

QStringList StoreFile::query(const QByteArray& statement) {
    QStringList found;
    if (sqlite3_exec(m_database.get(), statement.constData(), appendFirstColumn, &found, nullptr) !=
        SQLITE_OK)
        throw std::runtime_error(statement.toStdString() + ": " + sqlite3_errmsg(m_database.get()));
    return found;
}

QString integrityOfCopy(const QString& path, const QString& scratchFolder) {
    QDir(scratchFolder).removeRecursively();
    QDir().mkpath(scratchFolder);
    const QString copy = scratchFolder + u"/copy.sqlite"_s;
    // The index of the log is made anew from the log.
    for (const QString& suffix : {QString(), u"-wal"_s})
        QFile::copy(path + suffix, copy + suffix);
    return StoreFile(copy).query("PRAGMA integrity_check").join(u'\n');
}

} // namespace kestrova::test
