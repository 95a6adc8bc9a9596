// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMap>
#include <QObject>
#include <QTimer>

#include "csingleton.h"

namespace Dravo {

class INetworkBackend;

// Watches the Internet connection for the whole process. Forms connect to
// connected() and disconnected() and then call requestConnection(): the answer is
// connected() (queued) when the network is up; otherwise disconnected() at once,
// then connected() when the network comes up, or disconnected() again when the
// connect time-out runs out. After the first request every change of the network
// is reported, including changes made by other programs.
//
// The network state comes from QNetworkInformation (through the tarviknetinfo plugin,
// see INetworkBackend): the NetworkManager backend when NetworkManager answers on the
// system bus, else the glib backend; when no backend loads the network counts as up.
class CConnectionManager : public CSingleton<CConnectionManager>
{
    Q_OBJECT
    friend class CSingleton<CConnectionManager>;

public:
    static constexpr int kDefaultConnectTimeoutMs = 30000;

    // Returns true when the request was taken; the outcome always arrives as a signal.
    bool requestConnection();
    // Finds and loads the network-information backend ahead of the first request (a
    // plugin that takes a GUI-thread slice of its own to load); nothing is signalled.
    void prepare();

    void setConnectTimeout(int ms) { m_connectTimer.setInterval(ms); }
    int connectTimeout() const { return m_connectTimer.interval(); }
    // Active connections: identifier (the backend in use) to bearer.
    QMap<QString, QString> activeConnections() const { return m_mapConnections; }
    // Where the tarviknetinfo plugin is looked for: $TARVIK_PLUGIN_DIR when set, otherwise
    // the plugin directory relative to the executable.
    static QStringList searchPaths();
    // "networkmanager", "glib", or empty when no backend could be loaded.
    QString backendName() const { return m_strBackend; }
    bool isRequestActive() const { return m_bRequestActive; }
    // True when the network is known to be up: the backend has been loaded (by a first
    // request) and reports it online, or no backend could be loaded.
    bool isConnected() const { return m_eBackendState == eBackendReady && isOnline(); }

Q_SIGNALS:
    void connected();
    void disconnected();

public Q_SLOTS:
    void onAppQuit() override;

private:
    enum eBackendState
    {
        eBackendNone,
        eBackendProbing,
        eBackendReady
    };
    enum eConnectionError
    {
        eErrorNone = 0,
        eErrorInvalidIap = 1,
        eErrorConnectionFailed = 2,
        eErrorUserCanceled = 3
    };

    CConnectionManager();

    void probeBackend();
    void loadBackend(bool networkManagerAnswered);
    void watchNetworkManager();
    void startRequest();
    void cleanUp();
    bool isOnline() const;
    Q_SLOT void onReachabilityChanged(bool online);
    Q_SLOT void clearOverride() { m_iOverride = -1; }
    void onConnectTimeout();
    void reportConnected();
    void reportDisconnected(int error);
    QString bearer() const;

    eBackendState m_eBackendState = eBackendNone;
    QString m_strBackend;
    bool m_bRequestActive = false;
    bool m_bWasOnline = false;
    int m_iRequest = 0;
    int m_iOverride = -1;  // 1 online, 0 not, when known better than the backend; or -1
    QObject* m_pBackendObject = nullptr;    // the plugin's root object, kept by Qt
    INetworkBackend* m_pBackend = nullptr;  // the same object
    QMetaObject::Connection m_reachabilityConnection;
    QMap<QString, QString> m_mapConnections;
    QTimer m_connectTimer;
};

}  // namespace Dravo
