#pragma once

#include <QRegion>

#include <xcb/xcb.h>

#include <map>
#include <span>

namespace kestrova {

class CaptureConnection;
struct RootChild;

/// From now on, and as long as the connection lives, the server keeps what windows show where others cover
/// them. Where no compositor had asked for that before, what is covered is lost and its applications are
/// asked to paint it again: then this waits until they have within `area`, in pixels of the desktop, of the
/// `wanted` children of the root; not longer than people take for a blink, and not for what no application
/// paints.
void keepContents(CaptureConnection& connection, std::span<const RootChild> wanted, const QRegion& area);

/// What of each `wanted` child of the root is covered within `area`, in pixels of the desktop; those of which
/// nothing is are left out. `children` lowest first.
std::map<xcb_window_t, QRegion> coveredParts(const CaptureConnection& connection,
                                             std::span<const RootChild> children,
                                             std::span<const xcb_window_t> wanted, const QRegion& area);

} // namespace kestrova
