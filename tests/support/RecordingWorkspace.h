#pragma once

#include "Platform/Workspace.h"

#include <QList>

namespace kestrova {

/// A desktop without applications. It keeps what it is asked to open and to reveal.
class RecordingWorkspace final : public Workspace {
public:
    std::optional<RunningApplication> frontmostApplication() const override { return {}; }
    QIcon icon(const RunningApplication&) const override { return {}; }
    bool isTerminated(const RunningApplication&) const override { return false; }
    void activate(const RunningApplication&) override {}
    void activateOwnWindow(std::uint64_t) override {}
    void open(const QUrl& url) override { opened.append(url); }
    void reveal(const QUrl& file) override { revealed.append(file); }

    QList<QUrl> opened;
    QList<QUrl> revealed;
};

} // namespace kestrova
