#pragma once

#include <QByteArray>
#include <QIcon>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>
#include <vector>

namespace kestrova {

/// What is handed to another application. One of the members is set.
struct SharedContent {
    std::optional<QString> text;
    /// A web address.
    std::optional<QUrl> link;
    /// A file that exists.
    std::optional<QUrl> file;
    /// Reads the bytes of a PNG, once they are needed; absent if they have gone. Empty if it is no picture.
    std::function<std::optional<QByteArray>()> picture;
};

/// One way to hand it over, as a person chooses it.
struct ShareTarget {
    enum class Means { application, mail };

    /// The host's name for it.
    QString identifier;
    /// Of the application, in the person's language.
    QString name;
    QIcon icon;
    Means means = Means::application;
};

/// Hands content to other applications. Main thread only.
class Sharing {
public:
    virtual ~Sharing() = default;

    /// The ways that this desktop has, the usual one first; empty if there is none.
    virtual std::vector<ShareTarget> targets(const SharedContent& content) = 0;
    /// Starts the application with the content. Where that fails it logs a line; nothing is lost.
    virtual void share(const SharedContent& content, const ShareTarget& target) = 0;
};

} // namespace kestrova
