// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The tarviknetinfo plugin: INetworkBackend over QNetworkInformation.
#include <QNetworkInformation>

#include <QObject>

#include "inetworkbackend.h"

namespace Dravo {

class CQtNetworkBackend : public QObject, public INetworkBackend
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID TARVIK_NETWORK_BACKEND_IID)
    Q_INTERFACES(Dravo::INetworkBackend)

public:
    QString load(bool bNetworkManagerAnswered) override
    {
        const QString networkManager = QStringLiteral("networkmanager");
        const QString glib = QStringLiteral("glib");
        QString strName;
        if (bNetworkManagerAnswered && QNetworkInformation::loadBackendByName(networkManager))
            strName = networkManager;
        else if (QNetworkInformation::loadBackendByName(glib))
            strName = glib;
        else if (QNetworkInformation::loadBackendByFeatures(
                     QNetworkInformation::Feature::Reachability))
            strName = QNetworkInformation::instance()->backendName();
        if (QNetworkInformation* pInfo = QNetworkInformation::instance()) {
            connect(pInfo, &QNetworkInformation::reachabilityChanged, this,
                    [this](QNetworkInformation::Reachability reachability) {
                        Q_EMIT reachabilityChanged(reachability ==
                                                   QNetworkInformation::Reachability::Online);
                    });
        }
        return strName;
    }

    bool isOnline() const override
    {
        QNetworkInformation* pInfo = QNetworkInformation::instance();
        return !pInfo || pInfo->reachability() == QNetworkInformation::Reachability::Online;
    }

    QString bearer() const override
    {
        QNetworkInformation* pInfo = QNetworkInformation::instance();
        if (!pInfo)
            return QStringLiteral("UNKNOWN");
        switch (pInfo->transportMedium()) {
            case QNetworkInformation::TransportMedium::Ethernet:
                return QStringLiteral("ETHERNET");
            case QNetworkInformation::TransportMedium::Cellular:
                return QStringLiteral("GPRS");
            case QNetworkInformation::TransportMedium::WiFi:
                return QStringLiteral("WLAN_INFRA");
            case QNetworkInformation::TransportMedium::Bluetooth:
                return QStringLiteral("DUN_GSM_PS");
            default:
                return QStringLiteral("UNKNOWN");
        }
    }

Q_SIGNALS:
    void reachabilityChanged(bool bOnline);
};

}  // namespace Dravo

#include "cqtnetworkbackend.moc"
