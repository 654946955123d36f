#include "Platform/x11/XdgSharing.h"

#include "Platform/x11/InstalledApplications.h"

#include <QLoggingCategory>
#include <QMimeDatabase>
#include <QStandardPaths>

#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcSharing, "kestrova.sharing")

// Nobody waits for it, so it does not stand in the way of the start.
constexpr auto beforeFirstCleaning = 10s;
// Behind the clock; a few milliseconds are usual.
constexpr auto lagOfFileTimes = 1s;
// By then an application has read what it was given.
constexpr auto lifetime = 1h;
// No desktop entry has such an identifier.
const QString mailIdentifier = u"mailto:"_s;
const QString mailType = u"x-scheme-handler/mailto"_s;
const QString attachingProgram = u"xdg-email"_s;

QString contentType(const SharedContent& content) {
    if (content.link)
        return u"x-scheme-handler/"_s + content.link->scheme();
    if (content.picture)
        return u"image/png"_s;
    if (content.file)
        return QMimeDatabase().mimeTypeForFile(content.file->toLocalFile()).name();
    return u"text/plain"_s;
}

/// Absent where nothing can hand an attachment to the person's mail program.
std::optional<ShareTarget> mail() {
    const auto programs = applicationsFor(mailType);
    if (programs.empty() || QStandardPaths::findExecutable(attachingProgram).isEmpty())
        return {};
    const auto& program = programs.front();
    return ShareTarget{.identifier = mailIdentifier,
                       .name = program.name(),
                       .icon = program.icon(),
                       .means = ShareTarget::Means::mail};
}

std::optional<InstalledApplication> programOf(const ShareTarget& target) {
    return target.means == ShareTarget::Means::mail ? programTakingFile(attachingProgram + u" --attach"_s)
                                                    : installedApplication(target.identifier);
}

} // namespace

XdgSharing::XdgSharing(MainQueue& mainQueue, QString bundleIdentifier, const QString& directory)
    : m_mainQueue(mainQueue),
      m_bundleIdentifier(std::move(bundleIdentifier)),
      m_files(directory),
      m_cleaning(
          mainQueue.afterUnlessCancelled(beforeFirstCleaning, [this, start = QDateTime::currentDateTime()] {
              clean(start.addDuration(-lagOfFileTimes));
          })) {}

XdgSharing::~XdgSharing() {
    m_files.removeAll();
}

void XdgSharing::clean(QDateTime writtenBefore) {
    m_cleaning = {};
    if (m_files.removeWrittenBefore(writtenBefore))
        cleanAnHourLater();
}

void XdgSharing::cleanAnHourLater() {
    m_cleaning = m_mainQueue.afterUnlessCancelled(
        lifetime, [this] { clean(QDateTime::currentDateTime().addDuration(-lifetime)); });
}

std::vector<ShareTarget> XdgSharing::targets(const SharedContent& content) {
    std::vector<ShareTarget> targets;
    for (const auto& application : applicationsFor(contentType(content)))
        if (application.identifier() != m_bundleIdentifier && application.isShown() &&
            application.takesFiles())
            targets.push_back({.identifier = application.identifier(),
                               .name = application.name(),
                               .icon = application.icon()});
    if (auto byMail = mail())
        targets.push_back(*std::move(byMail));
    return targets;
}

void XdgSharing::share(const SharedContent& content, const ShareTarget& target) {
    // Applications come and go while a person looks at a menu.
    const auto program = programOf(target);
    if (!program) {
        qCWarning(lcSharing, "[Sharing] The chosen application is no longer there");
        return;
    }
    const bool isByMail = target.means == ShareTarget::Means::mail;
    if (const auto url = content.link && !isByMail ? content.link : fileOf(content))
        program->open(*url);
}

std::optional<QUrl> XdgSharing::fileOf(const SharedContent& content) {
    if (content.file)
        return content.file;
    if (content.picture)
        return write(content.picture(), u"png"_s);
    const auto text = content.link ? content.link->toString(QUrl::FullyEncoded) : content.text;
    return write(text.value_or(QString()).toUtf8(), u"txt"_s);
}

std::optional<QUrl> XdgSharing::write(const std::optional<QByteArray>& bytes, const QString& suffix) {
    if (!bytes) {
        qCWarning(lcSharing, "[Sharing] The picture is no longer there");
        return {};
    }
    if (!m_cleaning)
        cleanAnHourLater();
    return m_files.write(*bytes, suffix);
}

} // namespace kestrova
