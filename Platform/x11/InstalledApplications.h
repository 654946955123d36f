#pragma once

#include <QIcon>
#include <QString>
#include <QUrl>

#include <gio/gdesktopappinfo.h>

#include <memory>
#include <optional>
#include <vector>

namespace kestrova {

struct GObjectUnref {
    void operator()(void* object) const { g_object_unref(object); }
};
/// Owns one reference to an object of GLib.
template<typename T>
using GObjectPointer = std::unique_ptr<T, GObjectUnref>;

/// An application that is installed on this desktop, as its desktop entry describes it. Main thread only.
class InstalledApplication {
public:
    /// Takes over one reference.
    explicit InstalledApplication(GAppInfo* info) : m_info(info) {}

    /// File name of the desktop entry without ".desktop".
    QString identifier() const;
    /// In the person's language.
    QString name() const;
    /// Null if there is none that can be read.
    QIcon icon() const;
    /// Not one that menus leave out.
    bool isShown() const { return g_app_info_should_show(m_info.get()); }
    bool takesFiles() const {
        return g_app_info_supports_uris(m_info.get()) || g_app_info_supports_files(m_info.get());
    }

    /// Starts it with `url`, or asks it to open that if it runs already, in a session of its own and with the
    /// right to come to the front. Comes back at once. If it cannot be started, a line is logged, within the
    /// call or later.
    void open(const QUrl& url) const;

    bool operator==(const InstalledApplication& other) const {
        return g_app_info_equal(m_info.get(), other.m_info.get());
    }

private:
    /// The name by which the bus starts it; empty for one that is started as a program.
    QString busName() const;

    GObjectPointer<GAppInfo> m_info;
};

/// What the person has chosen for URLs like this one, by its scheme or by what the file holds; absent if
/// there is nothing, or no such file.
std::optional<InstalledApplication> defaultApplicationFor(const QUrl& url);
/// The one with that identifier; absent if it is not installed.
std::optional<InstalledApplication> installedApplication(const QString& identifier);
/// All that are registered for a content type such as "text/plain" or "x-scheme-handler/https", the person's
/// choice first, then by falling fitness. Each stands there once.
std::vector<InstalledApplication> applicationsFor(const QString& contentType);
/// A program that is started with the path of a file behind its own arguments. Those are the caller's, never
/// a stranger's.
InstalledApplication programTakingFile(const QString& commandLine);

} // namespace kestrova
