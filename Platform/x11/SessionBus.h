#pragma once

namespace kestrova {

/// Whether the environment names a session bus. Asking the bus library itself could start one.
bool hasSessionBus();

/// Where there is no session bus, keeps the libraries of this process from starting one, which would stay
/// behind. Before the toolkit starts.
void keepSessionBusFromBeingStarted();

} // namespace kestrova
