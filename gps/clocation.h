// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMetaType>

class QGeoPositionInfo;

namespace Dravo {

// One GPS position. A default-constructed location is invalid; receivers check
// isValid() before reading the coordinates.
class CLocation
{
public:
    CLocation() = default;
    CLocation(double latitude, double longitude);
    // Valid only when the fix carries a valid latitude and longitude.
    explicit CLocation(const QGeoPositionInfo& info);
    CLocation(const CLocation&) = default;
    CLocation& operator=(const CLocation&) = default;
    virtual ~CLocation() = default;

    bool isValid() const { return m_bValid; }
    double latitude() const { return m_dLatitude; }
    double longitude() const { return m_dLongitude; }

    // Registers the type for queued signals under "CLocation" and "Dravo::CLocation".
    static void registerMetaType();

private:
    bool m_bValid = false;
    double m_dLatitude = 0.0;
    double m_dLongitude = 0.0;
};

}  // namespace Dravo

Q_DECLARE_METATYPE(Dravo::CLocation)
