// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusMessage>
#include <QLatin1String>

namespace Dravo {

// The desktop's notification service (org.freedesktop.Notifications), as the client and the
// daemon both announce new tarviks through it.
struct CNotifications
{
    static constexpr QLatin1String service{"org.freedesktop.Notifications"};
    static constexpr QLatin1String path{"/org/freedesktop/Notifications"};
    static constexpr QLatin1String interface {
        "org.freedesktop.Notifications"
    };
    // The action a tap on the notification itself invokes.
    static constexpr QLatin1String defaultAction{"default"};
    static constexpr int callTimeoutMs = 5000;

    static QDBusMessage call(const char* method)
    {
        return QDBusMessage::createMethodCall(service, path, interface, QLatin1String(method));
    }
};

}  // namespace Dravo
