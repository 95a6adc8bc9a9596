// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "csimcontrol.h"

#include "csimdaemon.h"

namespace Dravo {

CSimControl::CSimControl(CSimDaemon* pDaemon) : QObject(pDaemon), m_pDaemon(pDaemon) {}

int CSimControl::DeliverNow(int count)
{
    return m_pDaemon->deliverNow(qBound(0, count, 100));
}

void CSimControl::OpenInbox()
{
    m_pDaemon->openInbox();
}

}  // namespace Dravo
