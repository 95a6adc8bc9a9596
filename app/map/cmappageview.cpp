// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cmappageview.h"

#include <QFile>
#include <QResizeEvent>
#include <QWebChannel>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QtDebug>

#include "cmapviewprotocol.h"

namespace Dravo {

using MapViewProtocol::logSafe;

namespace {
const char* const kConfigScriptName = "tarvikConfig";
}  // namespace

CMapPage::CMapPage(QWebEngineProfile* pProfile) : QWebEnginePage(pProfile), m_bOwnLoad(false)
{
    QWebEngineSettings* pSettings = settings();
    pSettings->setAttribute(QWebEngineSettings::LocalContentCanAccessFileUrls, false);
    pSettings->setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, false);
    pSettings->setAttribute(QWebEngineSettings::NavigateOnDropEnabled, false);
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
                                .arg(logSafe(url.toDisplayString()));
    return false;
}

void CMapPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level,
                                        const QString& strMessage, int iLine,
                                        const QString& strSource)
{
    qDebug().noquote() << QStringLiteral("CMapPage: console (%1) %2:%3: %4")
                              .arg(int(level))
                              .arg(logSafe(strSource))
                              .arg(iLine)
                              .arg(logSafe(strMessage));
}

CMapPageView::CMapPageView(QWebEngineProfile* pProfile)
    : m_bRoute(false),
      m_bPageReady(false),
      m_pPage(new CMapPage(pProfile)),
      m_pChannel(new QWebChannel(this)),
      m_pBridge(new CMapPageBridge(this))
{
    m_pPage->setParent(this);
    setPage(m_pPage);
    m_pPage->setBackgroundColor(Qt::black);
    setContextMenuPolicy(Qt::NoContextMenu);
    // Set before the first load; each new document connects to it from its own script.
    m_pChannel->registerObject(QStringLiteral("jsEventsListener"), m_pBridge);
    m_pPage->setWebChannel(m_pChannel);
    connect(this, &QWebEngineView::loadFinished, this, &CMapPageView::onLoadFinished);
}

void CMapPageView::loadPage(bool bRoute, const QString& strConfigScript)
{
    m_bRoute = bRoute;
    const QString strPath =
        bRoute ? QStringLiteral(":/res/route.html") : QStringLiteral(":/res/map.html");
    QString strHtml;
    QFile file(strPath);
    if (file.open(QIODevice::ReadOnly))
        strHtml = QString::fromUtf8(file.readAll());
    else
        qWarning().noquote() << "CMapPageView::loadPage cannot open " + strPath;

    // The page's settings (tile and route services, time-out, texts) exist before its
    // scripts run.
    QWebEngineScriptCollection& scripts = m_pPage->scripts();
    for (const QWebEngineScript& old : scripts.find(QLatin1String(kConfigScriptName)))
        scripts.remove(old);
    QWebEngineScript config;
    config.setName(QLatin1String(kConfigScriptName));
    config.setInjectionPoint(QWebEngineScript::DocumentCreation);
    config.setWorldId(QWebEngineScript::MainWorld);
    config.setSourceCode(strConfigScript);
    scripts.insert(config);

    m_bPageReady = false;
    m_pPage->expectOwnLoad();
    setHtml(strHtml, QUrl(QStringLiteral("qrc:/")));
}

void CMapPageView::onLoadFinished(bool)
{
    m_bPageReady = true;
    const QList<Pending> lstPending = m_lstPending;
    m_lstPending.clear();
    resizeMap();
    for (const Pending& pending : lstPending)
        runScript(pending.strScript, pending.result);
}

void CMapPageView::resizeEvent(QResizeEvent* pEvent)
{
    // The position page sizes its map division before the view's viewport changes.
    resizeMap();
    QWebEngineView::resizeEvent(pEvent);
}

void CMapPageView::resizeMap()
{
    if (!m_bRoute && m_bPageReady)
        runScript(QStringLiteral("setSize(%1,%2);").arg(width()).arg(height()));
}

void CMapPageView::runScript(const QString& strScript,
                             const std::function<void(const QVariant&)>& result)
{
    if (!m_bPageReady) {
        m_lstPending.append({strScript, result});
        return;
    }
    if (result)
        m_pPage->runJavaScript(strScript, result);
    else if (!strScript.isEmpty())
        m_pPage->runJavaScript(strScript);
}

}  // namespace Dravo
