#pragma once

#include "tests/support/Ports.h"

#include <QList>

namespace kestrova {

/// A desktop without applications. It keeps what it is asked to open and to reveal.
class RecordingWorkspace final : public FakeWorkspace {
public:
    void open(const QUrl& url) override { opened.append(url); }
    void reveal(const QUrl& file) override { revealed.append(file); }

    QList<QUrl> opened;
    QList<QUrl> revealed;
};

} // namespace kestrova
