// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QList>
#include <QObject>
#include <QTimer>

#include "cdaemonbus.h"
#include "cincomingscript.h"
#include "csimoptions.h"
#include "csimstore.h"

namespace Dravo {

// A stand-in daemon: answers the client's requests on the shared database as the options
// say, after the configured delay, one by one, in the order they came.
class CSimDaemon : public QObject
{
    Q_OBJECT
public:
    static const QString controlPath;  // "/com/qel/tarviksim"

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

private Q_SLOTS:
    void onSendReceiveRequest();
    void onCheckConnectionRequest();
    void onRegistrationRequest();
    void onClientStarted(bool first);
    void onPause();
    void onResume();
    void onStart();
    void onStop();
    void onPollTimeout();
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
    void callClient(const QString& method);
    void updatePollTimer();

    CSimOptions m_options;
    QDBusConnection m_bus;
    CDaemonBus* m_pBus;
    CSimStore m_store;
    CIncomingScript m_script;
    QObject* m_pControl;
    QTimer m_pollTimer;
    QTimer m_requestTimer;
    QList<eRequest> m_lstQueue;  // received, waiting for the delay (or for Resume)
    bool m_bPaused;
    bool m_bStopped;
};

}  // namespace Dravo
