// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QObject>

namespace Dravo {
namespace Test {

// The handset's SIM service: "com.nokia.phone.SIM", object "/com/nokia/phone/SIM/security",
// interface "Phone.Sim.Security", get_imei() -> (s imei, i flags).
class CFakeSim : public QObject
{
    Q_OBJECT
public:
    explicit CFakeSim(const QString& imei, QObject* parent = nullptr);

    // Registers the object and the name on `connection`.
    bool registerOn(QDBusConnection& connection);

private:
    friend class CFakeSimAdaptor;
    QString m_strImei;
};

class CFakeSimAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "Phone.Sim.Security")
public:
    explicit CFakeSimAdaptor(CFakeSim* parent);

public Q_SLOTS:
    QString get_imei(int& flags);

private:
    CFakeSim* m_pSim;
};

}  // namespace Test
}  // namespace Dravo
