// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cbusname.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QtDebug>

namespace Dravo {

namespace {
// The bus's flag and answers (DBUS_NAME_FLAG_DO_NOT_QUEUE; primary owner, already owner).
constexpr uint kDoNotQueue = 4;
constexpr uint kPrimaryOwner = 1;
constexpr uint kAlreadyOwner = 4;
}  // namespace

void requestBusName(const QDBusConnection& bus, const QString& strName)
{
    QDBusMessage request = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("RequestName"));
    request << strName << kDoNotQueue;
    auto* pWatcher =
        new QDBusPendingCallWatcher(bus.asyncCall(request), QCoreApplication::instance());
    QObject::connect(
        pWatcher, &QDBusPendingCallWatcher::finished, [strName](auto* pCall) {
            pCall->deleteLater();
            const QDBusPendingReply<uint> reply = *pCall;
            if (reply.isError()) {
                qWarning().noquote() << QStringLiteral("D-Bus name %1 not taken: %2")
                                            .arg(strName, reply.error().message());
            } else if (reply.value() != kPrimaryOwner && reply.value() != kAlreadyOwner) {
                qDebug().noquote()
                    << QStringLiteral("D-Bus name %1 is held by another program").arg(strName);
            }
        });
}

}  // namespace Dravo
