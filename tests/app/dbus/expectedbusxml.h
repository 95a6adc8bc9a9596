// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>

namespace TarvikTest {
// The adaptors' own "D-Bus Introspection" class information.
inline const char* const kClientAdaptorXml =
    "  <interface name=\"com.qel.TarvikClient\">\n"
    "    <signal name=\"SendReceiveRequest\"/>\n"
    "    <signal name=\"CheckConnectionRequest\"/>\n"
    "    <signal name=\"RegistrationRequest\"/>\n"
    "    <signal name=\"ApplicationStarted\"/>\n"
    "    <signal name=\"ApplicationClosed\"/>\n"
    "    <method name=\"OpenInbox\"/>\n"
    "    <method name=\"OnMessagesReceived\"/>\n"
    "    <method name=\"OnMessagesSent\"/>\n"
    "    <method name=\"OnMessagesPartiallySent\"/>\n"
    "    <method name=\"OnMessagesSendFailed\"/>\n"
    "    <method name=\"OnRegistrationSucceed\"/>\n"
    "    <method name=\"OnRegistrationFailed\"/>\n"
    "    <method name=\"OnConnectionCheckSucceed\"/>\n"
    "    <method name=\"OnConnectionCheckFailed\"/>\n"
    "  </interface>\n";
inline const char* const kOssoAdaptorXml =
    "  <interface name=\"com.qel.TarvikOsso\">\n"
    "    <method name=\"top_application\"/>\n"
    "  </interface>\n";

// What the client's object "/com/qel/tarvik" says about its own interfaces, byte for
// byte, before the standard interfaces that QtDBus appends.
inline const QString kClientIntrospectionHead =
    QStringLiteral(
        "<!DOCTYPE node PUBLIC \"-//freedesktop//DTD D-BUS Object Introspection 1.0//EN\"\n"
        "\"http://www.freedesktop.org/standards/dbus/1.0/introspect.dtd\">\n"
        "<node>\n") +
    QLatin1String(kClientAdaptorXml) + QLatin1String(kOssoAdaptorXml);

// Checks a whole introspection reply: the head exactly, then only QtDBus's standard
// interfaces, then the closing tag. Returns an empty text when it matches.
inline QString introspectionMismatch(const QString& xml)
{
    const QString& head = kClientIntrospectionHead;
    if (!xml.startsWith(head))
        return QStringLiteral("head differs:\n") + xml;
    const QString tail = xml.mid(head.size());
    const QStringList standard = {QStringLiteral("org.freedesktop.DBus.Properties"),
                                  QStringLiteral("org.freedesktop.DBus.Introspectable"),
                                  QStringLiteral("org.freedesktop.DBus.Peer")};
    qsizetype pos = 0;
    for (;;) {
        pos = tail.indexOf(QStringLiteral("  <interface name=\""), pos);
        if (pos < 0)
            break;
        pos += 19;
        const QString name = tail.mid(pos, tail.indexOf(QLatin1Char('"'), pos) - pos);
        if (!standard.contains(name))
            return QStringLiteral("unexpected interface ") + name;
    }
    if (!tail.endsWith(QStringLiteral("</node>\n")))
        return QStringLiteral("no closing node tag");
    return QString();
}
}  // namespace TarvikTest
