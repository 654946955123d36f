#include "Platform/x11/CanberraBackend.h"

#include "Platform/x11/AlsaErrors.h"
#include "Platform/x11/CanberraLibrary.h"

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <cstdint>
#include <utility>

namespace kestrova {

namespace {

Q_LOGGING_CATEGORY(lcSound, "kestrova.sound")

constexpr std::uint32_t anySound = 0;

} // namespace

CanberraBackend::CanberraBackend(std::string applicationIdentifier)
    : m_applicationIdentifier(std::move(applicationIdentifier)),
      m_library(std::make_unique<const CanberraLibrary>()) {
    if (m_library->fault.isEmpty())
        open();
    else
        report("the sound library cannot be loaded", qUtf8Printable(m_library->fault));
}

CanberraBackend::~CanberraBackend() {
    if (m_context != nullptr)
        m_library->destroy(m_context);
}

void CanberraBackend::open() {
    if (const int error = m_library->create(&m_context); error != CA_SUCCESS) {
        m_context = nullptr;
        report("the sound library cannot be used", error);
        return;
    }
    if (const int error =
            m_library->changeProperties(m_context, CA_PROP_APPLICATION_NAME, "Kestrova",
                                        CA_PROP_APPLICATION_ID, m_applicationIdentifier.c_str(), nullptr);
        error != CA_SUCCESS)
        report("the sound server cannot be told who plays", error);
    // Playing would open it too, but then what it loads could write before it is told not to.
    if (const int error = m_library->open(m_context); error != CA_SUCCESS)
        report("no sound driver opens", error);
    keepAlsaFromWriting();
}

void CanberraBackend::play(const std::string& path) {
    if (m_context == nullptr)
        return;
    // The server is not to keep a copy: the next version's sound of that name may be another.
    const int error =
        m_library->play(m_context, anySound, CA_PROP_MEDIA_FILENAME, path.c_str(), CA_PROP_MEDIA_ROLE,
                        "event", CA_PROP_CANBERRA_CACHE_CONTROL, "never", nullptr);
    if (error == CA_SUCCESS)
        return;
    // What the library does not find may be the file or what it is to be played on.
    if (error == CA_ERROR_NOTFOUND && QFileInfo::exists(QFile::decodeName(path.c_str())))
        report("no sound server or device plays", error);
    else
        report(qUtf8Printable(QStringLiteral("%1 cannot be played").arg(QFile::decodeName(path.c_str()))),
               error);
}

void CanberraBackend::report(const char* failure, int error) {
    report(failure, m_library->describe(error));
}

void CanberraBackend::report(const char* failure, const char* reason) {
    if (!std::exchange(m_hasReported, true))
        qCWarning(lcSound, "[SoundPlayer] %s: %s", failure, reason);
}

} // namespace kestrova
