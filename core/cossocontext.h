// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariant>

#include "csingleton.h"

namespace Dravo {

// The platform's activation channel: owns "com.qel.tarvikosso" on the session bus,
// takes every method call on "/com/qel/tarvikosso" and reports it as onOssoEvent()
// with the arguments converted to plain Qt values.
class COssoContext : public CSingleton<COssoContext>
{
    Q_OBJECT
    friend class CSingleton<COssoContext>;

public:
    struct OssoEvent
    {
        QString interface;
        QString method;
        QList<QVariant> arguments;
    };

    static QString serviceName();  // "com.qel.tarvikosso"
    static QString objectPath();   // "/com/qel/tarvikosso"

    // Converts one incoming argument by its D-Bus type code: 'i' int, 'b' bool,
    // 'd' unsigned int (fraction dropped, negative gives 0), 's' string, 'u' unsigned
    // int, an invalid value stays empty; any other type logs the unknown-type line and
    // gives an empty value so argument positions are kept.
    static QVariant convertArgument(const QVariant& argument);
    // The D-Bus type code of an argument as QtDBus delivers it; 0 for an invalid value.
    static char typeCode(const QVariant& argument);

    // Turns one method call into an event and emits onOssoEvent().
    void handleCall(const QString& interface, const QString& method,
                    const QList<QVariant>& arguments);

    bool isInitialized() const { return m_bInitialized; }

Q_SIGNALS:
    void onOssoEvent(Dravo::COssoContext::OssoEvent event);

private:
    class CVirtualObject : public QDBusVirtualObject
    {
    public:
        explicit CVirtualObject(COssoContext* pContext);
        QString introspect(const QString& path) const override;
        bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

    private:
        COssoContext* m_pContext;
    };

    COssoContext();
    ~COssoContext() override;
    void init();

    bool m_bInitialized;
    CVirtualObject* m_pVirtualObject;
};

}  // namespace Dravo

Q_DECLARE_METATYPE(Dravo::COssoContext::OssoEvent)
