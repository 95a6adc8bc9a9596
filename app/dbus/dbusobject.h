// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

#include "csingleton.h"

namespace Tarvik {

// The client's presence on the session bus: object "/com/qel/tarvik" under the name
// "com.qel.tarvik", exported through its two adaptors only. Incoming daemon and
// platform calls are logged and re-emitted as plain Qt signals; the last five signals
// carry the names of the bus signals and go out on the bus through the client adaptor.
class DBusObject : public Dravo::CSingleton<DBusObject>
{
    Q_OBJECT
    friend class Dravo::CSingleton<DBusObject>;

public:
    static QString serviceName();    // "com.qel.tarvik"
    static QString objectPath();     // "/com/qel/tarvik"
    static QString daemonService();  // "com.qel.tarvikdaemon"
    static QString daemonPath();     // "/com/qel/tarvikdaemon"

    void EmitSendReceiveRequest();
    void EmitCheckConnectionRequest();
    void EmitRegistrationRequest();
    void EmitApplicationStarted();
    void EmitApplicationClosed();

Q_SIGNALS:
    void OpenInboxRequest();
    void TopApplication();
    void MessagesPartiallySent();
    void MessagesReceived();
    void MessagesSendFailed();
    void MessagesSent();
    void RegistrationFailed();
    void RegistrationSucceed();
    void ConnectionCheckFailed();
    void ConnectionCheckSucceed();
    void RegistrationRequest();
    void SendReceiveRequest();
    void ApplicationClosed();
    void ApplicationStarted();
    void CheckConnectionRequest();

public Q_SLOTS:
    void top_application();
    void OpenInbox();
    void OnMessagesPartiallySent();
    void OnMessagesReceived();
    void OnMessagesSendFailed();
    void OnMessagesSent();
    void OnRegistrationFailed();
    void OnRegistrationSucceed();
    void OnConnectionCheckSucceed();
    void OnConnectionCheckFailed();

private:
    DBusObject();
    ~DBusObject() override;
};

}  // namespace Tarvik
