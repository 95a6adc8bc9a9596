// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>

#include "clocation.h"
#include "ctwwebview.h"

#include <QWebEnginePage>

class QWebChannel;

namespace Dravo {

class CMapWebView;

// The page of a map view. It loads only the view's own page: every other navigation (a
// link, a script changing location, a drop) is refused and logged, windows cannot be
// opened from script, and local content cannot read files. Its console lines reach the
// log on one line each.
class CMapPage : public QWebEnginePage
{
    Q_OBJECT
public:
    explicit CMapPage(QWebEngineProfile* pProfile);
    ~CMapPage() override;

    // The next main-frame navigation is the view's own setHtml().
    void expectOwnLoad() { m_bOwnLoad = true; }

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& strMessage,
                                  int iLine, const QString& strSource) override;

private:
    bool m_bOwnLoad;
};

// The object the pages know as jsEventsListener: it hands their callbacks to the view.
// Only these three slots are published, not the view's own properties.
class CMapPageBridge : public QObject
{
    Q_OBJECT
public:
    explicit CMapPageBridge(CMapWebView* pView);

public slots:
    void onRouteError(const QString& strText);
    void onRouteLoaded();
    void onMapTilesLoaded();

private:
    CMapWebView* m_pView;
};

// Shows a position (":/res/map.html") or a route to it (":/res/route.html") and drives
// the page with short script calls; the page answers through jsEventsListener. Every tap,
// drag and key is refused: the map moves only through the form's buttons.
class CMapWebView : public CTWWebView
{
    Q_OBJECT
public:
    CMapWebView(const CLocation& location, bool bIsRouteMap, QWidget* parent);

    void showMap();
    void showRoute(double dLatitude, double dLongitude);
    void showRouteMap(double dLatitude, double dLongitude);
    void showRouteDirections(double dLatitude, double dLongitude);
    void executeMapAction(int iActionType);
    void pageDown();
    void pageUp();

    bool isRouteMap() const { return m_bIsRouteMap; }
    const CLocation& location() const { return m_location; }
    // True once the page has loaded and can take calls; calls made before wait for it.
    bool isPageReady() const { return m_bPageReady; }
    // The exact script texts of the map actions; an empty text for unknown actions.
    static QString mapActionScript(int iActionType);
    // A text from the page made fit for one log line: line breaks and other control
    // characters become spaces, and it is cut to 300 characters.
    static QString logSafe(const QString& strText);

signals:
    void signalRouteError();
    void signalRouteLoaded();
    void signalMapTilesLoaded();

public slots:
    void loadHtml();
    void onLoadFinished(bool ok);
    void resizeMap();
    void onJavaScriptWindowObjectCleared();
    void onRouteError(const QString& strText);
    void onRouteLoaded();
    void onMapTilesLoaded();

protected:
    void resizeEvent(QResizeEvent* pEvent) override;

private:
    void evaluate(const QString& strScript);
    void showRouteScript(const char* pszFunction, double dLatitude, double dLongitude);

    CLocation m_location;
    bool m_bIsRouteMap;
    bool m_bPageReady;
    QStringList m_lstPending;
    CMapPage* m_pPage;
    QWebChannel* m_pChannel;
    CMapPageBridge* m_pBridge;
};

}  // namespace Dravo
