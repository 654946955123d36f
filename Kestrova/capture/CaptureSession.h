#pragma once

#include "Kestrova/capture/CaptureSelection.h"

#include <QCoroTask>

#include <optional>

namespace kestrova {

/// What a session begins with; the person can change it.
enum class CaptureMode { area, window };

/// One interactive selection. It lives for one run.
class CaptureSession {
public:
    virtual ~CaptureSession() = default;

    /// Absent if the person cancelled. Throws nothing. The session outlives the wait.
    virtual QCoro::Task<std::optional<CaptureSelection>> select() = 0;
};

} // namespace kestrova
