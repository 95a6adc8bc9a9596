// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cinboxnotifier.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDebug>

#include "cnotifications.h"
#include "ctexts.h"

namespace Dravo {

CInboxNotifier::CInboxNotifier(const QDBusConnection& bus, QObject* parent)
    : QObject(parent),
      m_bus(bus),
      m_uId(0),
      m_bSending(false),
      m_bChanged(false),
      m_bCloseOnReply(false)
{
    m_bus.connect(QString(), CNotifications::path, CNotifications::interface,
                  QStringLiteral("ActionInvoked"), this, SLOT(onActionInvoked(uint, QString)));
    m_bus.connect(QString(), CNotifications::path, CNotifications::interface,
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
    QDBusMessage message = CNotifications::call("Notify");
    QVariantMap hints;
    hints.insert(QStringLiteral("desktop-entry"), QStringLiteral("com.qel.tarvik"));
    hints.insert(QStringLiteral("category"), QStringLiteral("im.received"));
    message << CTexts::appName() << m_uId << QStringLiteral("com.qel.tarvik")
            << CTexts::newTarviksReceived() << CTexts::senderList(m_lstSenders)
            << QStringList{CNotifications::defaultAction, CTexts::inbox()} << hints << int(-1);
    m_bSending = true;
    m_bChanged = false;
    auto* pWatcher =
        new QDBusPendingCallWatcher(m_bus.asyncCall(message, CNotifications::callTimeoutMs), this);
    connect(pWatcher, &QDBusPendingCallWatcher::finished, this, &CInboxNotifier::onNotifyFinished);
}

void CInboxNotifier::close(uint id)
{
    m_bus.asyncCall(CNotifications::call("CloseNotification") << id, CNotifications::callTimeoutMs);
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
    if (id == 0 || id != m_uId || strAction != CNotifications::defaultAction) {
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
