// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

namespace Dravo {

class CSimDaemon;

// Test and demo handle of the simulator, on "/com/qel/tarviksim", interface
// "com.qel.TarvikSimControl": things a real service would do on its own time.
class CSimControl : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.qel.TarvikSimControl")
public:
    explicit CSimControl(CSimDaemon* pDaemon);

public Q_SLOTS:
    // Delivers `count` scripted messages and calls OnMessagesReceived; returns how many
    // were stored.
    Q_SCRIPTABLE int DeliverNow(int count);
    // Calls the client's OpenInbox.
    Q_SCRIPTABLE void OpenInbox();

private:
    CSimDaemon* m_pDaemon;
};

}  // namespace Dravo
