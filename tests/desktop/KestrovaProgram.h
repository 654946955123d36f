#pragma once

#include "tests/desktop/DesktopSession.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>

namespace kestrova::test {

/// The program under test in one session: started, spoken to by its command line, and ended in several ways.
class KestrovaProgram {
public:
    explicit KestrovaProgram(DesktopSession& session);

    /// Starts the program without waiting for it.
    Process& launch();
    /// Starts it and waits until it answers; false if it does not.
    bool start();
    /// Like `launch`, bound by file permissions even for root.
    Process& launchObeyingFilePermissions();

    /// The started process. Only after a start.
    Process& process() { return *m_process; }

    /// Runs one command as a person at a terminal would.
    ProcessResult command(const QStringList& arguments);
    bool isReady() { return command({QStringLiteral("status")}).exitStatus == 0; }
    bool waitReady();

    /// The whole history as `list --json` tells it, newest first. Throws std::runtime_error if that fails.
    QJsonArray rows();
    /// The `content` of the whole history, newest first.
    QStringList contents();
    /// The newest row; an empty object if there is none.
    QJsonObject newestRow() { return rows().at(0).toObject(); }
    bool waitForRows(int count);
    bool waitForNewest(const QString& content);
    QJsonObject status();
    qint64 changeCount();

    /// Ends it by `quit`; false if it has not ended at the deadline.
    bool quit();
    /// Ends it by SIGKILL.
    void killNow();

    QString dataFolder() const;
    QString configFolder() const;
    QString cacheFolder() const;
    QString storeFile() const { return dataFolder() + QStringLiteral("/store.sqlite"); }
    /// Files below the data folder that were moved aside, in alphabetical order.
    QStringList backups() const;

    QJsonObject defaults() const;
    /// Stores one default from outside, as a person with an editor does: the whole file is replaced.
    void editDefault(const QString& key, const QJsonValue& value);

private:
    QString defaultsFile() const { return configFolder() + QStringLiteral("/defaults.json"); }

    DesktopSession& m_session;
    QString m_binary;
    Process* m_process = nullptr;
};

} // namespace kestrova::test
