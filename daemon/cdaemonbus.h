// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QObject>

namespace Dravo {

// A daemon as the client sees it on the session bus: owns "com.qel.tarvikdaemon", exports
// the six methods of "com.qel.TarvikDaemon" on "/com/qel/tarvikdaemon", listens to the
// client's five signals and calls the client's methods. Every call in either direction is
// logged with the daemon's prefix; what to do about a request is the owner's business.
class CDaemonBus : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.qel.TarvikDaemon")
public:
    static const QString serviceName;      // "com.qel.tarvikdaemon"
    static const QString objectPath;       // "/com/qel/tarvikdaemon"
    static const QString clientService;    // "com.qel.tarvik"
    static const QString clientPath;       // "/com/qel/tarvik"
    static const QString clientInterface;  // "com.qel.TarvikClient"

    // `prefix` begins every log line ("tarvik-simd", "tarvikd").
    CDaemonBus(const QString& prefix, const QDBusConnection& bus, QObject* parent = nullptr);
    ~CDaemonBus() override;

    // Listens to the client, then takes the name. False with the reason when the object
    // path or the name is taken (another daemon runs) or the bus refuses.
    bool start(QString* pError);
    // start() failed because another process owns the name.
    bool nameTaken() const { return m_bNameTaken; }
    // Calls one of the client's methods; a failure is logged, nothing waits for it.
    void callClient(const QString& method);
    // The client announced itself (OnClientStarted, ApplicationStarted) and has not left.
    bool clientRunning() const { return m_bClientStarted; }
    QDBusConnection bus() const { return m_bus; }

    void say(const QString& text) const;
    void complain(const QString& text) const;

public Q_SLOTS:
    Q_SCRIPTABLE bool IsClientStarted();
    Q_SCRIPTABLE void OnClientStarted();
    Q_SCRIPTABLE void Pause();
    Q_SCRIPTABLE void Resume();
    Q_SCRIPTABLE void Start();
    Q_SCRIPTABLE void Stop();

Q_SIGNALS:
    void sendReceiveRequested();
    void checkConnectionRequested();
    void registrationRequested();
    // The client came up; `first` is false when it was already known to run.
    void clientStarted(bool first);
    void clientGone();
    void pauseRequested();
    void resumeRequested();
    void startRequested();
    void stopRequested();
    // The session bus went away: nothing can reach the daemon any more.
    void busLost();

private Q_SLOTS:
    void onSendReceiveRequest();
    void onCheckConnectionRequest();
    void onRegistrationRequest();
    void onApplicationStarted();
    void onApplicationClosed();
    void onClientUnregistered(const QString& service);
    void onBusDisconnected();

private:
    void clientStartedBy(const char* how);

    QString m_strPrefix;
    QDBusConnection m_bus;
    bool m_bClientStarted;
    bool m_bRegistered;
    bool m_bNameTaken;
};

}  // namespace Dravo
