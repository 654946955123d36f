#include "Platform/x11/BusActivation.h"

#include "Platform/x11/LaunchContext.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QLoggingCategory>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcApplications, "kestrova.applications")

/// Every application has it at a path that follows from its name.
QString pathOf(QString name) {
    return u'/' + name.replace(u'.', u'/').replace(u'-', u'_');
}

} // namespace

void openOverBus(const QString& name, const QUrl& url) {
    auto wish =
        QDBusMessage::createMethodCall(name, pathOf(name), u"org.freedesktop.Application"_s, u"Open"_s);
    const auto token = QString::fromUtf8(makeActivationToken());
    // An older name and a newer one.
    const QVariantMap platformData{{u"desktop-startup-id"_s, token}, {u"activation-token"_s, token}};
    wish.setArguments({QStringList{QString::fromLatin1(url.toEncoded())}, platformData});
    auto* const answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(wish),
                                                     QCoreApplication::instance());
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer,
                     [name](QDBusPendingCallWatcher* call) {
                         call->deleteLater();
                         // Without the text of the error, which may name the file.
                         if (call->isError())
                             qCWarning(lcApplications).noquote()
                                 << "[Applications]" << name << "cannot be started:" << call->error().name();
                     });
}

} // namespace kestrova
