// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

namespace Dravo {

// Whether and when the user's position may be given out, with its weekly schedule.
class CLocationRequest
{
public:
    // One weekly window; the strings are stored and handed on unchanged.
    struct CScheduleEntry
    {
        int day = 0;
        QString timeon;
        QString timeoff;
        bool operator==(const CScheduleEntry& o) const
        {
            return day == o.day && timeon == o.timeon && timeoff == o.timeoff;
        }
    };

    enum eMask : unsigned
    {
        eMaskProvideLocation = 0x01,
        eMaskProvideLocationPeriod = 0x02,
        eMaskSchedule = 0x04,
        eMaskAll = 0x07
    };

    CLocationRequest();
    CLocationRequest(const CLocationRequest& other) = default;
    CLocationRequest& operator=(const CLocationRequest& other) = default;
    virtual ~CLocationRequest();

    int providelocation() const { return m_iProvideLocation; }
    void setProvidelocation(int value) { m_iProvideLocation = value; }
    int providelocationperiod() const { return m_iProvideLocationPeriod; }
    void setProvidelocationperiod(int value) { m_iProvideLocationPeriod = value; }
    QList<CScheduleEntry> schedule() const { return m_lstSchedule; }
    void setSchedule(const QList<CScheduleEntry>& schedule) { m_lstSchedule = schedule; }
    void addScheduleEntry(int day, const QString& timeon, const QString& timeoff);

    void dump() const;

private:
    int m_iProvideLocation;
    int m_iProvideLocationPeriod;
    QList<CScheduleEntry> m_lstSchedule;
};

}  // namespace Dravo

Q_DECLARE_METATYPE(Dravo::CLocationRequest)
