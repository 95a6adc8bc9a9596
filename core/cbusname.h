// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QString>

namespace Dravo {

// Asks the bus for a well-known name without waiting for the answer, so that start-up does
// not stop for a round trip to the bus daemon. Calls that reach the name later are ordered
// after the request on the bus. A name held by another program is logged when the answer
// comes: "D-Bus name <name> is held by another program".
void requestBusName(const QDBusConnection& bus, const QString& strName);

}  // namespace Dravo
