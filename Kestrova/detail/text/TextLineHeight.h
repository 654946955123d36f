#pragma once

class QFont;

namespace kestrova {

/// How far below each other lines of running text lie, in whole pixels: further than the font itself asks
/// for, since letters of other scripts fill more of a line than Latin ones.
int textLineHeight(const QFont& font);

} // namespace kestrova
