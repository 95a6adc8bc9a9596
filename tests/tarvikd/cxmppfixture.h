// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include "cclientrecorder.h"
#include "cprivatebus.h"
#include "ctarvik.h"
#include "ctarvikstorage.h"
#include "ctsettings.h"

namespace Dravo {
namespace Test {

// A throwaway prosody on loopback, made by tools/xmpp/localprosody.sh with its own
// configuration, certificate and data directory.
class CLocalServer
{
public:
    CLocalServer();
    ~CLocalServer();
    bool start();
    bool stop();
    bool kill();
    bool restart();
    bool pause(bool paused);  // SIGSTOP / SIGCONT: the server takes no stanza while paused
    bool addAccount(const QString& user, const QString& password);
    quint16 port() const { return m_uPort; }
    QString domain() const { return QStringLiteral("tarvik.localhost"); }
    QString caFile() const { return m_dir.filePath(QStringLiteral("ca.pem")); }
    QString directory() const { return m_dir.path(); }
    QString errorString() const { return m_strError; }

private:
    bool run(const QStringList& args, QByteArray* pOutput = nullptr);

    QTemporaryDir m_dir;
    quint16 m_uPort;
    QString m_strError;
};

// One user of the service: a home with the shared database and the daemon's configuration,
// a private session bus, the daemon, and a recorder that plays the client on that bus.
class CXmppUser
{
public:
    CXmppUser(const QString& number, const QString& screenname);
    ~CXmppUser();

    // Bus and recorder, then the daemon. `caFile` empty: trust the server's own.
    // `systemBus`: the address of the system bus the daemon sees (NetworkManager).
    bool start(const CLocalServer& server, const QString& caFile = QString(),
               const QString& systemBus = QString());
    // Bus, recorder and the daemon's environment, without the daemon.
    bool prepare(const CLocalServer& server, const QString& caFile = QString(),
                 const QString& systemBus = QString());
    bool startDaemon();
    // Puts the daemon's installed bus service file (the build's copy, Exec pointed at the
    // built daemon) where the bus finds it, and gives the bus the daemon's environment.
    bool offerDaemonByActivation();
    // A bus service file for the client that starts `tarvik-fakes --client <callLog>`.
    bool offerClientByActivation(const QString& callLog);
    // The session bus goes away (the session ends).
    void stopBus() { m_bus.stop(); }
    // The client closes: ApplicationClosed, and its name leaves the bus.
    void clientLeaves();
    // Whoever owns the daemon's name, started here or by the bus; 0 when nobody does.
    qint64 daemonPid() const;
    // Ends the daemon with SIGTERM; an exit other than status 0 (in the sanitizer build, a
    // leak or a fault at exit) is listed in uncleanExits().
    void stopDaemon();
    static QStringList& uncleanExits();
    // Saves the number and screen name as the registration form does, asks the daemon to
    // register, and waits for its verdict: the method the daemon called, or empty.
    QString registerAccount(int timeoutMs = 20000);
    void emitSignal(const QString& name);
    // Calls one of the daemon's six methods and returns its answer.
    QDBusMessage callDaemon(const QString& method);
    // Waits until the daemon has called `method` `count` times in all.
    bool waitForCall(const QString& method, int count = 1, int timeoutMs = 20000);
    QStringList calls() const { return m_recorder.m_lstCalls; }
    QList<CTarvik> folder(CTarvikStorage::eFolderName name) const;
    CTSettings settings() const;
    // Puts a message into the outbox with tflag 1, as the send popup does.
    void queue(const CTarvik& tarvik);
    CTarvik message(const QString& to, const QString& title) const;
    QString daemonLog();
    QString number() const { return m_strNumber; }
    QString jid(const CLocalServer& server) const;
    QString home() const { return m_home.path(); }
    QDBusConnection connection() const { return QDBusConnection(m_strConnection); }
    QProcessEnvironment environment() const { return m_env; }

private:
    template <typename F>
    auto inHome(F f) const;

    QString m_strNumber;
    QString m_strScreenname;
    QTemporaryDir m_home;
    CPrivateBus m_bus;
    QString m_strConnection;
    CClientRecorder m_recorder;
    CHelperProcess m_daemon;
    QString m_strLog;
    QProcessEnvironment m_env;
};

// Runs tools/xmpp/xmppclient.py, an XMPP client that is not ours.
bool runForeignClient(const CLocalServer& server, const QStringList& args, QByteArray* pOutput,
                      int timeoutMs = 20000);

}  // namespace Test
}  // namespace Dravo
