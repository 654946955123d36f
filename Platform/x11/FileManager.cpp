#include "Platform/x11/FileManager.h"

#include "Platform/x11/LaunchContext.h"
#include "Platform/x11/SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <chrono>
#include <utility>

namespace kestrova {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

const QString service = u"org.freedesktop.FileManager1"_s;
const QString path = u"/org/freedesktop/FileManager1"_s;
// The bus may have to start it. A person waits no longer before trying something else.
constexpr std::chrono::milliseconds patience = 5s;

} // namespace

void FileManager::show(const QUrl& file, std::function<void()> onFailure) {
    if (!hasSessionBus()) {
        onFailure();
        return;
    }
    auto question = QDBusMessage::createMethodCall(service, path, service, u"ShowItems"_s);
    question.setArguments(
        {QStringList{QString::fromLatin1(file.toEncoded())}, QString::fromUtf8(makeActivationToken())});
    const auto answer = QDBusConnection::sessionBus().asyncCall(question, static_cast<int>(patience.count()));
    auto* const watcher = new QDBusPendingCallWatcher(answer, &m_pending);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_pending,
                     [onFailure = std::move(onFailure)](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         if (finished->isError())
                             onFailure();
                     });
}

} // namespace kestrova
