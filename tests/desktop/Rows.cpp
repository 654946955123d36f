#include "tests/desktop/Rows.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QUrl>

namespace kestrova::test {

using namespace Qt::StringLiterals;

QJsonObject withoutIdentity(QJsonObject row) {
    row.remove(u"id"_s);
    row.remove(u"createdAt"_s);
    return row;
}

QJsonObject textRow(const QString& content, const QString& rawType, const QJsonValue& sourceApp) {
    return {{u"content"_s, content},
            {u"rawType"_s, rawType},
            {u"width"_s, QJsonValue::Null},
            {u"height"_s, QJsonValue::Null},
            {u"fileURLString"_s, QJsonValue::Null},
            {u"fileSize"_s, QJsonValue::Null},
            {u"sourceApp"_s, sourceApp},
            {u"pinned"_s, false},
            {u"collections"_s, QJsonArray()},
            {u"ocrText"_s, QJsonValue::Null},
            {u"rawSource"_s, u"clipboard"_s}};
}

QJsonObject bitmapRow(int width, int height, const QJsonValue& sourceApp) {
    QJsonObject row = textRow(u"Image"_s, u"image"_s, sourceApp);
    row[u"width"_s] = width;
    row[u"height"_s] = height;
    return row;
}

QJsonObject fileRow(const QString& path, qint64 size, const QJsonValue& sourceApp) {
    QJsonObject row = textRow(path, u"file"_s, sourceApp);
    row[u"fileURLString"_s] = QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
    row[u"fileSize"_s] = size;
    return row;
}

std::string text(const QJsonObject& object) {
    return QJsonDocument(object).toJson().toStdString();
}

bool isMomentOfTheLastMinute(const QString& text) {
    static const QRegularExpression form(u"^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z$"_s);
    const qint64 age =
        QDateTime::fromString(text, Qt::ISODateWithMs).msecsTo(QDateTime::currentDateTimeUtc());
    return form.match(text).hasMatch() && age >= 0 && age < 60'000;
}

} // namespace kestrova::test
