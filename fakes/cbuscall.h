// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QDBusMessage>

namespace Dravo {
namespace Test {

// Sends `message` on `connection` and waits for the reply while the event loop keeps
// running, so an object served by this same process can answer.
QDBusMessage callAndWait(const QDBusConnection& connection, const QDBusMessage& message,
                         int timeoutMs = 5000);

// Puts the fake NetworkManager (tarvik-fakes --nm, another process) on `system` into
// `state`, blocking until it has answered; true when it has.
bool setFakeNetworkState(const QDBusConnection& system, uint state);

}  // namespace Test
}  // namespace Dravo
