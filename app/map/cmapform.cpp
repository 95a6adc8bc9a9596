// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cmapform.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QStackedWidget>
#include <QtDebug>

#include "cmapconfig.h"
#include "cmaplocationpopupform.h"
#include "cmapwebview.h"
#include "ctextpopupform.h"
#include "ctexts.h"
#include "ctwpushbutton.h"
#include "ctwtoolbar.h"
#include "ctwtoolbutton.h"
#include "uiresources.h"

namespace Dravo {

namespace {
// The page reports a route failure itself after CMapConfig::routeTimeoutMs(); the form
// waits a little longer so that the page's own answer normally comes first.
const int ROUTE_WAIT_MARGIN_MS = 5000;

CLocationEngine* s_pLocationEngine = nullptr;
}  // namespace

void CMapForm::setLocationEngine(CLocationEngine* pEngine)
{
    s_pLocationEngine = pEngine;
}

CMapForm::CMapForm(QWidget* parent, const CTarvik& tarvik, int eType)
    : CForm(parent),
      m_eType(eType),
      m_tarvik(tarvik),
      m_dOwnLatitude(0.0),
      m_dOwnLongitude(0.0),
      m_bIsRouteMap(false),
      m_bStarted(false),
      m_bDirectionsShown(false),
      m_pMapView(nullptr),
      m_pToolBar(nullptr),
      m_pBtnUp(nullptr),
      m_pBtnDown(nullptr),
      m_pBtnSwitch(nullptr),
      m_pMapControls(nullptr),
      m_pBtnArrowNorth(nullptr),
      m_pBtnArrowWest(nullptr),
      m_pBtnArrowEast(nullptr),
      m_pBtnArrowSouth(nullptr),
      m_pBtnZoomIn(nullptr),
      m_pBtnZoomOut(nullptr),
      m_pBtnClose(nullptr)
{
    qDebug("CMapForm::CMapForm started eType = %d", eType);

    m_pMapView = new CMapWebView(CLocation(tarvik.latitude(), tarvik.longitude()),
                                 eType != eTypePosition, this);
    m_pMapView->setAccessibleName(CTexts::map());
    connect(m_pMapView, &CMapWebView::loadFinished, this, &CMapForm::onLoadFinished);
    connect(m_pMapView, &CMapWebView::signalRouteError, this, &CMapForm::onRouteError);
    connect(m_pMapView, &CMapWebView::signalRouteLoaded, this, &CMapForm::onRouteLoaded);
    connect(m_pMapView, &CMapWebView::signalMapTilesLoaded, this, &CMapForm::onMapTilesLoaded);

    m_pToolBar = CTWToolBar::createSideBar(this);
    QBoxLayout* pBarLayout = m_pToolBar->boxLayout();

    if (eType == eTypeRouteAndDirections) {
        m_pBtnUp = new CTWPushButton(CTexts::pageUp(), m_pToolBar);
        m_pBtnUp->setAccessibleName(
            QString(CTexts::pageUp()).replace(QLatin1Char('\n'), QLatin1Char(' ')));
        connect(m_pBtnUp, &CTWPushButton::clicked, this, &CMapForm::onBtnUpClick);
        pBarLayout->addWidget(m_pBtnUp);
        m_pBtnDown = new CTWPushButton(CTexts::pageDown(), m_pToolBar);
        m_pBtnDown->setAccessibleName(
            QString(CTexts::pageDown()).replace(QLatin1Char('\n'), QLatin1Char(' ')));
        connect(m_pBtnDown, &CTWPushButton::clicked, this, &CMapForm::onBtnDownClick);
        pBarLayout->addWidget(m_pBtnDown);
    }

    if (eType == eTypeRouteMap) {
        m_pBtnSwitch = new CTWPushButton(CTexts::route(), m_pToolBar);
        m_pBtnSwitch->setAccessibleName(CTexts::route());
        m_pBtnSwitch->hide();
        connect(m_pBtnSwitch, &CTWPushButton::clicked, this,
                &CMapForm::onBtnSwitchRouteDirectionsClick);
        pBarLayout->addWidget(m_pBtnSwitch);
    }

    if (eType != eTypeRouteAndDirections) {
        m_pMapControls = new QWidget(m_pToolBar);
        m_pMapControls->hide();
        m_pMapControls->setFixedWidth(105);
        if (eType == eTypeRouteMap)
            m_pMapControls->setFixedHeight(240);
        auto* pGrid = new QGridLayout(m_pMapControls);
        pGrid->setContentsMargins(0, 0, 0, 0);
        pGrid->setSpacing(0);
        m_pBtnArrowNorth = addArrow(QStringLiteral("arrow_north.png"), CTexts::panNorth());
        m_pBtnArrowWest = addArrow(QStringLiteral("arrow_west.png"), CTexts::panWest());
        m_pBtnArrowEast = addArrow(QStringLiteral("arrow_east.png"), CTexts::panEast());
        m_pBtnArrowSouth = addArrow(QStringLiteral("arrow_south.png"), CTexts::panSouth());
        m_pBtnZoomIn = addArrow(QStringLiteral("zoom_plus.png"), CTexts::zoomIn());
        m_pBtnZoomOut = addArrow(QStringLiteral("zoom_minus.png"), CTexts::zoomOut());
        pGrid->addWidget(m_pBtnArrowNorth, 0, 0, 1, 2, Qt::AlignCenter);
        pGrid->addWidget(m_pBtnArrowWest, 1, 0);
        pGrid->addWidget(m_pBtnArrowEast, 1, 1);
        pGrid->addWidget(m_pBtnArrowSouth, 2, 0, 1, 2, Qt::AlignCenter);
        pGrid->setRowMinimumHeight(3, 5);
        pGrid->addWidget(m_pBtnZoomIn, 4, 0);
        pGrid->addWidget(m_pBtnZoomOut, 4, 1);
        connect(m_pBtnArrowNorth, &CTWToolButton::clicked, this, &CMapForm::onBtnArrowNorthClick);
        connect(m_pBtnArrowWest, &CTWToolButton::clicked, this, &CMapForm::onBtnArrowWestClick);
        connect(m_pBtnArrowEast, &CTWToolButton::clicked, this, &CMapForm::onBtnArrowEastClick);
        connect(m_pBtnArrowSouth, &CTWToolButton::clicked, this, &CMapForm::onBtnArrowSouthClick);
        connect(m_pBtnZoomIn, &CTWToolButton::clicked, this, &CMapForm::onBtnZoomInClick);
        connect(m_pBtnZoomOut, &CTWToolButton::clicked, this, &CMapForm::onBtnZoomOutClick);
        pBarLayout->addWidget(m_pMapControls, 0, Qt::AlignCenter);
    }

    pBarLayout->addStretch(1);
    m_pBtnClose = new CTWPushButton(CTexts::back(), m_pToolBar);
    m_pBtnClose->setAccessibleName(CTexts::back());
    connect(m_pBtnClose, &CTWPushButton::clicked, this, &CMapForm::onBtnCloseClick);
    pBarLayout->addWidget(m_pBtnClose, 0, Qt::AlignBottom);

    setBody(m_pMapView, m_pToolBar);

    m_timerTiles.setSingleShot(true);
    connect(&m_timerTiles, &QTimer::timeout, this, &CMapForm::onTilesTimeout);
    m_timerRoute.setSingleShot(true);
    connect(&m_timerRoute, &QTimer::timeout, this, &CMapForm::onRouteTimeout);
}

QString CMapForm::title() const
{
    return CTexts::appName() + QStringLiteral(" - ") +
           (m_eType == eTypePosition ? CTexts::map() : CTexts::route());
}

CTWToolButton* CMapForm::addArrow(const QString& strFile, const QString& strName)
{
    CTWToolButton* pButton =
        CTWToolButton::createButton(artIcon(QStringLiteral(":/res/img/") + strFile));
    pButton->setParent(m_pMapControls);
    pButton->setAccessibleName(strName);
    pButton->setToolTip(strName);
    return pButton;
}

void CMapForm::onLoadFinished(bool ok)
{
    if (!ok || m_bStarted || !m_pMapView->isPageReady())
        return;
    m_bStarted = true;
    if (m_eType == eTypePosition) {
        qDebug("CMapForm::onLoadFinished starting showing map");
        m_pMapView->showMap();
        m_timerTiles.start(CMapConfig::tilesTimeoutMs());
        return;
    }
    qDebug("CMapForm::onLoadFinished starting requesting location");
    auto* pPopup = new CMapLocationPopupForm(parentWidget(), s_pLocationEngine);
    connect(pPopup, &CMapLocationPopupForm::signalLocationGotten, this, &CMapForm::onLocationGotten,
            Qt::QueuedConnection);
    emit showForm(pPopup);
}

void CMapForm::onLocationGotten(double dLatitude, double dLongitude)
{
    qDebug("CMapForm::onLocationGotten lat = %f lon = %f", dLatitude, dLongitude);
    m_dOwnLatitude = dLatitude;
    m_dOwnLongitude = dLongitude;
    if (m_eType == eTypeRouteAndDirections) {
        m_pMapView->showRoute(dLatitude, dLongitude);
        startRouteWait();
    } else if (m_eType == eTypeRouteMap) {
        m_pMapView->showRouteMap(dLatitude, dLongitude);
        m_bIsRouteMap = true;
        m_timerTiles.start(CMapConfig::tilesTimeoutMs());
        startRouteWait();
    }
}

void CMapForm::onMapTilesLoaded()
{
    qDebug("CMapForm::onMapTilesLoaded");
    m_timerTiles.stop();
    showControls();
}

void CMapForm::onTilesTimeout()
{
    qWarning("CMapForm::onTilesTimeout no tiles after %d ms, showing the controls",
             CMapConfig::tilesTimeoutMs());
    showControls();
}

void CMapForm::showControls()
{
    if (m_eType == eTypePosition) {
        m_pMapControls->show();
    } else if (m_eType == eTypeRouteMap && m_bIsRouteMap) {
        m_pBtnSwitch->show();
        m_pMapControls->show();
    } else {
        return;
    }
    // A tap meant for something else as the controls appear does not count.
    if (!buttonsLocked())
        lockButtons();
}

void CMapForm::startRouteWait()
{
    m_timerRoute.start(CMapConfig::routeTimeoutMs() + ROUTE_WAIT_MARGIN_MS);
}

void CMapForm::onRouteLoaded()
{
    qDebug("CMapForm::onRouteLoaded m_bIsRouteMap = %d", m_bIsRouteMap);
    m_timerRoute.stop();
}

void CMapForm::onRouteTimeout()
{
    qWarning("CMapForm::onRouteTimeout no route after %d ms, giving up", m_timerRoute.interval());
    onRouteError();
}

void CMapForm::onRouteError()
{
    m_timerRoute.stop();
    emit showForm(new CTextPopupForm(parentWidget(), CTexts::routeCantBeCalculated()));
}

bool CMapForm::isTextShown() const
{
    return m_eType == eTypeRouteAndDirections || (m_eType == eTypeRouteMap && !m_bIsRouteMap);
}

void CMapForm::onBtnZoomOutClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    m_pMapView->executeMapAction(5);
}

void CMapForm::onBtnZoomInClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    m_pMapView->executeMapAction(4);
}

void CMapForm::onBtnArrowWestClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    m_pMapView->executeMapAction(3);
}

void CMapForm::onBtnArrowEastClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    m_pMapView->executeMapAction(1);
}

void CMapForm::onBtnArrowSouthClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    if (isTextShown())
        m_pMapView->pageDown();
    else
        m_pMapView->executeMapAction(2);
}

void CMapForm::onBtnArrowNorthClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    if (isTextShown())
        m_pMapView->pageUp();
    else
        m_pMapView->executeMapAction(0);
}

void CMapForm::onBtnDownClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    m_pMapView->pageDown();
}

void CMapForm::onBtnUpClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    m_pMapView->pageUp();
}

void CMapForm::onBtnSwitchRouteDirectionsClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    if (m_bIsRouteMap) {
        m_pMapView->showRouteDirections(m_dOwnLatitude, m_dOwnLongitude);
        if (!m_bDirectionsShown)
            startRouteWait();
        m_bDirectionsShown = true;
        m_bIsRouteMap = false;
        m_pMapControls->hide();
        m_pBtnSwitch->setText(CTexts::map());
        m_pBtnSwitch->setAccessibleName(CTexts::map());
    } else {
        m_pMapView->showRouteMap(m_dOwnLatitude, m_dOwnLongitude);
        m_bIsRouteMap = true;
        m_pMapControls->show();
        m_pBtnSwitch->setText(CTexts::route());
        m_pBtnSwitch->setAccessibleName(CTexts::route());
    }
}

CForm* CMapForm::formBelow() const
{
    auto* pStack = qobject_cast<QStackedWidget*>(parentWidget());
    if (!pStack)
        return nullptr;
    const int iIndex = pStack->indexOf(const_cast<CMapForm*>(this));
    return iIndex > 0 ? qobject_cast<CForm*>(pStack->widget(iIndex - 1)) : nullptr;
}

void CMapForm::onBtnCloseClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    // The form that opened the map (the message view, or the placeholder that waited for
    // the connection) goes with it.
    CForm* pParentForm = formBelow();
    emit closeForm(true, this);
    if (pParentForm)
        emit closeForm(true, pParentForm);
}

}  // namespace Dravo
