#pragma once

#include <functional>

namespace kestrova {

/// The program's place of its own in the desktop's task list and switcher. Main thread only.
class TaskListPresence {
public:
    virtual ~TaskListPresence() = default;

    /// Takes the place for as long as the object lives. Takes the keyboard from nobody, now or when the
    /// program is chosen there. To be called once.
    virtual void appear() = 0;
    /// The person has chosen the program there.
    std::function<void()> onActivate;
};

} // namespace kestrova
