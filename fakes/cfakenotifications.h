// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace Dravo {
namespace Test {

// A freedesktop notification server that records what it is sent: a new notification
// gets the next id from 1, an update keeps the id it names.
class CFakeNotifications : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    struct CCall
    {
        QString strApp;
        uint uReplaces;
        QString strSummary;
        QString strBody;
        QStringList lstActions;
    };
    QList<CCall> m_lstCalls;
    QList<uint> m_lstClosed;

public Q_SLOTS:
    uint Notify(const QString& app, uint replaces, const QString&, const QString& summary,
                const QString& body, const QStringList& actions, const QVariantMap&, int)
    {
        m_lstCalls << CCall{app, replaces, summary, body, actions};
        return replaces != 0 ? replaces : ++m_uLastId;
    }
    void CloseNotification(uint id) { m_lstClosed << id; }

private:
    uint m_uLastId = 0;
};

}  // namespace Test
}  // namespace Dravo
