#pragma once

#include "Platform/MainQueue.h"
#include "Platform/Sharing.h"
#include "Platform/x11/SharedFiles.h"

#include <QString>

#include <optional>

namespace kestrova {

/// Offers the applications that are registered for the kind of the content, and mail.
///
/// Text and pictures go through files, and mail gets everything as a file: what a program is started with
/// can be read by everybody. The files go when they are an hour old and when the program ends; those that a
/// program which was killed left behind go soon after the next start.
class XdgSharing final : public Sharing {
public:
    /// `mainQueue` outlives the object. Of the applications `bundleIdentifier` is left out.
    XdgSharing(MainQueue& mainQueue, QString bundleIdentifier, const QString& directory);
    ~XdgSharing() override;

    std::vector<ShareTarget> targets(const SharedContent& content) override;
    void share(const SharedContent& content, const ShareTarget& target) override;

private:
    std::optional<QUrl> fileOf(const SharedContent& content);
    std::optional<QUrl> write(const std::optional<QByteArray>& bytes, const QString& suffix);
    /// By value: the block that calls it goes meanwhile.
    void clean(QDateTime writtenBefore);
    void cleanAnHourLater();

    MainQueue& m_mainQueue;
    const QString m_bundleIdentifier;
    const SharedFiles m_files;
    ScheduledBlock m_cleaning;
};

} // namespace kestrova
