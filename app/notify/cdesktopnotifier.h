// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>

#include "ctarvik.h"
#include "ctarvikstorage.h"

class QDBusPendingCallWatcher;

namespace Dravo {

// Tells the desktop about new messages while the tarvik window is not the active one: one
// freedesktop notification naming the senders of the unread messages, updated in place
// by later notices, whose default action opens the inbox and raises the window. Without
// a notification server nothing happens beyond a debug line.
class CDesktopNotifier : public QObject
{
    Q_OBJECT
public:
    explicit CDesktopNotifier(QWidget* pWindow, QObject* parent = nullptr);
    ~CDesktopNotifier() override;

    uint notificationId() const { return m_uId; }

public Q_SLOTS:
    void onMessagesReceived();

Q_SIGNALS:
    // A notification went out (or was updated); for tests and the log.
    void notified(uint id);

private:
    class CTag : public CTarvikStorage::CUserData
    {
    };

    void tarviksGotten(bool result, const QList<CTarvik>& tarviks, uint folderName,
                       CTarvikStorage::CUserData* userData);
    void notify(const QString& strBody);
    void onNotifyFinished(QDBusPendingCallWatcher* pWatcher);

private Q_SLOTS:
    // The server's signals, connected by name.
    void onActionInvoked(uint id, const QString& strAction);
    void onNotificationClosed(uint id, uint reason);

private:
    QPointer<QWidget> m_pWindow;
    CTag* m_pPendingTag;
    uint m_uId;
    bool m_bSending;
    QString m_strQueuedBody;
};

}  // namespace Dravo
