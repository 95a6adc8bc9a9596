// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "clocation.h"

#include <QGeoPositionInfo>

namespace Dravo {

CLocation::CLocation(double latitude, double longitude)
    : m_bValid(true), m_dLatitude(latitude), m_dLongitude(longitude)
{
}

CLocation::CLocation(const QGeoPositionInfo& info)
{
    const QGeoCoordinate coordinate = info.coordinate();
    if (info.isValid() && coordinate.isValid()) {
        m_bValid = true;
        m_dLatitude = coordinate.latitude();
        m_dLongitude = coordinate.longitude();
    }
}

void CLocation::registerMetaType()
{
    qRegisterMetaType<Dravo::CLocation>();
    qRegisterMetaType<Dravo::CLocation>("CLocation");
}

}  // namespace Dravo
