#pragma once

#include <QRegion>

namespace kestrova {

class CaptureConnection;
struct RootChild;

/// What applications paint of a child of the root when something was lost, in pixels of the desktop. The rest
/// the server fills by itself, or nobody does: no application asks to be told about it.
QRegion paintedByApplications(const CaptureConnection& connection, const RootChild& child);

} // namespace kestrova
