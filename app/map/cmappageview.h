// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QWebEnginePage>
#include <QWebEngineView>
#include <functional>

class QWebChannel;
class QWebEngineProfile;

namespace Dravo {

// The page of a map view. It loads only the view's own page: every other navigation (a
// link, a script changing location, a drop) is refused and logged, windows cannot be
// opened from script, and local content cannot read files. Its console lines reach the
// log on one line each.
class CMapPage : public QWebEnginePage
{
    Q_OBJECT
public:
    explicit CMapPage(QWebEngineProfile* pProfile);

    // The next main-frame navigation is the view's own setHtml().
    void expectOwnLoad() { m_bOwnLoad = true; }

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& strMessage,
                                  int iLine, const QString& strSource) override;

private:
    bool m_bOwnLoad;
};

// The object the pages know as jsEventsListener: it passes their callbacks on as
// signals. It has no properties; the pages call its three slots.
class CMapPageBridge : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

signals:
    void routeError(const QString& strText);
    void routeLoaded();
    void mapTilesLoaded();

public slots:
    void onRouteError(const QString& strText) { emit routeError(strText); }
    void onRouteLoaded() { emit routeLoaded(); }
    void onMapTilesLoaded() { emit mapTilesLoaded(); }
};

// The map helper's web view: runs the position page (":/res/map.html") or the route page
// (":/res/route.html") and the scripts the client sends it. Scripts sent before the page
// has loaded wait for it: they would otherwise run against an empty document.
class CMapPageView : public QWebEngineView
{
    Q_OBJECT
public:
    explicit CMapPageView(QWebEngineProfile* pProfile);

    CMapPageBridge* bridge() const { return m_pBridge; }
    bool isPageReady() const { return m_bPageReady; }
    // strConfigScript runs before the page's own scripts.
    void loadPage(bool bRoute, const QString& strConfigScript);
    // result, when given, gets the script's value.
    void runScript(const QString& strScript,
                   const std::function<void(const QVariant&)>& result = nullptr);

protected:
    void resizeEvent(QResizeEvent* pEvent) override;

private:
    void onLoadFinished(bool ok);
    void resizeMap();

    struct Pending
    {
        QString strScript;
        std::function<void(const QVariant&)> result;
    };

    bool m_bRoute;
    bool m_bPageReady;
    QList<Pending> m_lstPending;
    CMapPage* m_pPage;
    QWebChannel* m_pChannel;
    CMapPageBridge* m_pBridge;
};

}  // namespace Dravo
