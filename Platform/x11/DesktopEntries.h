#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace kestrova {

/// The two halves of WM_CLASS; empty where the window has none.
struct WindowClass {
    QString instance;
    QString name;

    bool operator==(const WindowClass&) const = default;
};

/// What a desktop-entry file says about one application.
struct DesktopEntry {
    /// File name without ".desktop", folders joined by dashes.
    QString identifier;
    /// In the person's language; empty if the file gives none.
    QString name;
    /// Theme name or absolute path; empty if there is none.
    QString iconName;
    QString startupWindowClass;
    /// Base name of the program that it starts.
    QString executable;

    bool operator==(const DesktopEntry&) const = default;
};

/// The first entry, by falling certainty of the rule that fits, for a window of `windowClass` that a process
/// running `executable` (base name, may be empty) shows; null if none fits.
const DesktopEntry* matchingEntry(const std::vector<DesktopEntry>& entries, const WindowClass& windowClass,
                                  const QString& executable);

/// The desktop entries of this machine. Callable from every thread.
///
/// The files are read at the first question, and again when a directory has changed since: what is installed
/// in between is found, and what is removed is not.
class DesktopEntries {
public:
    /// `directories` by falling precedence: an entry hides those of the same identifier in later ones.
    explicit DesktopEntries(QStringList directories = applicationDirectories());

    /// The entry that fits (see `matchingEntry`); absent if none does.
    std::optional<DesktopEntry> entryFor(const WindowClass& windowClass, const QString& executable);

    /// The entry with that identifier, shown in menus or not; else the one of an application whose windows or
    /// program are named so. Absent if there is none.
    std::optional<DesktopEntry> entryNamed(const QString& name);

    /// Where the desktop keeps its entries: the person's own directory first.
    static QStringList applicationDirectories();

private:
    void readWhatChanged();
    void scan();
    bool directoriesChanged() const;

    const QStringList m_directories;
    std::mutex m_mutex;
    bool m_scanned = false;
    std::vector<DesktopEntry> m_entries;
    std::vector<std::pair<QString, QDateTime>> m_modified;
};

} // namespace kestrova
