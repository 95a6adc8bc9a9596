// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMetaType>
#include <QString>

namespace Dravo {

// The user's settings, one row each in the `settings` table.
class CTSettings
{
public:
    // Bits of the save mask, in the order they are written. imei and version have no
    // bit: only the database opening code writes them.
    enum eMask : unsigned
    {
        eMaskScreenname = 0x01,
        eMaskMynumber = 0x02,
        eMaskImsi = 0x04,
        eMaskRegflag = 0x08,
        eMaskPollinginterval = 0x10,
        eMaskAll = 0x1F
    };

    CTSettings();
    CTSettings(const CTSettings& other) = default;
    CTSettings& operator=(const CTSettings& other) = default;
    virtual ~CTSettings();

    QString imei() const { return m_strImei; }
    void setImei(const QString& imei) { m_strImei = imei; }
    QString screenname() const { return m_strScreenname; }
    void setScreenname(const QString& screenname) { m_strScreenname = screenname; }
    QString mynumber() const { return m_strMynumber; }
    void setMynumber(const QString& mynumber) { m_strMynumber = mynumber; }
    QString version() const { return m_strVersion; }
    void setVersion(const QString& version) { m_strVersion = version; }
    QString imsi() const { return m_strImsi; }
    void setImsi(const QString& imsi) { m_strImsi = imsi; }
    int regflag() const { return m_iRegflag; }
    void setRegflag(int regflag) { m_iRegflag = regflag; }
    int pollinginterval() const { return m_iPollinginterval; }
    void setPollinginterval(int pollinginterval) { m_iPollinginterval = pollinginterval; }

    void dump() const;

private:
    QString m_strImei;
    QString m_strScreenname;
    QString m_strMynumber;
    QString m_strVersion;
    QString m_strImsi;
    int m_iRegflag;
    int m_iPollinginterval;
};

}  // namespace Dravo

Q_DECLARE_METATYPE(Dravo::CTSettings)
