// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusAbstractAdaptor>
#include <QObject>
#include <QStringList>

class QDBusConnection;

namespace Dravo {
namespace Test {

// The handset's mode control: "com.nokia.mce", object "/com/nokia/mce/request",
// interface "com.nokia.mce.request". get_device_mode answers the current mode;
// req_device_mode_change switches to the requested mode and records it. Tests set
// the mode in-process with setMode() and read the requests over the bus with the control
// interface "org.tarvik.Fake.Control" (RequestedModes() -> as) on the same object.
class CFakeMce : public QObject
{
    Q_OBJECT
public:
    explicit CFakeMce(const QString& mode, QObject* parent = nullptr);
    bool registerOn(QDBusConnection& connection);

    void setMode(const QString& mode) { m_strMode = mode; }

private:
    friend class CFakeMceAdaptor;
    friend class CFakeMceControlAdaptor;
    QString m_strMode;
    QStringList m_lstRequested;
};

class CFakeMceAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.nokia.mce.request")
public:
    explicit CFakeMceAdaptor(CFakeMce* parent);

public Q_SLOTS:
    QString get_device_mode();
    void req_device_mode_change(const QString& mode);

private:
    CFakeMce* m_pMce;
};

class CFakeMceControlAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.tarvik.Fake.Control")
public:
    explicit CFakeMceControlAdaptor(CFakeMce* parent);

public Q_SLOTS:
    QStringList RequestedModes();

private:
    CFakeMce* m_pMce;
};

}  // namespace Test
}  // namespace Dravo
