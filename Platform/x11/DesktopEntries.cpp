#include "Platform/x11/DesktopEntries.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStandardPaths>

#include <gio/gdesktopappinfo.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>

namespace kestrova {

namespace {

using namespace Qt::StringLiterals;

struct Unref {
    void operator()(GDesktopAppInfo* info) const { g_object_unref(info); }
};
struct Free {
    void operator()(char* text) const { g_free(text); }
};

// Programs that run other programs: that two entries start them says nothing.
constexpr std::array launchers{"bash"_L1, "dash"_L1, "electron"_L1, "env"_L1,     "flatpak"_L1, "gjs"_L1,
                               "java"_L1, "node"_L1, "perl"_L1,     "python"_L1,  "python3"_L1, "ruby"_L1,
                               "sh"_L1,   "snap"_L1, "wine"_L1,     "xdg-open"_L1};

bool isLauncher(const QString& executable) {
    return std::ranges::any_of(launchers, [&](QLatin1StringView launcher) { return executable == launcher; });
}

bool sameName(const QString& name, const QString& other) {
    return !name.isEmpty() && name.compare(other, Qt::CaseInsensitive) == 0;
}

QString lastComponent(const QString& identifier) {
    return identifier.section(u'.', -1);
}

struct Found {
    DesktopEntry entry;
    bool shown = false;
};

std::optional<Found> readEntry(const QString& path, const QString& identifier) {
    const std::unique_ptr<GDesktopAppInfo, Unref> info{
        g_desktop_app_info_new_from_filename(QFile::encodeName(path).constData())};
    if (!info || g_desktop_app_info_get_is_hidden(info.get()))
        return {};
    auto* const application = G_APP_INFO(info.get());
    // The library's own word for programs without a name is none that a person knows.
    const std::unique_ptr<char, Free> name{
        g_desktop_app_info_get_locale_string(info.get(), G_KEY_FILE_DESKTOP_KEY_NAME)};
    const std::unique_ptr<char, Free> icon{
        g_desktop_app_info_get_string(info.get(), G_KEY_FILE_DESKTOP_KEY_ICON)};
    return Found{
        .entry = {.identifier = identifier,
                  .name = QString::fromUtf8(name.get()).trimmed(),
                  .iconName = QString::fromUtf8(icon.get()),
                  .startupWindowClass =
                      QString::fromUtf8(g_desktop_app_info_get_startup_wm_class(info.get())),
                  .executable =
                      QFileInfo(QFile::decodeName(g_app_info_get_executable(application))).fileName()},
        .shown = !g_desktop_app_info_get_nodisplay(info.get())};
}

} // namespace

const DesktopEntry* matchingEntry(const std::vector<DesktopEntry>& entries, const WindowClass& windowClass,
                                  const QString& executable) {
    const auto isOfWindow = [&](const QString& name) {
        return sameName(name, windowClass.name) || sameName(name, windowClass.instance);
    };
    const auto first = [&](auto rule) -> const DesktopEntry* {
        const auto entry = std::ranges::find_if(entries, rule);
        return entry == entries.end() ? nullptr : &*entry;
    };
    const auto* entry = first([&](const DesktopEntry& candidate) {
        return !candidate.startupWindowClass.isEmpty() &&
               (candidate.startupWindowClass == windowClass.name ||
                candidate.startupWindowClass == windowClass.instance);
    });
    if (!entry)
        entry = first([&](const DesktopEntry& candidate) { return isOfWindow(candidate.identifier); });
    if (!entry)
        entry = first(
            [&](const DesktopEntry& candidate) { return isOfWindow(lastComponent(candidate.identifier)); });
    if (!entry && !executable.isEmpty() && !isLauncher(executable))
        entry = first([&](const DesktopEntry& candidate) { return candidate.executable == executable; });
    return entry;
}

DesktopEntries::DesktopEntries(QStringList directories) : m_directories(std::move(directories)) {}

QStringList DesktopEntries::applicationDirectories() {
    return QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
}

std::optional<DesktopEntry> DesktopEntries::entryFor(const WindowClass& windowClass,
                                                     const QString& executable) {
    const std::scoped_lock lock{m_mutex};
    readWhatChanged();
    const auto* entry = matchingEntry(m_entries, windowClass, executable);
    return entry ? std::optional{*entry} : std::nullopt;
}

std::optional<DesktopEntry> DesktopEntries::entryNamed(const QString& name) {
    const std::scoped_lock lock{m_mutex};
    readWhatChanged();
    if (const auto entry = std::ranges::find(m_entries, name, &DesktopEntry::identifier);
        entry != m_entries.end())
        return *entry;
    // Programs are named in small letters, and their windows often the same with a capital.
    const auto* entry = matchingEntry(m_entries, {.instance = name, .name = name}, name.toLower());
    return entry ? std::optional{*entry} : std::nullopt;
}

void DesktopEntries::readWhatChanged() {
    if (!m_scanned || directoriesChanged())
        scan();
}

void DesktopEntries::scan() {
    m_scanned = true;
    m_entries.clear();
    m_modified.clear();
    QSet<QString> taken;
    std::vector<DesktopEntry> unshown;
    for (const auto& directory : m_directories) {
        // Before the files are listed: one that comes while we read is then found by the next look.
        m_modified.emplace_back(directory, QFileInfo(directory).lastModified());
        QDirIterator files{directory,
                           {u"*.desktop"_s},
                           QDir::Files | QDir::Dirs | QDir::AllDirs | QDir::NoDotAndDotDot,
                           QDirIterator::Subdirectories};
        while (files.hasNext()) {
            const auto path = files.next();
            if (files.fileInfo().isDir()) {
                m_modified.emplace_back(path, files.fileInfo().lastModified());
                continue;
            }
            auto identifier = QDir(directory).relativeFilePath(path).replace(u'/', u'-');
            identifier.chop(8);
            if (taken.contains(identifier))
                continue;
            taken.insert(identifier);
            if (auto found = readEntry(path, identifier))
                (found->shown ? m_entries : unshown).push_back(std::move(found->entry));
        }
    }
    // Entries that menus leave out are helpers of the others more often than not.
    std::ranges::move(unshown, std::back_inserter(m_entries));
}

bool DesktopEntries::directoriesChanged() const {
    return std::ranges::any_of(m_modified, [](const auto& directory) {
        return QFileInfo(directory.first).lastModified() != directory.second;
    });
}

} // namespace kestrova
