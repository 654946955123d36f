#pragma once

#include <QStringList>
#include <QtGlobal>

namespace kestrova {

/// Collects the lines of the log for as long as it lives. One at a time.
class LogCapture {
public:
    LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    ~LogCapture();

    const QStringList& lines() const;

private:
    QtMessageHandler m_previous;
};

} // namespace kestrova
