// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cdesktopnotifier.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QWidget>

#include "casynctstorage.h"
#include "cnotifications.h"
#include "ctexts.h"
#include "dbusobject.h"

namespace Dravo {

CDesktopNotifier::CDesktopNotifier(QWidget* pWindow, QObject* parent)
    : QObject(parent), m_pWindow(pWindow), m_pPendingTag(nullptr), m_uId(0), m_bSending(false)
{
    connect(Tarvik::DBusObject::instance(), &Tarvik::DBusObject::MessagesReceived, this,
            &CDesktopNotifier::onMessagesReceived);
    connect(CAsyncTStorage::getInstance(1), &CAsyncTStorage::signalTarviksGotten, this,
            &CDesktopNotifier::tarviksGotten);
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(QString(), CNotifications::path, CNotifications::interface,
                QStringLiteral("ActionInvoked"), this, SLOT(onActionInvoked(uint, QString)));
    bus.connect(QString(), CNotifications::path, CNotifications::interface,
                QStringLiteral("NotificationClosed"), this, SLOT(onNotificationClosed(uint, uint)));
}

CDesktopNotifier::~CDesktopNotifier()
{
    // An answer still on its way carries the tag; it is only compared, never read, so the
    // tag can go with the notifier once nobody waits for it.
    if (CTag* pTag = m_pPendingTag) {
        CAsyncTStorage* pStorage = CAsyncTStorage::getInstance(1);
        auto* pConnection = new QMetaObject::Connection;
        *pConnection = connect(pStorage, &CAsyncTStorage::signalTarviksGotten, pStorage,
                               [pTag, pConnection](bool, const QList<CTarvik>&, uint,
                                                   CTarvikStorage::CUserData* pUserData) {
                                   if (pUserData != pTag)
                                       return;
                                   QObject::disconnect(*pConnection);
                                   delete pConnection;
                                   delete pTag;
                               });
    }
}

void CDesktopNotifier::onMessagesReceived()
{
    // A person looking at the window sees the popup; the desktop is told only otherwise.
    if (m_pWindow && m_pWindow->isActiveWindow())
        return;
    if (m_pPendingTag)
        return;  // the answer on its way will name every unread message
    m_pPendingTag = new CTag;
    if (!CAsyncTStorage::getInstance(1)->getTarviks(CAsyncTStorage::eFolderInbox, -1, 0,
                                                    m_pPendingTag)) {
        delete m_pPendingTag;
        m_pPendingTag = nullptr;
        qDebug("CDesktopNotifier: storage is not ready, no notification");
    }
}

void CDesktopNotifier::tarviksGotten(bool result, const QList<CTarvik>& tarviks, uint,
                                     CTarvikStorage::CUserData* userData)
{
    if (!m_pPendingTag || userData != m_pPendingTag)
        return;
    delete m_pPendingTag;
    m_pPendingTag = nullptr;
    if (!result) {
        qDebug("CDesktopNotifier: unread messages could not be read, no notification");
        return;
    }
    QStringList lstNames;
    for (const CTarvik& tarvik : tarviks) {
        if (tarvik.flag() != 0)
            lstNames << (tarvik.screenname().isEmpty() ? tarvik.from() : tarvik.screenname());
    }
    if (lstNames.isEmpty())
        return;
    notify(CTexts::senderList(lstNames));
}

void CDesktopNotifier::notify(const QString& strBody)
{
    // One call at a time, so that a burst updates the one notification by its id.
    if (m_bSending) {
        m_strQueuedBody = strBody;
        return;
    }
    QDBusMessage msg = CNotifications::call("Notify");
    QVariantMap hints;
    hints.insert(QStringLiteral("desktop-entry"), QStringLiteral("com.qel.tarvik"));
    hints.insert(QStringLiteral("category"), QStringLiteral("im.received"));
    msg << CTexts::appName() << m_uId << QStringLiteral("com.qel.tarvik")
        << CTexts::newTarviksReceived() << strBody
        << QStringList{CNotifications::defaultAction, CTexts::inbox()} << hints << int(-1);
    m_bSending = true;
    auto* pWatcher = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(msg, CNotifications::callTimeoutMs), this);
    connect(pWatcher, &QDBusPendingCallWatcher::finished, this,
            &CDesktopNotifier::onNotifyFinished);
}

void CDesktopNotifier::onNotifyFinished(QDBusPendingCallWatcher* pWatcher)
{
    pWatcher->deleteLater();
    m_bSending = false;
    const QDBusPendingReply<uint> reply = *pWatcher;
    if (reply.isError()) {
        qDebug("%s", qPrintable(QStringLiteral("CDesktopNotifier: no notification: ") +
                                reply.error().message()));
    } else {
        m_uId = reply.value();
        Q_EMIT notified(m_uId);
    }
    if (!m_strQueuedBody.isEmpty()) {
        const QString strBody = m_strQueuedBody;
        m_strQueuedBody.clear();
        notify(strBody);
    }
}

void CDesktopNotifier::onActionInvoked(uint id, const QString& strAction)
{
    if (id == 0 || id != m_uId || strAction != CNotifications::defaultAction)
        return;
    qDebug("CDesktopNotifier: notification tapped, opening the inbox");
    if (m_pWindow) {
        m_pWindow->show();
        m_pWindow->raise();
        m_pWindow->activateWindow();
    }
    Q_EMIT Tarvik::DBusObject::instance()->OpenInboxRequest();
}

void CDesktopNotifier::onNotificationClosed(uint id, uint)
{
    if (id != 0 && id == m_uId)
        m_uId = 0;
}

}  // namespace Dravo
