#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUrl>

#include <optional>

namespace kestrova {

class UserDefaults;

/// Writes pictures to the person's folder of screenshots, and never over a file.
namespace ScreenshotSaver {

/// Under a name made of `date`. Absent if `screenshotAutoSave` is off, or if it failed: then the log tells.
std::optional<QUrl> saveIfEnabled(const UserDefaults& defaults, const QByteArray& data,
                                  const QDateTime& date);
/// Under `fileName`, with a number behind it if that is taken.
std::optional<QUrl> saveIfEnabled(const UserDefaults& defaults, const QByteArray& data,
                                  const QString& fileName);
/// For an edited picture: the stem of `originalName`, or one made of `date`, marked as edited.
QString editedFileName(const std::optional<QString>& originalName, const QDateTime& date);
/// "Screenshot " and `date` in the person's locale and time zone, without an extension.
QString datedName(const QDateTime& date);

} // namespace ScreenshotSaver

} // namespace kestrova
