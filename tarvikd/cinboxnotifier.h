// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

class QDBusPendingCallWatcher;

namespace Dravo {

// Tells the desktop about tarviks that arrive while the client is closed: one freedesktop
// notification per burst, naming the senders as the client does and updated in place as
// more arrive, whose default action asks for the client's inbox. A burst ends when the
// notification is closed, its action is taken, or the client comes up.
class CInboxNotifier : public QObject
{
    Q_OBJECT
public:
    explicit CInboxNotifier(const QDBusConnection& bus, QObject* parent = nullptr);

    // Adds the senders (screen names, or addresses where there is none) to the burst and
    // shows or updates its notification.
    void announce(const QStringList& lstSenders);
    // The client is up and shows the messages itself: the notification goes.
    void withdraw();

Q_SIGNALS:
    // The user took the notification's default action.
    void openInboxRequested();

private Q_SLOTS:
    // The notification server's signals, connected by name.
    void onActionInvoked(uint id, const QString& strAction);
    void onNotificationClosed(uint id, uint reason);

private:
    void send();
    void close(uint id);
    void onNotifyFinished(QDBusPendingCallWatcher* pWatcher);
    void endBurst();

    QDBusConnection m_bus;
    QStringList m_lstSenders;
    uint m_uId;
    bool m_bSending;
    bool m_bChanged;       // the burst grew while a call was out
    bool m_bCloseOnReply;  // withdrawn while a call was out
};

}  // namespace Dravo
