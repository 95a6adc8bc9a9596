// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QtPlugin>

namespace Dravo {

// Qt's network information as the connection manager uses it. The implementation links
// Qt Network (with Kerberos, libproxy and the rest that it brings), which would cost every
// start as much time as the client's own libraries: it is the tarviknetinfo plugin, loaded
// when the network state is first wanted. The plugin's root object implements this and has
// the signal reachabilityChanged(bool online).
class INetworkBackend
{
public:
    virtual ~INetworkBackend() = default;
    // Loads one of Qt's backends: NetworkManager's when bNetworkManagerAnswered, else GLib's,
    // else any that reports reachability. Returns its name, or empty when none loads.
    virtual QString load(bool bNetworkManagerAnswered) = 0;
    // Whether the loaded backend reports the Internet reachable.
    virtual bool isOnline() const = 0;
    // The kind of link, as the connection log names it: "ETHERNET", "GPRS", "WLAN_INFRA",
    // "DUN_GSM_PS" or "UNKNOWN".
    virtual QString bearer() const = 0;
};

}  // namespace Dravo

#define TARVIK_NETWORK_BACKEND_IID "com.qel.tarvik.NetworkBackend/1.0"
Q_DECLARE_INTERFACE(Dravo::INetworkBackend, TARVIK_NETWORK_BACKEND_IID)
