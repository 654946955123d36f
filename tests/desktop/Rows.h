#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include <string>

namespace kestrova::test {

/// A row as `list --json` tells it, without what differs from run to run: `id` and `createdAt`.
QJsonObject withoutIdentity(QJsonObject row);

/// The row of copied text of the kind `rawType`, likewise without `id` and `createdAt`. `sourceApp` may be
/// null.
QJsonObject textRow(const QString& content, const QString& rawType, const QJsonValue& sourceApp);
/// The row of a copied bitmap.
QJsonObject bitmapRow(int width, int height, const QJsonValue& sourceApp);
/// The row of the copied file at `path`, which holds `size` bytes.
QJsonObject fileRow(const QString& path, qint64 size, const QJsonValue& sourceApp);

/// Readable and comparable, for expectations.
std::string text(const QJsonObject& object);

/// Whether `text` is a moment as rows tell it, such as "2024-05-01T08:00:00.000Z", no later than now and no
/// earlier than a minute ago.
bool isMomentOfTheLastMinute(const QString& text);

} // namespace kestrova::test
