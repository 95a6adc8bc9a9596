// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctsettings.h"

#include <QDebug>

namespace Dravo {

CTSettings::CTSettings() : m_iRegflag(0), m_iPollinginterval(0) {}

CTSettings::~CTSettings() = default;

void CTSettings::dump() const
{
    qDebug().noquote() << "imei:" << m_strImei;
    qDebug().noquote() << "screenname:" << m_strScreenname;
    qDebug().noquote() << "mynumber:" << m_strMynumber;
    qDebug().noquote() << "version:" << m_strVersion;
    qDebug().noquote() << "imsi:" << m_strImsi;
    qDebug() << "regflag:" << m_iRegflag;
    qDebug() << "pollinginterval:" << m_iPollinginterval;
}

}  // namespace Dravo
