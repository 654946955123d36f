#include "Platform/x11/CanberraSoundPlayer.h"

#include "Platform/x11/CanberraBackend.h"

#include <QFile>

#include <utility>

namespace kestrova {

CanberraSoundPlayer::CanberraSoundPlayer(const QString& programDirectory, const QString& bundleIdentifier)
    : CanberraSoundPlayer(programDirectory, [identifier = bundleIdentifier.toStdString()] {
          return std::make_unique<CanberraBackend>(identifier);
      }) {}

CanberraSoundPlayer::CanberraSoundPlayer(const QString& programDirectory, MakeSoundBackend makeBackend)
    : m_files(programDirectory), m_thread(std::move(makeBackend)) {}

void CanberraSoundPlayer::play(const QString& name) {
    if (const auto path = m_files.path(name))
        m_thread.play(QFile::encodeName(*path).toStdString());
}

} // namespace kestrova
