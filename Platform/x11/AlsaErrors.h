#pragma once

namespace kestrova {

/// ALSA's library writes several lines to the standard error each time that it finds no device, which is no
/// error on a machine without one. From now on it does not. Does nothing where the library is not loaded.
void keepAlsaFromWriting();

} // namespace kestrova
