#pragma once

namespace kestrova {

/// Lets go of the pages of font files that were mapped to draw from. They are read from the system's file
/// cache again when they are next needed; until then they do not count as this program's. A glyph of a large
/// font holds on to 64 KiB around it. Any thread.
void letGoOfFontPages();

} // namespace kestrova
