#pragma once

#include "Platform/x11/QtMainQueue.h"
#include "Platform/x11/X11ScreenContent.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace kestrova {
class DesktopEntries;
}

namespace kestrova::test {

/// What a test asks of the screen's pixels. Each command has one answer, some time later:
///   content-displays          -> "ID X Y WIDTH HEIGHT" of each, in global points, joined by bars
///   content-windows           -> "ID LAYER ONSCREEN X Y WIDTH HEIGHT IDENTIFIER TITLE" likewise
///   content-order             -> the windows' numbers, front to back, joined by blanks
///   content-access            -> 1 or 0
///   content-display FILE ID WIDTH HEIGHT [X Y W H] [without N...]
///                             -> done, or what was thrown; the picture is then in the file, see
///                             `writePixels`
///   content-window FILE ID WIDTH HEIGHT -> likewise
///   content-both FILE FILE    -> likewise; all of the first two displays at once
class ContentCommands {
public:
    /// All outlive the object.
    ContentCommands(MainQueue& mainQueue, DesktopEntries& entries, const QString& bundleIdentifier,
                    std::function<void(const QString&)> answer);

    /// Whether the command is one of these.
    bool obey(const QStringList& words);

private:
    QCoro::Task<> windows();
    QCoro::Task<> displays();
    QCoro::Task<> picture(ContentFilter filter, PictureConfiguration configuration, QString file);
    QCoro::Task<> allOf(std::uint32_t display, QString file);
    QCoro::Task<> both(QString firstFile, QString secondFile);

    X11ScreenContent m_content;
    std::function<void(const QString&)> m_answer;
};

} // namespace kestrova::test
