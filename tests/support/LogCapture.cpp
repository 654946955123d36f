#include "tests/support/LogCapture.h"

namespace kestrova {
namespace {

// A message handler is a plain function: what it collects cannot be a member.
QStringList& collected() {
    static QStringList lines;
    return lines;
}

} // namespace

LogCapture::LogCapture() {
    collected().clear();
    m_previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { collected().append(text); });
}

LogCapture::~LogCapture() {
    qInstallMessageHandler(m_previous);
}

const QStringList& LogCapture::lines() const {
    return collected();
}

} // namespace kestrova
