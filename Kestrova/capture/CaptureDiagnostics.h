#pragma once

#include "Kestrova/capture/CaptureSelection.h"

#include <exception>
#include <optional>

namespace kestrova {

/// Hears of captures that failed. Main thread only.
class CaptureDiagnostics {
public:
    virtual ~CaptureDiagnostics() = default;
    /// `selection` is absent for a capture of a whole display.
    virtual void reportCaptureFailure(const std::exception& error,
                                      const std::optional<CaptureSelection>& selection) = 0;
};

/// For builds that report nothing.
class NoCaptureDiagnostics final : public CaptureDiagnostics {
public:
    void reportCaptureFailure(const std::exception&, const std::optional<CaptureSelection>&) override {}
};

} // namespace kestrova
