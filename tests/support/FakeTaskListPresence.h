#pragma once

#include "Platform/TaskListPresence.h"

namespace kestrova {

/// A task list in which a test chooses the program by calling `onActivate`.
class FakeTaskListPresence final : public TaskListPresence {
public:
    void appear() override { ++appearances; }

    int appearances = 0;
};

} // namespace kestrova
