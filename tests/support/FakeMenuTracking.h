#pragma once

#include "Platform/MenuTracking.h"

namespace kestrova {

/// A menu that a test opens and closes.
class FakeMenuTracking final : public MenuTracking {
public:
    void begin() const {
        if (onDidBegin)
            onDidBegin();
    }
    void end() const {
        if (onDidEnd)
            onDidEnd();
    }
};

} // namespace kestrova
