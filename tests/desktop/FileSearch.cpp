#include "tests/desktop/FileSearch.h"

#include <QByteArrayList>
#include <QDirIterator>
#include <QFile>
#include <QStringEncoder>

#include <algorithm>

namespace kestrova::test {

QStringList filesHolding(const QString& folder, const QString& text) {
    const QByteArrayList forms{text.toUtf8(), QStringEncoder(QStringEncoder::Utf16LE)(text),
                               QStringEncoder(QStringEncoder::Utf16BE)(text)};
    QStringList found;
    QDirIterator files(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray bytes = file.readAll();
        if (std::ranges::any_of(forms, [&bytes](const QByteArray& form) { return bytes.contains(form); }))
            found.append(file.fileName());
    }
    return found;
}

} // namespace kestrova::test
