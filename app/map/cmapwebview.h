// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QHash>
#include <QPointer>
#include <QVariant>
#include <functional>

#include "clocation.h"
#include "ctwwebview.h"

class QLocalSocket;
class QProcess;

namespace Dravo {

// Shows a position (":/res/map.html") or a route to it (":/res/route.html") and drives
// the page with short script calls; the page answers through jsEventsListener. The page
// runs in the map view helper (tarvik-mapview), a process started for this view alone
// and ended with it, so that Qt WebEngine never enters the client; the view shows the
// pictures the helper sends. Every tap, drag and key is refused: the map moves only
// through the form's buttons. When the helper cannot start or ends early, the view says
// that the map is unavailable, with one log line.
class CMapWebView : public CTWWebView
{
    Q_OBJECT
public:
    CMapWebView(const CLocation& location, bool bIsRouteMap, QWidget* parent);
    ~CMapWebView() override;

    void showMap();
    void showRoute(double dLatitude, double dLongitude);
    void showRouteMap(double dLatitude, double dLongitude);
    void showRouteDirections(double dLatitude, double dLongitude);
    void executeMapAction(int iActionType);
    void pageDown();
    void pageUp();
    // Runs a script in the page and hands its value to result; an invalid value when the
    // helper is gone.
    void runJavaScript(const QString& strScript,
                       const std::function<void(const QVariant&)>& result);

    bool isRouteMap() const { return m_bIsRouteMap; }
    const CLocation& location() const { return m_location; }
    // True once the page has loaded and can take calls; calls made before wait for it.
    bool isPageReady() const { return m_bPageReady; }
    // The helper's process id; 0 when it is not running.
    qint64 helperProcessId() const;
    // The exact script texts of the map actions; an empty text for unknown actions.
    static QString mapActionScript(int iActionType);

signals:
    void signalRouteError();
    void signalRouteLoaded();
    void signalMapTilesLoaded();

public slots:
    void loadHtml();
    void onLoadFinished(bool ok);
    void resizeMap();
    void onRouteError(const QString& strText);
    void onRouteLoaded();
    void onMapTilesLoaded();

protected:
    void resizeEvent(QResizeEvent* pEvent) override;

private:
    void startHelper();
    void onHelperMessages();
    void onHelperGone(const QString& strReason);
    void evaluate(const QString& strScript);
    void showRouteScript(const char* pszFunction, double dLatitude, double dLongitude);

    CLocation m_location;
    bool m_bIsRouteMap;
    bool m_bPageReady;
    bool m_bLoadReported;
    QPointer<QProcess> m_pProcess;
    QLocalSocket* m_pSocket;
    quint32 m_iLastEvaluation;
    QHash<quint32, std::function<void(const QVariant&)>> m_mapResults;
};

}  // namespace Dravo
