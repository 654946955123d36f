#include "Platform/x11/SoundFiles.h"

#include <QDir>
#include <QFileInfo>

namespace kestrova {

using namespace Qt::StringLiterals;

SoundFiles::SoundFiles(const QString& programDirectory) {
    const QDir directory(programDirectory);
    const QString beside = directory.absoluteFilePath(u"sounds"_s);
    m_directory = QFileInfo(beside).isDir()
                      ? beside
                      : QDir::cleanPath(directory.absoluteFilePath(u"../share/kestrova/sounds"_s));
}

std::optional<QString> SoundFiles::path(const QString& name) const {
    // Names come from the preferences, which anybody may edit.
    if (name.isEmpty() || name.contains(u'/') || name.contains(QChar::Null))
        return {};
    const QString path = m_directory + u'/' + name + ".wav"_L1;
    if (!QFileInfo(path).isFile())
        return {};
    return path;
}

} // namespace kestrova
