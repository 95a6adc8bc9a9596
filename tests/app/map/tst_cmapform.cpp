// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The map screens against loopback tile and route servers.
#include <signal.h>
#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QPointer>
#include <memory>

#include "capplicationstyle.h"
#include "cfakemapservers.h"
#include "cformstack.h"
#include "clocationengine.h"
#include "clogcapture.h"
#include "cmapconfig.h"
#include "cmapform.h"
#include "cmaplocationpopupform.h"
#include "cmapwebview.h"
#include "cplaceholderform.h"
#include "ctextpopupform.h"
#include "ctexts.h"
#include "ctwpushbutton.h"
#include "mapfixture.h"
#include "uiresources.h"

using namespace Dravo;
using namespace TarvikTest;

namespace {
// The message's position, and the own position of the NMEA track the route starts from.
const double kLat = 59.4420;
const double kLon = 24.7600;
const int kTilesTimeoutMs = 2500;
const int kRouteTimeoutMs = 1500;

QString dataPath(const QString& strName)
{
    return QStringLiteral(TARVIK_SOURCE_DIR "/tests/app/map/data/") + strName;
}

QString screenshotPath(const QString& strName)
{
    QDir().mkpath(QStringLiteral(TARVIK_BINARY_DIR "/screenshots"));
    return QStringLiteral(TARVIK_BINARY_DIR "/screenshots/") + strName;
}
}  // namespace

class TestMapForm : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Dravo::Test::CLogCapture> m_pLog;
    CFakeTileServer m_tiles;
    CFakeRouteServer m_routes;
    CFormStack* m_pStack = nullptr;
    CLocationEngine* m_pEngine = nullptr;

    // Opens a map form over a stand-in for the message view.
    CMapForm* openMap(int iType)
    {
        m_pStack->showForm(new CPlaceholderForm(m_pStack, QStringLiteral("view"), QString()));
        CTarvik tarvik;
        tarvik.setLatitude(kLat);
        tarvik.setLongitude(kLon);
        auto* pForm = new CMapForm(m_pStack, tarvik, iType);
        m_pStack->showForm(pForm);
        return pForm;
    }

    // Type 2 up to the route map: the own position from the NMEA track, the route drawn.
    // bTap: the popup is tapped while it locates (the engine's first fix), which does
    // nothing.
    CMapForm* openRouteMap(bool bTap = false)
    {
        CMapForm* pForm = openMap(CMapForm::eTypeRouteMap);
        [&] {
            if (!bTap)
                return;
            QTRY_VERIFY_WITH_TIMEOUT(qobject_cast<CMapLocationPopupForm*>(m_pStack->currentForm()),
                                     10000);
            auto* pPopup = static_cast<CMapLocationPopupForm*>(m_pStack->currentForm());
            QVERIFY(!pPopup->location().isValid());
            QTest::mouseClick(pPopup->popup(), Qt::LeftButton);
        }();
        [&] {
            QTRY_VERIFY_WITH_TIMEOUT(
                m_pLog->containsPrefix(QStringLiteral("CMapForm::onLocationGotten")), 10000);
        }();
        // The location popup is gone; a failing route service may already show its popup.
        [&] {
            QTRY_VERIFY_WITH_TIMEOUT(!qobject_cast<CMapLocationPopupForm*>(m_pStack->currentForm()),
                                     10000);
        }();
        return pForm;
    }

    void clickWhenUnlocked(CForm* pForm, QAbstractButton* pButton)
    {
        QTRY_VERIFY(!pForm->buttonsLocked());
        QVERIFY(pButton->isVisible());
        QTest::mouseClick(pButton, Qt::LeftButton);
    }

    QAbstractButton* buttonNamed(QWidget* pForm, const QString& strName)
    {
        for (QAbstractButton* pButton : pForm->findChildren<QAbstractButton*>())
            if (pButton->accessibleName() == strName)
                return pButton;
        return nullptr;
    }

    void closeAll()
    {
        while (m_pStack->count() > 0)
            m_pStack->closeForm(true, m_pStack->currentForm());
    }

private Q_SLOTS:
    void initTestCase()
    {
        // After QtTest's own message handler, which would otherwise replace this one.
        m_pLog = std::make_unique<Dravo::Test::CLogCapture>(true);
        // QtTest exports QT_QTESTLIB_RUNNING, and Qt Positioning then hides the nmea plugin.
        qunsetenv("QT_QTESTLIB_RUNNING");
        initUiResources();
        CApplicationStyle::install();
        QVERIFY(m_tiles.start());
        QVERIFY(m_routes.start());
        QVERIFY(m_routes.loadRoute(dataPath(QStringLiteral("route.json"))));
        qputenv("TARVIK_PLUGIN_DIR", QByteArray(TARVIK_BINARY_DIR "/lib/tarvik"));
        qputenv("TARVIK_TILE_URL", m_tiles.tileUrl().toUtf8());
        qputenv("TARVIK_ROUTE_URL", m_routes.baseUrl().toUtf8());
        qputenv("TARVIK_NMEA_SOURCE",
                QStringLiteral(TARVIK_SOURCE_DIR "/tests/gps/data/track.nmea").toUtf8());
        CMapConfig::setTilesTimeoutMs(kTilesTimeoutMs);
        CMapConfig::setRouteTimeoutMs(kRouteTimeoutMs);
        // The track is old; its fixes count as fresh here.
        CLocationEngine::CTimings timings;
        timings.iSettleMs = 100;
        timings.iGiveUpMs = 5000;
        timings.iMaxAgeS = 500000000;
        m_pEngine = new CLocationEngine(timings);
        m_pEngine->setParent(this);
        CMapForm::setLocationEngine(m_pEngine);

        m_pStack = new CFormStack();
        m_pStack->setStyleSheet(QStringLiteral("background: black;"));
        m_pStack->resize(800, 424);
        m_pStack->show();
    }

    void cleanupTestCase()
    {
        closeAll();
        delete m_pStack;
    }

    void init()
    {
        m_tiles.setMode(CFakeTileServer::eServe);
        m_routes.setMode(CFakeRouteServer::eServe);
        m_tiles.resetCounts();
        m_routes.resetCounts();
        CMapConfig::setTilesTimeoutMs(kTilesTimeoutMs);
        qputenv("TARVIK_TILE_URL", m_tiles.tileUrl().toUtf8());
        m_pLog->clear();
    }

    void cleanup() { closeAll(); }

    void mapVariables_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("expected");  // empty: the default, with a log line
        QTest::newRow("tiles") << QByteArray("TARVIK_TILE_URL")
                               << "https://{s}.t.example/{z}/{x}/{y}.png"
                               << "https://{s}.t.example/{z}/{x}/{y}.png";
        QTest::newRow("tiles without y")
            << QByteArray("TARVIK_TILE_URL") << "https://t.example/{z}/{x}.png" << QString();
        QTest::newRow("tiles from files")
            << QByteArray("TARVIK_TILE_URL") << "file:///tmp/{z}/{x}/{y}.png" << QString();
        QTest::newRow("tiles as script")
            << QByteArray("TARVIK_TILE_URL") << "javascript:{z}{x}{y}" << QString();
        QTest::newRow("route") << QByteArray("TARVIK_ROUTE_URL") << "http://r.example/osrm//"
                               << "http://r.example/osrm";
        QTest::newRow("route with query")
            << QByteArray("TARVIK_ROUTE_URL") << "http://r.example/osrm?key=1" << QString();
        QTest::newRow("route over ftp")
            << QByteArray("TARVIK_ROUTE_URL") << "ftp://r.example" << QString();
    }

    void mapVariables()
    {
        QFETCH(QByteArray, name);
        QFETCH(QString, value);
        QFETCH(QString, expected);
        const bool bTiles = name == "TARVIK_TILE_URL";
        auto current = [&] { return bTiles ? CMapConfig::tileUrl() : CMapConfig::routeUrl(); };
        qunsetenv(name.constData());
        const QString strDefault = current();
        qputenv(name.constData(), value.toUtf8());
        QCOMPARE(current(), expected.isEmpty() ? strDefault : expected);
        QCOMPARE(m_pLog->containsPrefix(
                     QStringLiteral("CMapConfig: %1 ignored (").arg(QString::fromLatin1(name))),
                 expected.isEmpty());
        qputenv("TARVIK_ROUTE_URL", m_routes.baseUrl().toUtf8());
    }

    void positionMapShowsTilesMarkerAndPans()
    {
        // The tiles, not the time-out, bring the controls, however slow the machine.
        CMapConfig::setTilesTimeoutMs(120000);
        CMapForm* pForm = openMap(CMapForm::eTypePosition);
        QTRY_VERIFY_WITH_TIMEOUT(pForm->mapControls()->isVisible(), 60000);
        QVERIFY(m_tiles.requestCount() > 0);
        QVERIFY2(m_tiles.lastUserAgent().startsWith("tarvik/1.0.5 ("),
                 m_tiles.lastUserAgent().constData());

        // Every control has a name for assistive technology.
        for (QAbstractButton* pButton : pForm->findChildren<QAbstractButton*>())
            QVERIFY2(!pButton->accessibleName().isEmpty(), qPrintable(pButton->objectName()));

        QTest::qWait(300);  // the last tiles paint
        const QImage shot = pForm->grab().toImage();
        shot.save(screenshotPath(QStringLiteral("map-position.png")));
        CMapWebView* pView = pForm->mapView();
        const QRect viewArea(pView->mapTo(pForm, QPoint(0, 0)), pView->size());
        // Street-map tiles fill the view: their land and street colours dominate.
        const int iArea = viewArea.width() * viewArea.height();
        QVERIFY2(countColour(shot, viewArea, CFakeTileServer::landColour(), 6) > iArea / 5,
                 "no tiles in the view");
        QVERIFY(countColour(shot, viewArea, CFakeTileServer::streetColour(), 6) > iArea / 20);
        // Leaflet's blue marker just above the centre, where the message's position is.
        const QPoint centre = viewArea.center();
        QVERIFY2(countColour(shot, QRect(centre.x() - 14, centre.y() - 42, 28, 42),
                             QColor(0x2a, 0x81, 0xcb), 40) > 40,
                 "no marker at the centre");

        // Arrows and zoom drive the page's map.
        auto zoom = [&] { return evalJs(pView, QStringLiteral("map.getZoom()")).toInt(); };
        auto centreLat = [&] {
            return evalJs(pView, QStringLiteral("map.getCenter().lat")).toDouble();
        };
        auto centreLon = [&] {
            return evalJs(pView, QStringLiteral("map.getCenter().lng")).toDouble();
        };
        QCOMPARE(zoom(), 14);

        // Wheel turns and a double click over the map move nothing: the view refuses them,
        // and the page's own handlers are off should one get through.
        const double dLat0 = centreLat();
        const double dLon0 = centreLon();
        for (int i = 0; i < 3; ++i) {
            const QPointF at(pView->width() / 4, pView->height() / 4);
            QWheelEvent wheel(at, pView->mapToGlobal(at), QPoint(), QPoint(0, 120), Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            QApplication::sendEvent(pView, &wheel);
        }
        QCOMPARE(evalJs(pView, QStringLiteral(
                                   "['dragging', 'touchZoom', 'scrollWheelZoom', 'doubleClickZoom',"
                                   " 'boxZoom', 'keyboard', 'tap'].filter(function (h) {"
                                   "  return map[h] && map[h].enabled(); }).join()"))
                     .toString(),
                 QString());
        // Leaflet zooms a short debounce after a wheel event; a page timer started later
        // fires after it.
        evalJs(pView,
               QStringLiteral(
                   "(function () { var c = map.getContainer();"
                   "  var at = { bubbles: true, cancelable: true, clientX: 100, clientY: 80 };"
                   "  c.dispatchEvent(new WheelEvent('wheel', Object.assign({ deltaY: -600 },"
                   "                                                        at)));"
                   "  c.dispatchEvent(new MouseEvent('dblclick', at));"
                   "  window.inputSettled = false;"
                   "  setTimeout(function () { window.inputSettled = true; }, 200); })()"));
        QTRY_VERIFY(evalJs(pView, QStringLiteral("window.inputSettled")).toBool());
        QCOMPARE(zoom(), 14);
        QCOMPARE(centreLat(), dLat0);
        QCOMPARE(centreLon(), dLon0);

        clickWhenUnlocked(pForm, buttonNamed(pForm, CTexts::zoomIn()));
        QTRY_COMPARE(zoom(), 15);
        clickWhenUnlocked(pForm, buttonNamed(pForm, CTexts::zoomOut()));
        QTRY_COMPARE(zoom(), 14);
        double dLat = centreLat();
        clickWhenUnlocked(pForm, buttonNamed(pForm, CTexts::panNorth()));
        QTRY_VERIFY(centreLat() > dLat + 0.001);
        dLat = centreLat();
        clickWhenUnlocked(pForm, buttonNamed(pForm, CTexts::panSouth()));
        QTRY_VERIFY(centreLat() < dLat - 0.001);
        double dLon = centreLon();
        clickWhenUnlocked(pForm, buttonNamed(pForm, CTexts::panEast()));
        QTRY_VERIFY(centreLon() > dLon + 0.001);
        dLon = centreLon();
        clickWhenUnlocked(pForm, buttonNamed(pForm, CTexts::panWest()));
        QTRY_VERIFY(centreLon() < dLon - 0.001);
        // A second click within the button lock does nothing. The lock ends on a timer, which
        // cannot run between two clicks sent without the event loop; the page runs the
        // scripts in order, so the zoom read after them sees both clicks' effect.
        QTRY_VERIFY(!pForm->buttonsLocked());
        QTest::mouseClick(buttonNamed(pForm, CTexts::zoomIn()), Qt::LeftButton);
        QTest::mouseClick(buttonNamed(pForm, CTexts::zoomIn()), Qt::LeftButton);
        QCOMPARE(zoom(), 15);

        // Back closes the map and the form that opened it; the helper and every process
        // it started end with the map.
        const QList<qint64> lstStarted = descendants(QCoreApplication::applicationPid());
        QVERIFY(lstStarted.contains(pView->helperProcessId()));
        QCOMPARE(m_pStack->count(), 2);
        clickWhenUnlocked(pForm, buttonNamed(pForm, CTexts::back()));
        QTRY_COMPARE(m_pStack->count(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(
            std::none_of(
                lstStarted.begin(), lstStarted.end(),
                [](qint64 pid) { return QFile::exists(QStringLiteral("/proc/%1").arg(pid)); }),
            10000);
    }

    // The page cannot be navigated away, and what it says reaches the client's log as one
    // line.
    void pageStaysAndItsTextsStayOneLine()
    {
        CMapForm* pForm = openMap(CMapForm::eTypePosition);
        QTRY_VERIFY_WITH_TIMEOUT(pForm->mapControls()->isVisible(), kTilesTimeoutMs + 2000);
        CMapWebView* pView = pForm->mapView();
        const QString strAway = m_tiles.baseUrl() + QStringLiteral("/away");
        evalJs(pView, QStringLiteral("location.href = '%1/scripted';").arg(strAway));
        evalJs(pView, QStringLiteral("var a = document.createElement('a'); a.href = '%1/link';"
                                     "document.body.appendChild(a); a.click();")
                          .arg(strAway));
        auto refused = [&](const char* pszPath) {
            return !m_pLog->lines()
                        .filter(QStringLiteral("CMapPage: navigation refused"))
                        .filter(strAway + QLatin1String(pszPath))
                        .isEmpty();
        };
        QTRY_VERIFY(refused("/scripted"));
        QTRY_VERIFY(refused("/link"));
        QCOMPARE(evalJs(pView, QStringLiteral("typeof map")).toString(), QStringLiteral("object"));
        for (const QByteArray& path : m_tiles.paths())
            QVERIFY2(!path.contains("away"), path.constData());

        evalJs(pView, QStringLiteral("jsEventsListener.onRouteError('x\\nCMapForm::forged');"));
        QTRY_VERIFY(m_pLog->containsPrefix(QStringLiteral("CMapWebView::onRouteError: x")));
        QVERIFY(m_pLog->contains(QStringLiteral("CMapWebView::onRouteError: x CMapForm::forged")));
    }

    void routeMapAndDirections()
    {
        CMapForm* pForm = openRouteMap(true);
        QVERIFY(m_pLog->containsPrefix(
            QStringLiteral("CMapLocationPopupForm::onLocation: valid location gotten lat=59.43")));
        QTRY_VERIFY_WITH_TIMEOUT(pForm->switchButton()->isVisible(), 10000);
        QTRY_VERIFY_WITH_TIMEOUT(
            m_pLog->contains(QStringLiteral("CMapForm::onRouteLoaded m_bIsRouteMap = 1")), 5000);
        QVERIFY(pForm->mapControls()->isVisible());
        QCOMPARE(m_routes.routeRequests(), 1);
        // The client asks for the route from the own position to the message's.
        QVERIFY2(
            m_routes.paths().value(0).startsWith("/route/v1/driving/24.7453,59.437;24.76,59.442?"),
            m_routes.paths().value(0).constData());
        QCOMPARE(m_routes.lastUserAgent().left(14), QByteArray("tarvik/1.0.5 ("));

        QTest::qWait(300);
        const QImage shot = pForm->grab().toImage();
        shot.save(screenshotPath(QStringLiteral("map-route.png")));
        CMapWebView* pView = pForm->mapView();
        const QRect viewArea(pView->mapTo(pForm, QPoint(0, 0)), pView->size());
        QVERIFY2(countColour(shot, viewArea, QColor(0xff, 0x2d, 0x6f), 30) > 300, "no route line");
        QVERIFY(countColour(shot, viewArea, CFakeTileServer::landColour(), 6) > 1000);

        // Directions: the same answer, no second request; the text is the library's.
        clickWhenUnlocked(pForm, pForm->switchButton());
        QTRY_COMPARE(pForm->switchButton()->text(), CTexts::map());
        QVERIFY(!pForm->mapControls()->isVisible());
        QTRY_COMPARE_WITH_TIMEOUT(
            m_pLog->count(QStringLiteral("CMapForm::onRouteLoaded m_bIsRouteMap = 0")), 1, 5000);
        QFile expected(dataPath(QStringLiteral("route_expected.txt")));
        QVERIFY(expected.open(QIODevice::ReadOnly));
        const QStringList lstExpected =
            QString::fromUtf8(expected.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        const QStringList lstShown =
            evalJs(pView,
                   QStringLiteral("Array.from(document.querySelectorAll('#route .instruction'))"
                                  ".map(function (e) { return e.textContent; })"))
                .toStringList();
        QCOMPARE(lstShown, lstExpected);
        // Distances and durations: the rounding picks the unit; the units are the client's.
        const QString strTable = QStringLiteral(
            "[formatDistance(994), formatDistance(996), formatDistance(1549),"
            " formatDistance(9960), formatDistance(12345), formatDuration(30),"
            " formatDuration(3720)].join('|')");
        QCOMPARE(evalJs(pView, strTable).toString(),
                 QStringLiteral("990 m|1.0 km|1.5 km|10 km|12 km|1 min|1 h 2 min"));
        evalJs(pView, QStringLiteral("tarvikConfig.units = { m: '%1 M', km: '%1 KM', min: '%1 "
                                     "MIN', h: '%1 H %2 MIN', decimalPoint: ',' };"));
        QCOMPARE(evalJs(pView, strTable).toString(),
                 QStringLiteral("990 M|1,0 KM|1,5 KM|10 KM|12 KM|1 MIN|1 H 2 MIN"));
        // A street name with markup in it stays text.
        QCOMPARE(
            evalJs(pView, QStringLiteral("document.querySelectorAll('#route b').length")).toInt(),
            0);
        QTest::qWait(200);
        pForm->grab().save(screenshotPath(QStringLiteral("map-directions.png")));

        // Page down and up on the directions; up at the top stays at the top.
        m_pStack->resize(800, 200);
        QTRY_VERIFY(evalJs(pView, QStringLiteral(
                                      "document.documentElement.scrollHeight > window.innerHeight"))
                        .toBool());
        auto scrollY = [&] { return evalJs(pView, QStringLiteral("window.scrollY")).toInt(); };
        clickWhenUnlocked(pForm, pForm->switchButton());  // back to the map ...
        QTRY_VERIFY(pForm->isRouteMap());
        clickWhenUnlocked(pForm, pForm->switchButton());  // ... and to the directions again
        QTRY_VERIFY(!pForm->isRouteMap());
        QTRY_VERIFY(!pForm->buttonsLocked());
        pForm->onBtnArrowSouthClick();
        const int iMaxScroll =
            evalJs(pView,
                   QStringLiteral("document.documentElement.scrollHeight - window.innerHeight"))
                .toInt();
        QTRY_COMPARE(scrollY(), qMin(pView->height() - 10, iMaxScroll));
        QTRY_VERIFY(!pForm->buttonsLocked());
        pForm->onBtnArrowNorthClick();
        QTRY_COMPARE(scrollY(), 0);
        QTRY_VERIFY(!pForm->buttonsLocked());
        pForm->onBtnArrowNorthClick();
        QTest::qWait(200);
        QCOMPARE(scrollY(), 0);
        m_pStack->resize(800, 424);
        QCOMPARE(m_routes.routeRequests(), 1);
    }

    // No own position: the popup says so instead of starting a route from nowhere, and
    // only then does a tap close it.
    void locationPopupWithoutFix()
    {
        auto* pPopup = new CMapLocationPopupForm(m_pStack, m_pEngine);
        m_pStack->showForm(pPopup);
        QSignalSpy gotten(pPopup, &CMapLocationPopupForm::signalLocationGotten);
        QSignalSpy closed(pPopup, &CForm::closeForm);
        pPopup->onLocation(CLocation());
        QCOMPARE(pPopup->text(), CTexts::unableToDetermineLocation());
        QTest::mouseClick(pPopup->popup(), Qt::LeftButton);
        QCOMPARE(closed.size(), 1);
        QCOMPARE(gotten.size(), 0);
    }

    void routeFailureShowsPopup_data()
    {
        QTest::addColumn<int>("mode");
        QTest::newRow("http error") << int(CFakeRouteServer::eHttpError);
        QTest::newRow("garbage json") << int(CFakeRouteServer::eGarbage);
        QTest::newRow("hang") << int(CFakeRouteServer::eHang);
    }

    void routeFailureShowsPopup()
    {
        QFETCH(int, mode);
        m_routes.setMode(CFakeRouteServer::eMode(mode));
        openRouteMap();
        QTRY_VERIFY_WITH_TIMEOUT(qobject_cast<CTextPopupForm*>(m_pStack->currentForm()),
                                 kRouteTimeoutMs + 2000);
        QCOMPARE(static_cast<CTextPopupForm*>(m_pStack->currentForm())->text(),
                 CTexts::routeCantBeCalculated());
        QVERIFY(m_pLog->contains(QStringLiteral("CMapWebView::onRouteError: route failed")));
        QCOMPARE(m_routes.routeRequests(), 1);
    }

    void tileFailureKeepsFormUsable_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("refused");
        QTest::addColumn<bool>("timesOut");
        QTest::newRow("connection refused") << int(CFakeTileServer::eServe) << true << false;
        QTest::newRow("not found") << int(CFakeTileServer::eNotFound) << false << false;
        QTest::newRow("hang") << int(CFakeTileServer::eHang) << false << true;
    }

    void tileFailureKeepsFormUsable()
    {
        QFETCH(int, mode);
        QFETCH(bool, refused);
        QFETCH(bool, timesOut);
        m_tiles.setMode(CFakeTileServer::eMode(mode));
        if (refused)
            qputenv("TARVIK_TILE_URL", "http://127.0.0.1:1/{z}/{x}/{y}.png");
        else  // not the tiles cached by the earlier maps
            qputenv("TARVIK_TILE_URL", (m_tiles.tileUrl() + QStringLiteral("?uncached")).toUtf8());
        CMapForm* pForm = openMap(CMapForm::eTypePosition);
        QTRY_VERIFY_WITH_TIMEOUT(pForm->mapControls()->isVisible(), kTilesTimeoutMs + 2000);
        QCOMPARE(m_pLog->containsPrefix(QStringLiteral("CMapForm::onTilesTimeout")), timesOut);
        clickWhenUnlocked(pForm, buttonNamed(pForm, CTexts::back()));
        QTRY_COMPARE(m_pStack->count(), 0);
    }

    // A helper that cannot start or that dies leaves one log line and a form that says the
    // map is unavailable and still closes.
    void helperFailureKeepsFormUsable_data()
    {
        QTest::addColumn<bool>("missing");
        QTest::newRow("missing") << true;
        QTest::newRow("killed") << false;
    }

    void helperFailureKeepsFormUsable()
    {
        QFETCH(bool, missing);
        if (missing)
            qputenv("TARVIK_PLUGIN_DIR", QByteArray(TARVIK_BINARY_DIR "/no-such-dir"));
        CMapForm* pForm = openMap(CMapForm::eTypePosition);
        qputenv("TARVIK_PLUGIN_DIR", QByteArray(TARVIK_BINARY_DIR "/lib/tarvik"));
        CMapWebView* pView = pForm->mapView();
        if (!missing) {
            QTRY_VERIFY_WITH_TIMEOUT(pForm->mapControls()->isVisible(), kTilesTimeoutMs + 2000);
            QVERIFY(!pView->frame().isNull());
            QCOMPARE(::kill(pid_t(pView->helperProcessId()), SIGKILL), 0);
        }
        const QString strLine =
            QStringLiteral("CMapWebView: the map view helper is not running, no map: ");
        QTRY_VERIFY(m_pLog->containsPrefix(strLine));
        QCOMPARE(m_pLog->lines().filter(strLine).size(), 1);
        QCOMPARE(pView->failureText(), CTexts::mapUnavailable());
        QVERIFY(pView->frame().isNull());
        QVERIFY(!pView->isBusy());
        pForm->onBtnZoomInClick();  // goes nowhere, harms nothing
        clickWhenUnlocked(pForm, buttonNamed(pForm, CTexts::back()));
        QTRY_COMPARE(m_pStack->count(), 0);
        QTRY_VERIFY(descendants(QCoreApplication::applicationPid()).isEmpty());
    }
};

TARVIK_MAP_TEST_MAIN(TestMapForm)
#include "tst_cmapform.moc"
