#pragma once

#include <QObject>
#include <QUrl>

#include <functional>

namespace kestrova {

/// The desktop's file manager, on the session bus. Main thread only.
class FileManager {
public:
    /// Asks it to show the file in its folder, selected, and comes back at once. `onFailure` is called, later
    /// or within the call, where no file manager answers that it has.
    void show(const QUrl& file, std::function<void()> onFailure);

private:
    // Owns what waits for an answer.
    QObject m_pending;
};

} // namespace kestrova
