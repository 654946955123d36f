#pragma once

#include "Platform/RunningApplication.h"

#include <QCoroTask>

#include <QString>

namespace kestrova {

/// The accessible elements of other applications. Main thread only; nothing here waits for another program,
/// and every answer comes within half a second.
class Accessibility {
public:
    virtual ~Accessibility() = default;

    /// Whether the desktop lets this program use its accessibility interface.
    virtual bool isTrusted() const = 0;
    /// Puts `text` in place of the selection of the application's focused element, or at its caret, and tells
    /// whether that was done. False, with nothing changed, if the application has no such element, does not
    /// say, does not take it, or the element is a password field or belongs to this program. `text` went in
    /// whole or not at all.
    virtual QCoro::Task<bool> setSelectedText(RunningApplication application, QString text) = 0;
};

} // namespace kestrova
