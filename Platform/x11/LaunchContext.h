#pragma once

#include "Platform/x11/InstalledApplications.h"

namespace kestrova {

/// What a program that a person has just asked for is started with: the environment that this program
/// was started in, and a token by which the window manager lets its window come to the front.
GObjectPointer<GAppLaunchContext> makeLaunchContext();

/// A token for one start. It says when the person asked for it.
QByteArray makeActivationToken();

} // namespace kestrova
