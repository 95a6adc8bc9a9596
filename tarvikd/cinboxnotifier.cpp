// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cinboxnotifier.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDebug>

#include "ctexts.h"

namespace Dravo {

namespace {
const char* const kService = "org.freedesktop.Notifications";
const char* const kPath = "/org/freedesktop/Notifications";
const char* const kInterface = "org.freedesktop.Notifications";
const char* const kDefaultAction = "default";
const int kCallTimeoutMs = 5000;

QDBusMessage notificationCall(const char* method)
{
    return QDBusMessage::createMethodCall(QLatin1String(kService), QLatin1String(kPath),
                                          QLatin1String(kInterface), QLatin1String(method));
}
}  // namespace

CInboxNotifier::CInboxNotifier(const QDBusConnection& bus, QObject* parent)
    : QObject(parent),
      m_bus(bus),
      m_uId(0),
      m_bSending(false),
      m_bChanged(false),
      m_bCloseOnReply(false)
{
    m_bus.connect(QString(), QLatin1String(kPath), QLatin1String(kInterface),
                  QStringLiteral("ActionInvoked"), this, SLOT(onActionInvoked(uint, QString)));
    m_bus.connect(QString(), QLatin1String(kPath), QLatin1String(kInterface),
                  QStringLiteral("NotificationClosed"), this,
                  SLOT(onNotificationClosed(uint, uint)));
}

void CInboxNotifier::announce(const QStringList& lstSenders)
{
    m_lstSenders += lstSenders;
    m_bCloseOnReply = false;
    // One call at a time, so that every update after the first carries the id.
    if (m_bSending) {
        m_bChanged = true;
        return;
    }
    send();
}

void CInboxNotifier::withdraw()
{
    if (m_bSending) {
        m_bCloseOnReply = true;
    } else if (m_uId != 0) {
        close(m_uId);
    }
    endBurst();
}

void CInboxNotifier::endBurst()
{
    m_lstSenders.clear();
    m_uId = 0;
    m_bChanged = false;
}

void CInboxNotifier::send()
{
    QDBusMessage message = notificationCall("Notify");
    QVariantMap hints;
    hints.insert(QStringLiteral("desktop-entry"), QStringLiteral("com.qel.tarvik"));
    hints.insert(QStringLiteral("category"), QStringLiteral("im.received"));
    message << CTexts::appName() << m_uId << QStringLiteral("com.qel.tarvik")
            << CTexts::newTarviksReceived() << CTexts::senderList(m_lstSenders)
            << QStringList{QLatin1String(kDefaultAction), CTexts::inbox()} << hints << int(-1);
    m_bSending = true;
    m_bChanged = false;
    auto* pWatcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message, kCallTimeoutMs), this);
    connect(pWatcher, &QDBusPendingCallWatcher::finished, this, &CInboxNotifier::onNotifyFinished);
}

void CInboxNotifier::close(uint id)
{
    m_bus.asyncCall(notificationCall("CloseNotification") << id, kCallTimeoutMs);
}

void CInboxNotifier::onNotifyFinished(QDBusPendingCallWatcher* pWatcher)
{
    pWatcher->deleteLater();
    m_bSending = false;
    const QDBusPendingReply<uint> reply = *pWatcher;
    if (reply.isError()) {
        qInfo().noquote() << QStringLiteral("tarvikd: no desktop notification: ") +
                                 reply.error().message();
        return;
    }
    if (m_bCloseOnReply) {
        m_bCloseOnReply = false;
        close(reply.value());
        return;
    }
    m_uId = reply.value();
    if (m_bChanged) {
        send();
    }
}

void CInboxNotifier::onActionInvoked(uint id, const QString& strAction)
{
    if (id == 0 || id != m_uId || strAction != QLatin1String(kDefaultAction)) {
        return;
    }
    qInfo() << "tarvikd: the notification was taken: opening the inbox";
    endBurst();
    emit openInboxRequested();
}

void CInboxNotifier::onNotificationClosed(uint id, uint)
{
    if (id != 0 && id == m_uId) {
        endBurst();
    }
}

}  // namespace Dravo
