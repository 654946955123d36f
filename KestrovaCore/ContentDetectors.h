#pragma once

#include <QStringView>

/// Decide how copied text is filed. Pure; neither changes what is stored.
namespace kestrova::ContentDetectors {

/// Whether `text`, trimmed, is a colour value: a hash with 3, 6 or 8 hexadecimal digits, or one of the
/// functions rgb, rgba, hsl and hsla with anything between its parentheses. At most 40 characters.
bool isColor(QStringView text);

/// Whether `text`, trimmed, is one web address: http or https with a host, no blank in it, at most 2000
/// characters.
bool isURL(QStringView text);

} // namespace kestrova::ContentDetectors
