// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "phonesimsecurityinterface.h"

#include <QDBusMessage>

PhoneSimSecurityInterface::PhoneSimSecurityInterface(const QString& service, const QString& path,
                                                     const QDBusConnection& connection,
                                                     QObject* parent)
    : QDBusAbstractInterface(service, path, staticInterfaceName(), connection, parent)
{
}

QString PhoneSimSecurityInterface::get_imei(int& flags)
{
    flags = 0;
    const QDBusMessage reply = call(QDBus::Block, QStringLiteral("get_imei"));
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        return QString();
    }
    const QList<QVariant> args = reply.arguments();
    if (args.size() > 1) {
        flags = args.at(1).toInt();
    }
    return args.at(0).toString();
}
