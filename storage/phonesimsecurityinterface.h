// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusAbstractInterface>
#include <QDBusConnection>

// Proxy of the handset's SIM service ("com.nokia.phone.SIM", interface "Phone.Sim.Security").
class PhoneSimSecurityInterface : public QDBusAbstractInterface
{
    Q_OBJECT
public:
    static const char* staticInterfaceName() { return "Phone.Sim.Security"; }

    PhoneSimSecurityInterface(const QString& service, const QString& path,
                              const QDBusConnection& connection, QObject* parent = nullptr);

    // Blocking call; returns the IMEI (empty on any failure) and the reply's flags.
    QString get_imei(int& flags);
};
