#pragma once

namespace kestrova {

/// Lets go of the pages of code and constants, of the program and its libraries, that have been used so far.
/// They are read from the system's file cache again when they are next needed; until then they do not count
/// as this program's. Does nothing under a debugger, whose breakpoints lie in such pages. Any thread.
void letGoOfProgramPages();

} // namespace kestrova
