#pragma once

// The C header names a member after a keyword of C++. Nothing here uses that member.
#define explicit explicitComponents
#include <xcb/xkb.h>
#undef explicit
