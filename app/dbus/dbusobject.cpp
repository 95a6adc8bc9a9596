// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "dbusobject.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QtDebug>

#include "cbusname.h"
#include "tarvikadaptors.h"

namespace Tarvik {

QString DBusObject::serviceName()
{
    return QStringLiteral("com.qel.tarvik");
}

QString DBusObject::objectPath()
{
    return QStringLiteral("/com/qel/tarvik");
}

QString DBusObject::daemonService()
{
    return QStringLiteral("com.qel.tarvikdaemon");
}

QString DBusObject::daemonPath()
{
    return QStringLiteral("/com/qel/tarvikdaemon");
}

DBusObject::DBusObject()
{
    qDebug("Tarvik::DBusObject::DBusObject constructor start");
    new TarvikOssoAdaptor(this);
    new TarvikClientAdaptor(this);
    // Neither result matters: without a bus, or with the name held by another
    // instance, the client runs on without its bus presence.
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) {
        bus.registerObject(objectPath(), this, QDBusConnection::ExportAdaptors);
        Dravo::requestBusName(bus, serviceName());
    } else {
        qWarning().noquote()
            << QStringLiteral("Tarvik::DBusObject: no session bus, the daemon is out of reach: %1")
                   .arg(bus.lastError().message());
    }
    qDebug("Tarvik::DBusObject::DBusObject constructor end");
}

DBusObject::~DBusObject() = default;

void DBusObject::EmitSendReceiveRequest()
{
    qDebug("Tarvik::DBusObject::EmitSendReceiveRequest");
    Q_EMIT SendReceiveRequest();
}

void DBusObject::EmitCheckConnectionRequest()
{
    qDebug("Tarvik::DBusObject::EmitCheckConnectionRequest");
    Q_EMIT CheckConnectionRequest();
}

void DBusObject::EmitRegistrationRequest()
{
    qDebug("Tarvik::DBusObject::EmitRegistrationRequest");
    Q_EMIT RegistrationRequest();
}

void DBusObject::EmitApplicationStarted()
{
    qDebug("Tarvik::DBusObject::EmitApplicationStarted");
    Q_EMIT ApplicationStarted();
}

void DBusObject::EmitApplicationClosed()
{
    qDebug("Tarvik::DBusObject::EmitApplicationClosed");
    Q_EMIT ApplicationClosed();
}

void DBusObject::top_application()
{
    qDebug("Tarvik::DBusObject::top_application");
    Q_EMIT TopApplication();
}

void DBusObject::OpenInbox()
{
    qDebug("Tarvik::DBusObject::OpenInbox");
    Q_EMIT OpenInboxRequest();
}

void DBusObject::OnMessagesPartiallySent()
{
    qDebug("Tarvik::DBusObject::OnMessagesPartiallySent");
    Q_EMIT MessagesPartiallySent();
}

void DBusObject::OnMessagesReceived()
{
    qDebug("Tarvik::DBusObject::OnMessagesReceived");
    Q_EMIT MessagesReceived();
}

void DBusObject::OnMessagesSendFailed()
{
    qDebug("Tarvik::DBusObject::OnMessagesSendFailed");
    Q_EMIT MessagesSendFailed();
}

void DBusObject::OnMessagesSent()
{
    qDebug("Tarvik::DBusObject::OnMessagesSent");
    Q_EMIT MessagesSent();
}

void DBusObject::OnRegistrationFailed()
{
    qDebug("Tarvik::DBusObject::OnRegistrationFailed");
    Q_EMIT RegistrationFailed();
}

void DBusObject::OnRegistrationSucceed()
{
    qDebug("Tarvik::DBusObject::OnRegistrationSucceed");
    Q_EMIT RegistrationSucceed();
}

void DBusObject::OnConnectionCheckSucceed()
{
    qDebug("Tarvik::DBusObject::OnConnectionCheckSucceed");
    Q_EMIT ConnectionCheckSucceed();
}

void DBusObject::OnConnectionCheckFailed()
{
    qDebug("Tarvik::DBusObject::OnConnectionCheckFailed");
    Q_EMIT ConnectionCheckFailed();
}

}  // namespace Tarvik
