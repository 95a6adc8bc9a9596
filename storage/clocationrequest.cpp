// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "clocationrequest.h"

#include <QDebug>

namespace Dravo {

CLocationRequest::CLocationRequest() : m_iProvideLocation(0), m_iProvideLocationPeriod(0) {}

CLocationRequest::~CLocationRequest() = default;

void CLocationRequest::addScheduleEntry(int day, const QString& timeon, const QString& timeoff)
{
    m_lstSchedule.append(CScheduleEntry{day, timeon, timeoff});
}

void CLocationRequest::dump() const
{
    qDebug() << "tprovidelocation:" << m_iProvideLocation;
    qDebug() << "tprovidelocationperiod:" << m_iProvideLocationPeriod;
    for (const CScheduleEntry& entry : m_lstSchedule) {
        qDebug().noquote().nospace() << "shedule day=" << entry.day << " timeon=" << entry.timeon
                                     << " timeoff=" << entry.timeoff;
    }
}

}  // namespace Dravo
