#pragma once

#include <QDropEvent>
#include <QWidget>

namespace kestrova {

/// Has a text control take what is dropped on it, as `handle` does, but never as a move: a program whose text
/// is moved deletes it there. Within `control` itself text may be moved. Nothing is taken from a program that
/// does not let its text be copied.
template<typename Event, typename Handle>
void takeAsCopy(Event& event, const QWidget& control, const Handle& handle) {
    const bool isOwn = event.source() == &control;
    if (!isOwn && !(event.possibleActions() & Qt::CopyAction)) {
        event.ignore();
        return;
    }
    handle(event);
    // The toolkit's controls accept whatever is proposed.
    if (!isOwn && event.isAccepted())
        event.setDropAction(Qt::CopyAction);
}

} // namespace kestrova
