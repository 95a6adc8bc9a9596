// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QList>
#include <QObject>
#include <QTimer>

#include "cincomingscript.h"
#include "csimoptions.h"
#include "csimstore.h"

namespace Dravo {

// The daemon as the client sees it: owns "com.qel.tarvikdaemon", exports the six
// methods of "com.qel.TarvikDaemon" on "/com/qel/tarvikdaemon", listens to the
// client's five signals and answers them by calling the client's methods, working
// on the shared database as the options say. Requests are answered after the
// configured delay, one by one, in the order they came.
class CSimDaemon : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.qel.TarvikDaemon")
public:
    static const QString serviceName;      // "com.qel.tarvikdaemon"
    static const QString objectPath;       // "/com/qel/tarvikdaemon"
    static const QString clientService;    // "com.qel.tarvik"
    static const QString clientPath;       // "/com/qel/tarvik"
    static const QString clientInterface;  // "com.qel.TarvikClient"
    static const QString controlPath;      // "/com/qel/tarviksim"

    CSimDaemon(const CSimOptions& options, const QDBusConnection& bus, QObject* parent = nullptr);
    ~CSimDaemon() override;

    // Prepares the database as asked, then goes on the bus. False with the reason when
    // the simulator cannot serve (object path or name taken); database trouble is only
    // logged, the simulator then answers requests with failures.
    bool start(QString* pError);

    // Delivers `count` scripted messages now and tells the client; returns how many
    // were stored.
    int deliverNow(int count);
    // Asks the client to show its inbox.
    void openInbox();

public Q_SLOTS:
    Q_SCRIPTABLE bool IsClientStarted();
    Q_SCRIPTABLE void OnClientStarted();
    Q_SCRIPTABLE void Pause();
    Q_SCRIPTABLE void Resume();
    Q_SCRIPTABLE void Start();
    Q_SCRIPTABLE void Stop();

private Q_SLOTS:
    void onSendReceiveRequest();
    void onCheckConnectionRequest();
    void onRegistrationRequest();
    void onApplicationStarted();
    void onApplicationClosed();
    void onClientUnregistered(const QString& service);
    void onPollTimeout();
    void onBusCheckTimeout();
    void onRequestTimerTimeout();

private:
    enum eRequest
    {
        eRequestSendReceive,
        eRequestCheckConnection,
        eRequestRegistration
    };

    void prepareDatabase();
    void request(eRequest what, const char* name);
    void perform(eRequest what);
    void doSendReceive();
    void doRegistration();
    int deliverAndNotify(const QList<CTarvik>& tarviks);
    void clientStarted(const char* how);
    void callClient(const QString& method);
    void updatePollTimer();

    CSimOptions m_options;
    QDBusConnection m_bus;
    CSimStore m_store;
    CIncomingScript m_script;
    QObject* m_pControl;
    QTimer m_pollTimer;
    QTimer m_busCheckTimer;
    QTimer m_requestTimer;
    QList<eRequest> m_lstQueue;  // received, waiting for the delay (or for Resume)
    bool m_bClientStarted;
    bool m_bPaused;
    bool m_bStopped;
};

}  // namespace Dravo
