// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cbuscall.h"

#include <QDBusPendingCallWatcher>
#include <QEventLoop>
#include <QTimer>

namespace Dravo {
namespace Test {

QDBusMessage callAndWait(const QDBusConnection& connection, const QDBusMessage& message,
                         int timeoutMs)
{
    QDBusPendingCallWatcher watcher(connection.asyncCall(message, timeoutMs));
    if (!watcher.isFinished()) {
        QEventLoop loop;
        QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
        QTimer::singleShot(timeoutMs + 1000, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return watcher.reply();
}

bool setFakeNetworkState(const QDBusConnection& system, uint state)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.NetworkManager"),
        QStringLiteral("/org/freedesktop/NetworkManager"),
        QStringLiteral("org.tarvik.Fake.Control"), QStringLiteral("SetState"));
    call << state;
    return system.call(call).type() == QDBusMessage::ReplyMessage;
}

}  // namespace Test
}  // namespace Dravo
