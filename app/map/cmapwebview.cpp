// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cmapwebview.h"

#include <QFile>
#include <QResizeEvent>
#include <QTimer>
#include <QWebChannel>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QtDebug>

#include "cmapconfig.h"

namespace Dravo {

namespace {
const char* const kConfigScriptName = "tarvikConfig";
}  // namespace

CMapPage::CMapPage(QWebEngineProfile* pProfile) : QWebEnginePage(pProfile), m_bOwnLoad(false)
{
    CMapConfig::pageCreated();
    QWebEngineSettings* pSettings = settings();
    pSettings->setAttribute(QWebEngineSettings::LocalContentCanAccessFileUrls, false);
    pSettings->setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, false);
    pSettings->setAttribute(QWebEngineSettings::NavigateOnDropEnabled, false);
}

CMapPage::~CMapPage()
{
    CMapConfig::pageDestroyed();
}

bool CMapPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame)
{
    // setHtml() loads its text as a data URL.
    if (isMainFrame && m_bOwnLoad && url.scheme() == QLatin1String("data")) {
        m_bOwnLoad = false;
        return true;
    }
    qWarning().noquote() << QStringLiteral("CMapPage: navigation refused (type %1): %2")
                                .arg(int(type))
                                .arg(CMapWebView::logSafe(url.toDisplayString()));
    return false;
}

void CMapPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level,
                                        const QString& strMessage, int iLine,
                                        const QString& strSource)
{
    qDebug().noquote() << QStringLiteral("CMapPage: console (%1) %2:%3: %4")
                              .arg(int(level))
                              .arg(CMapWebView::logSafe(strSource))
                              .arg(iLine)
                              .arg(CMapWebView::logSafe(strMessage));
}

CMapPageBridge::CMapPageBridge(CMapWebView* pView) : QObject(pView), m_pView(pView) {}

void CMapPageBridge::onRouteError(const QString& strText)
{
    m_pView->onRouteError(strText);
}

void CMapPageBridge::onRouteLoaded()
{
    m_pView->onRouteLoaded();
}

void CMapPageBridge::onMapTilesLoaded()
{
    m_pView->onMapTilesLoaded();
}

CMapWebView::CMapWebView(const CLocation& location, bool bIsRouteMap, QWidget* parent)
    : CTWWebView(parent, eFilterBlockAllUserActions, new CMapPage(CMapConfig::profile())),
      m_location(location),
      m_bIsRouteMap(bIsRouteMap),
      m_bPageReady(false),
      m_pPage(static_cast<CMapPage*>(page())),
      m_pChannel(new QWebChannel(this)),
      m_pBridge(new CMapPageBridge(this))
{
    setContextMenuPolicy(Qt::NoContextMenu);
    connect(this, &QWebEngineView::loadFinished, this, &CMapWebView::onLoadFinished);
    // The channel outlives reloads; each new document connects to it again from its own
    // script.
    connect(this, &QWebEngineView::loadStarted, this,
            &CMapWebView::onJavaScriptWindowObjectCleared);
    onJavaScriptWindowObjectCleared();
    // Loaded after the constructor has returned, so that the owner's connections are made.
    QTimer::singleShot(0, this, &CMapWebView::loadHtml);
}

void CMapWebView::loadHtml()
{
    const QString strPath =
        m_bIsRouteMap ? QStringLiteral(":/res/route.html") : QStringLiteral(":/res/map.html");
    QString strHtml;
    QFile file(strPath);
    if (file.open(QIODevice::ReadOnly)) {
        strHtml = QString::fromUtf8(file.readAll());
        file.close();
    } else {
        qWarning().noquote() << "CMapWebView::loadHtml cannot open " + strPath;
    }

    // The page's settings (tile and route services, time-out) exist before its scripts run.
    QWebEngineScriptCollection& scripts = page()->scripts();
    for (const QWebEngineScript& old : scripts.find(QLatin1String(kConfigScriptName)))
        scripts.remove(old);
    QWebEngineScript config;
    config.setName(QLatin1String(kConfigScriptName));
    config.setInjectionPoint(QWebEngineScript::DocumentCreation);
    config.setWorldId(QWebEngineScript::MainWorld);
    config.setSourceCode(CMapConfig::pageConfigScript());
    scripts.insert(config);

    m_bPageReady = false;
    m_pPage->expectOwnLoad();
    setHtml(strHtml, QUrl(QStringLiteral("qrc:/")));
}

void CMapWebView::onJavaScriptWindowObjectCleared()
{
    if (!m_pChannel->registeredObjects().contains(QStringLiteral("jsEventsListener")))
        m_pChannel->registerObject(QStringLiteral("jsEventsListener"), m_pBridge);
    if (page()->webChannel() != m_pChannel)
        page()->setWebChannel(m_pChannel);
}

void CMapWebView::onLoadFinished(bool ok)
{
    qDebug("CMapWebView::onLoadFinished ok = %d", ok);
    m_bPageReady = true;
    const QStringList lstPending = m_lstPending;
    m_lstPending.clear();
    resizeMap();
    for (const QString& strScript : lstPending)
        evaluate(strScript);
}

void CMapWebView::resizeEvent(QResizeEvent* pEvent)
{
    qDebug("CMapWebView::resizeEvent size.width = %d, size.height = %d", pEvent->size().width(),
           pEvent->size().height());
    // The position page sizes its map division before the view's viewport changes.
    resizeMap();
    CTWWebView::resizeEvent(pEvent);
}

void CMapWebView::resizeMap()
{
    qDebug("CMapWebView::resizeMap size.width = %d, size.height = %d", width(), height());
    if (!m_bIsRouteMap && m_bPageReady)
        evaluate(QStringLiteral("setSize(%1,%2);").arg(width()).arg(height()));
}

void CMapWebView::showMap()
{
    qDebug("CMapWebView::showMap");
    evaluate(QStringLiteral("setSize(%1,%2);").arg(width()).arg(height()));
    evaluate(
        QStringLiteral("loadMap(%1,%2);").arg(m_location.latitude()).arg(m_location.longitude()));
}

void CMapWebView::showRouteScript(const char* pszFunction, double dLatitude, double dLongitude)
{
    qDebug("CMapWebView::showRoute");
    evaluate(QStringLiteral("%1(%2, %3, %4, %5);")
                 .arg(QLatin1String(pszFunction))
                 .arg(dLatitude)
                 .arg(dLongitude)
                 .arg(m_location.latitude())
                 .arg(m_location.longitude()));
}

void CMapWebView::showRoute(double dLatitude, double dLongitude)
{
    showRouteScript("loadRoute", dLatitude, dLongitude);
}

void CMapWebView::showRouteMap(double dLatitude, double dLongitude)
{
    showRouteScript("loadRouteMap", dLatitude, dLongitude);
}

void CMapWebView::showRouteDirections(double dLatitude, double dLongitude)
{
    showRouteScript("loadRouteDirections", dLatitude, dLongitude);
}

QString CMapWebView::mapActionScript(int iActionType)
{
    switch (iActionType) {
        case 0:
            return QStringLiteral("moveMap( 'north' );");
        case 1:
            return QStringLiteral("moveMap( 'east' );");
        case 2:
            return QStringLiteral("moveMap( 'south' );");
        case 3:
            return QStringLiteral("moveMap( 'west' );");
        case 4:
            return QStringLiteral("zoomMap( 'in' );");
        case 5:
            return QStringLiteral("zoomMap( 'out' );");
        default:
            return QString();
    }
}

QString CMapWebView::logSafe(const QString& strText)
{
    QString strSafe = strText.left(300);
    for (QChar& c : strSafe) {
        if (c.category() == QChar::Other_Control || c.category() == QChar::Separator_Line ||
            c.category() == QChar::Separator_Paragraph)
            c = QLatin1Char(' ');
    }
    return strSafe;
}

void CMapWebView::executeMapAction(int iActionType)
{
    qDebug("CMapWebView::executeMapAction actionType = %d", iActionType);
    evaluate(mapActionScript(iActionType));
}

void CMapWebView::pageDown()
{
    evaluate(QStringLiteral("window.scrollBy(0, %1);").arg(height() - 10));
}

void CMapWebView::pageUp()
{
    evaluate(QStringLiteral("window.scrollBy(0, %1);").arg(10 - height()));
}

void CMapWebView::onMapTilesLoaded()
{
    qDebug("CMapWebView::onMapTilesLoaded");
    emit signalMapTilesLoaded();
}

void CMapWebView::onRouteLoaded()
{
    qDebug("CMapWebView::onRouteLoaded");
    emit signalRouteLoaded();
}

void CMapWebView::onRouteError(const QString& strText)
{
    qDebug().noquote() << "CMapWebView::onRouteError: " + logSafe(strText);
    emit signalRouteError();
}

void CMapWebView::evaluate(const QString& strScript)
{
    // Scripts run against the map page only: before it has loaded they would run against
    // an empty document and be lost.
    if (!m_bPageReady) {
        m_lstPending << strScript;
        return;
    }
    if (!strScript.isEmpty())
        page()->runJavaScript(strScript);
}

}  // namespace Dravo
