#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace kestrova {

/// How the lines of a text end if all of them end alike, with "\n", "\r\n" or "\r"; "\n" for a single line.
/// Absent if they do not, and if the text holds another character that the toolkit's editor takes for a line
/// end: it could not tell afterwards what there was.
std::optional<QString> commonLineEnd(QStringView text);

} // namespace kestrova
