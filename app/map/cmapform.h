// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTimer>

#include "cform.h"
#include "ctarvik.h"

class QWidget;

namespace Dravo {

class CLocationEngine;
class CMapWebView;
class CTWPushButton;
class CTWToolBar;
class CTWToolButton;

// Shows a message's position on a map (type 0), a route from the own position to it
// with its directions below (type 1), or the route map with a switch to the directions
// (type 2). The pan, zoom and switch controls appear once the map's tiles have loaded,
// or after a time-out when they do not come; a route that does not come in time is
// reported like one the service could not calculate.
class CMapForm : public CForm
{
    Q_OBJECT
public:
    enum eMapType
    {
        eTypePosition = 0,
        eTypeRouteAndDirections = 1,
        eTypeRouteMap = 2
    };

    CMapForm(QWidget* parent, const CTarvik& tarvik, int eType);

    // The location engine the own-position popup asks; the process-wide one when null.
    static void setLocationEngine(CLocationEngine* pEngine);

    QString title() const override;
    int type() const { return m_eType; }
    bool isRouteMap() const { return m_bIsRouteMap; }
    CMapWebView* mapView() const { return m_pMapView; }
    // The panel with the arrows and zoom buttons; null for type 1.
    QWidget* mapControls() const { return m_pMapControls; }
    // The switch between route map and directions; null unless type 2.
    CTWPushButton* switchButton() const { return m_pBtnSwitch; }

public slots:
    void onLoadFinished(bool ok);
    void onRouteError();
    void onRouteLoaded();
    void onMapTilesLoaded();
    void onBtnUpClick();
    void onBtnDownClick();
    void onBtnSwitchRouteDirectionsClick();
    void onBtnArrowEastClick();
    void onBtnArrowWestClick();
    void onBtnArrowNorthClick();
    void onBtnArrowSouthClick();
    void onBtnZoomInClick();
    void onBtnZoomOutClick();
    void onBtnCloseClick();
    void onLocationGotten(double dLatitude, double dLongitude);

private slots:
    void onTilesTimeout();
    void onRouteTimeout();

private:
    CTWToolButton* addArrow(const QString& strFile, const QString& strName);
    bool isTextShown() const;
    void showControls();
    void startRouteWait();
    CForm* formBelow() const;

    int m_eType;
    CTarvik m_tarvik;
    double m_dOwnLatitude;
    double m_dOwnLongitude;
    bool m_bIsRouteMap;
    bool m_bStarted;
    bool m_bDirectionsShown;
    CMapWebView* m_pMapView;
    CTWToolBar* m_pToolBar;
    CTWPushButton* m_pBtnUp;
    CTWPushButton* m_pBtnDown;
    CTWPushButton* m_pBtnSwitch;
    QWidget* m_pMapControls;
    CTWToolButton* m_pBtnArrowNorth;
    CTWToolButton* m_pBtnArrowWest;
    CTWToolButton* m_pBtnArrowEast;
    CTWToolButton* m_pBtnArrowSouth;
    CTWToolButton* m_pBtnZoomIn;
    CTWToolButton* m_pBtnZoomOut;
    CTWPushButton* m_pBtnClose;
    QTimer m_timerTiles;
    QTimer m_timerRoute;
};

}  // namespace Dravo
