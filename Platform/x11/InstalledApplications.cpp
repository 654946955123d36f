#include "Platform/x11/InstalledApplications.h"

#include "Platform/x11/BusActivation.h"
#include "Platform/x11/DesktopIcons.h"
#include "Platform/x11/LaunchContext.h"
#include "Platform/x11/SessionBus.h"

#include <QFileInfo>
#include <QLoggingCategory>

#include <csignal>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace kestrova {
namespace {

Q_LOGGING_CATEGORY(lcApplications, "kestrova.applications")

struct ErrorFree {
    void operator()(GError* error) const { g_error_free(error); }
};
using ErrorPointer = std::unique_ptr<GError, ErrorFree>;

/// Without the text of the error, which names the file.
QString reasonOf(const GError& error) {
    return QStringLiteral("%1 %2").arg(QLatin1String(g_quark_to_string(error.domain))).arg(error.code);
}

/// In the new process, where nothing but calls that are safe after a fork may be made.
void standApart(void*) {
    // What ends this program or its terminal is no business of the other one.
    setsid();
    // This program waits for some signals on its own way.
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

QIcon iconOf(GIcon* icon) {
    if (G_IS_THEMED_ICON(icon)) {
        QStringList all;
        for (const auto* names = g_themed_icon_get_names(G_THEMED_ICON(icon)); names && *names; ++names)
            all.append(QString::fromUtf8(*names));
        return firstThemeIcon(all);
    }
    if (!G_IS_FILE_ICON(icon))
        return {};
    const std::unique_ptr<char, decltype(&g_free)> path(
        g_file_get_path(g_file_icon_get_file(G_FILE_ICON(icon))), &g_free);
    return iconNamed(QFile::decodeName(path.get()));
}

/// Takes over the list and its elements.
void append(std::vector<InstalledApplication>& applications, GList* found) {
    for (auto* element = found; element; element = element->next) {
        InstalledApplication application(G_APP_INFO(element->data));
        if (std::ranges::find(applications, application) == applications.end())
            applications.push_back(std::move(application));
    }
    g_list_free(found);
}

} // namespace

QString InstalledApplication::identifier() const {
    auto identifier = QString::fromUtf8(g_app_info_get_id(m_info.get()));
    if (identifier.endsWith(QLatin1String(".desktop")))
        identifier.chop(8);
    return identifier;
}

QString InstalledApplication::name() const {
    return QString::fromUtf8(g_app_info_get_display_name(m_info.get()));
}

QIcon InstalledApplication::icon() const {
    return iconOf(g_app_info_get_icon(m_info.get()));
}

QString InstalledApplication::busName() const {
    auto* const info = G_DESKTOP_APP_INFO(m_info.get());
    if (!hasSessionBus() || !g_desktop_app_info_get_boolean(info, "DBusActivatable"))
        return {};
    // The file's own name, wherever below the folders of applications it lies.
    const auto name = QFileInfo(QFile::decodeName(g_desktop_app_info_get_filename(info))).completeBaseName();
    return g_dbus_is_name(name.toUtf8().constData()) ? name : QString();
}

void InstalledApplication::open(const QUrl& url) const {
    if (const auto name = busName(); !name.isEmpty())
        return openOverBus(name, url);
    const auto context = makeLaunchContext();
    auto encoded = url.toEncoded();
    GList urls{.data = encoded.data(), .next = nullptr, .prev = nullptr};
    constexpr auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL |
                                                    G_SPAWN_STDERR_TO_DEV_NULL);
    GError* failure = nullptr;
    g_desktop_app_info_launch_uris_as_manager(G_DESKTOP_APP_INFO(m_info.get()), &urls, context.get(), flags,
                                              &standApart, nullptr, nullptr, nullptr, &failure);
    if (const ErrorPointer error(failure); error)
        qCWarning(lcApplications).noquote()
            << "[Applications]" << identifier() << "cannot be started:" << reasonOf(*error);
}

std::optional<InstalledApplication> defaultApplicationFor(const QUrl& url) {
    const GObjectPointer<GFile> file(g_file_new_for_uri(url.toEncoded().constData()));
    GError* failure = nullptr;
    auto* const info = g_file_query_default_handler(file.get(), nullptr, &failure);
    if (const ErrorPointer error(failure); error)
        qCWarning(lcApplications).noquote() << "[Applications] No application opens what is at this"
                                            << url.scheme() << "URL:" << reasonOf(*error);
    return info ? std::optional<InstalledApplication>(std::in_place, info) : std::nullopt;
}

std::vector<InstalledApplication> applicationsFor(const QString& contentType) {
    const auto type = contentType.toUtf8();
    std::vector<InstalledApplication> applications;
    if (auto* const chosen = g_app_info_get_default_for_type(type.constData(), false))
        applications.emplace_back(chosen);
    append(applications, g_app_info_get_recommended_for_type(type.constData()));
    append(applications, g_app_info_get_fallback_for_type(type.constData()));
    return applications;
}

std::optional<InstalledApplication> installedApplication(const QString& identifier) {
    auto* const info = g_desktop_app_info_new((identifier + QStringLiteral(".desktop")).toUtf8().constData());
    return info ? std::optional<InstalledApplication>(std::in_place, G_APP_INFO(info)) : std::nullopt;
}

InstalledApplication programTakingFile(const QString& commandLine) {
    // The library adds the place for the file.
    return InstalledApplication(g_app_info_create_from_commandline(commandLine.toUtf8().constData(), nullptr,
                                                                   G_APP_INFO_CREATE_NONE, nullptr));
}

} // namespace kestrova
