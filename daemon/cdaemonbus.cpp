// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cdaemonbus.h"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDebug>

namespace Dravo {

const QString CDaemonBus::serviceName = QStringLiteral("com.qel.tarvikdaemon");
const QString CDaemonBus::objectPath = QStringLiteral("/com/qel/tarvikdaemon");
const QString CDaemonBus::clientService = QStringLiteral("com.qel.tarvik");
const QString CDaemonBus::clientPath = QStringLiteral("/com/qel/tarvik");
const QString CDaemonBus::clientInterface = QStringLiteral("com.qel.TarvikClient");

namespace {

// How long a call to the client may take before it counts as lost.
const int kClientCallTimeoutMs = 5000;

}  // namespace

CDaemonBus::CDaemonBus(const QString& prefix, const QDBusConnection& bus, QObject* parent)
    : QObject(parent),
      m_strPrefix(prefix + QStringLiteral(": ")),
      m_bus(bus),
      m_bClientStarted(false),
      m_bRegistered(false),
      m_bNameTaken(false)
{
}

CDaemonBus::~CDaemonBus()
{
    if (m_bRegistered && m_bus.isConnected()) {
        m_bus.unregisterService(serviceName);
        m_bus.unregisterObject(objectPath);
    }
}

void CDaemonBus::say(const QString& text) const
{
    qInfo().noquote() << m_strPrefix + text;
}

void CDaemonBus::complain(const QString& text) const
{
    qWarning().noquote() << m_strPrefix + text;
}

bool CDaemonBus::start(QString* pError)
{
    if (!m_bus.registerObject(objectPath, this, QDBusConnection::ExportScriptableSlots)) {
        if (pError) {
            *pError = QStringLiteral("cannot register %1: %2")
                          .arg(objectPath, m_bus.lastError().message());
        }
        return false;
    }
    m_bRegistered = true;

    // Listen before taking the name, so nothing sent after "ready" is missed.
    const struct
    {
        const char* signal;
        const char* slot;
    } signalMap[] = {
        {"SendReceiveRequest", SLOT(onSendReceiveRequest())},
        {"CheckConnectionRequest", SLOT(onCheckConnectionRequest())},
        {"RegistrationRequest", SLOT(onRegistrationRequest())},
        {"ApplicationStarted", SLOT(onApplicationStarted())},
        {"ApplicationClosed", SLOT(onApplicationClosed())},
    };
    for (const auto& entry : signalMap) {
        if (!m_bus.connect(QString(), clientPath, clientInterface, QLatin1String(entry.signal),
                           this, entry.slot)) {
            complain(QStringLiteral("cannot listen to %1: %2")
                         .arg(QLatin1String(entry.signal), m_bus.lastError().message()));
        }
    }
    auto* watcher = new QDBusServiceWatcher(clientService, m_bus,
                                            QDBusServiceWatcher::WatchForUnregistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this,
            &CDaemonBus::onClientUnregistered);

    QDBusConnectionInterface* busInterface = m_bus.interface();
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        busInterface
            ? busInterface->registerService(serviceName, QDBusConnectionInterface::DontQueueService,
                                            QDBusConnectionInterface::DontAllowReplacement)
            : QDBusReply<QDBusConnectionInterface::RegisterServiceReply>();
    if (!reply.isValid() || reply.value() != QDBusConnectionInterface::ServiceRegistered) {
        m_bNameTaken = reply.isValid();
        if (pError) {
            *pError =
                reply.isValid()
                    ? QStringLiteral("%1 is already owned by another process").arg(serviceName)
                    : QStringLiteral("cannot own %1: %2").arg(serviceName, reply.error().message());
        }
        return false;
    }
    if (busInterface->isServiceRegistered(clientService)) {
        say(QStringLiteral("the client is already on the bus"));
    }
    // libdbus reports the loss of the bus as a signal of its own making: no need to poll.
    m_bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                  QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
                  this, SLOT(onBusDisconnected()));
    return true;
}

bool CDaemonBus::IsClientStarted()
{
    say(QStringLiteral("<- IsClientStarted: %1")
            .arg(m_bClientStarted ? QStringLiteral("true") : QStringLiteral("false")));
    return m_bClientStarted;
}

void CDaemonBus::OnClientStarted()
{
    clientStartedBy("OnClientStarted");
}

void CDaemonBus::Pause()
{
    say(QStringLiteral("<- Pause"));
    emit pauseRequested();
}

void CDaemonBus::Resume()
{
    say(QStringLiteral("<- Resume"));
    emit resumeRequested();
}

void CDaemonBus::Start()
{
    say(QStringLiteral("<- Start"));
    emit startRequested();
}

void CDaemonBus::Stop()
{
    say(QStringLiteral("<- Stop"));
    emit stopRequested();
}

void CDaemonBus::onSendReceiveRequest()
{
    emit sendReceiveRequested();
}

void CDaemonBus::onCheckConnectionRequest()
{
    emit checkConnectionRequested();
}

void CDaemonBus::onRegistrationRequest()
{
    emit registrationRequested();
}

void CDaemonBus::onApplicationStarted()
{
    clientStartedBy("ApplicationStarted");
}

void CDaemonBus::onApplicationClosed()
{
    say(QStringLiteral("<- ApplicationClosed"));
    const bool was = m_bClientStarted;
    m_bClientStarted = false;
    if (was) {
        emit clientGone();
    }
}

void CDaemonBus::onClientUnregistered(const QString& service)
{
    if (m_bClientStarted) {
        say(QStringLiteral("%1 left the bus").arg(service));
        m_bClientStarted = false;
        emit clientGone();
    }
}

void CDaemonBus::clientStartedBy(const char* how)
{
    say(QStringLiteral("<- %1").arg(QLatin1String(how)));
    const bool first = !m_bClientStarted;
    m_bClientStarted = true;
    emit clientStarted(first);
}

void CDaemonBus::onBusDisconnected()
{
    emit busLost();
}

void CDaemonBus::callClient(const QString& method)
{
    say(QStringLiteral("-> %1").arg(method));
    QDBusMessage message =
        QDBusMessage::createMethodCall(clientService, clientPath, clientInterface, method);
    // Only a request to show the inbox may start a client that is not running; news for a
    // client that is gone is not worth starting one.
    message.setAutoStartService(method == QLatin1String("OpenInbox"));
    auto* watcher =
        new QDBusPendingCallWatcher(m_bus.asyncCall(message, kClientCallTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, method](QDBusPendingCallWatcher* pWatcher) {
                if (pWatcher->isError()) {
                    complain(QStringLiteral("%1 did not reach the client: %2")
                                 .arg(method, pWatcher->error().message()));
                }
                pWatcher->deleteLater();
            });
}

}  // namespace Dravo
