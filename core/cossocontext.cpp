// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cossocontext.h"

#include "cbusname.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QtDebug>
#include <cmath>
#include <limits>

namespace Dravo {

QString COssoContext::serviceName()
{
    return QStringLiteral("com.qel.tarvikosso");
}

QString COssoContext::objectPath()
{
    return QStringLiteral("/com/qel/tarvikosso");
}

COssoContext::COssoContext() : m_bInitialized(false), m_pVirtualObject(nullptr)
{
    qRegisterMetaType<Dravo::COssoContext::OssoEvent>("COssoContext::OssoEvent");
    init();
}

COssoContext::~COssoContext()
{
    if (m_bInitialized) {
        QDBusConnection bus = QDBusConnection::sessionBus();
        if (bus.isConnected())
            bus.unregisterObject(objectPath());
    }
    delete m_pVirtualObject;
}

void COssoContext::init()
{
    qDebug("COssoContext::init: Initialization...");
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        qDebug("COssoContext::Failed to initialize LibOSSO");
        return;
    }
    // The name is wanted but not required: a second instance still gets its calls
    // through the unique name.
    requestBusName(bus, serviceName());
    m_pVirtualObject = new CVirtualObject(this);
    if (!bus.registerVirtualObject(objectPath(), m_pVirtualObject)) {
        qDebug("COssoContext::Failed to set LibOSSO callback");
        delete m_pVirtualObject;
        m_pVirtualObject = nullptr;
        return;
    }
    m_bInitialized = true;
    qDebug("COssoContext::init: Initialized");
}

char COssoContext::typeCode(const QVariant& argument)
{
    if (!argument.isValid())
        return 0;
    if (argument.metaType() == QMetaType::fromType<QDBusArgument>()) {
        const QString strSig = qvariant_cast<QDBusArgument>(argument).currentSignature();
        return strSig.isEmpty() ? 'v' : strSig.at(0).toLatin1();
    }
    const char* pSig = QDBusMetaType::typeToSignature(argument.metaType());
    return pSig && *pSig ? pSig[0] : 'v';
}

QVariant COssoContext::convertArgument(const QVariant& argument)
{
    const char code = typeCode(argument);
    switch (code) {
        case 'i':
            return QVariant(argument.toInt());
        case 'b':
            return QVariant(argument.toBool());
        case 'd': {
            const double dValue = argument.toDouble();
            if (!(dValue > 0.0))  // negative and NaN
                return QVariant(0u);
            if (dValue >= static_cast<double>(std::numeric_limits<uint>::max()))
                return QVariant(std::numeric_limits<uint>::max());
            return QVariant(static_cast<uint>(std::trunc(dValue)));
        }
        case 's':
            return QVariant(argument.toString());
        case 'u':
            return QVariant(argument.toUInt());
        case 0:
            return QVariant();
        default:
            qCritical("%s", qPrintable(QStringLiteral("COssoContext::DBus message Unknown type:") +
                                       QLatin1Char(code)));
            return QVariant();
    }
}

void COssoContext::handleCall(const QString& interface, const QString& method,
                              const QList<QVariant>& arguments)
{
    OssoEvent event;
    event.interface = interface;
    event.method = method;
    // The interface follows the prefix without a blank: log readers match the line as is.
    qDebug("%s", qPrintable(QStringLiteral("COssoContext::DBus message") + interface +
                            QStringLiteral(", ") + method));
    for (const QVariant& argument : arguments)
        event.arguments.append(convertArgument(argument));
    Q_EMIT onOssoEvent(event);
}

COssoContext::CVirtualObject::CVirtualObject(COssoContext* pContext) : m_pContext(pContext) {}

QString COssoContext::CVirtualObject::introspect(const QString&) const
{
    // Calls are taken whatever their name, so there is nothing fixed to describe.
    return QString();
}

bool COssoContext::CVirtualObject::handleMessage(const QDBusMessage& message,
                                                 const QDBusConnection& connection)
{
    if (message.type() != QDBusMessage::MethodCallMessage)
        return false;
    m_pContext->handleCall(message.interface(), message.member(), message.arguments());
    // The caller gets an empty reply: no value goes back.
    if (!message.isReplyRequired() || message.isDelayedReply())
        return true;
    connection.send(message.createReply());
    return true;
}

}  // namespace Dravo
