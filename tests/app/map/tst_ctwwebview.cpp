// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What reaches a page through the web view's input filters and its busy state.
#include <QSignalSpy>

#include "cfakemapservers.h"
#include "ctwwebview.h"
#include "mapfixture.h"
#include "uiresources.h"

using namespace Dravo;
using namespace TarvikTest;

namespace {
// Counts the input events the page's document receives; the key F2 is the marker that
// ends a sequence.
const char* const kCountingPage =
    "<html><body style='margin:0;height:100%;background:#202020'><script>"
    "var counts = {mousedown: 0, mousemove: 0, mouseup: 0, keydown: 0, marker: 0};"
    "['mousedown', 'mousemove', 'mouseup', 'keydown'].forEach(function (t) {"
    "  document.addEventListener(t, function (e) {"
    "    counts[e.key === 'F2' ? 'marker' : t]++; }, true); });"
    "</script></body></html>";
}  // namespace

class TestWebView : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<CTWWebView> m_pView;

    void openCountingPage(int iFilterType)
    {
        m_pView = std::make_unique<CTWWebView>(nullptr, iFilterType);
        m_pView->resize(400, 300);
        m_pView->show();
        QSignalSpy loaded(m_pView.get(), &QWebEngineView::loadFinished);
        m_pView->setHtml(QString::fromLatin1(kCountingPage));
        QVERIFY(loaded.wait(15000));
        QTRY_VERIFY(m_pView->inputWidget());
        QVERIFY(!m_pView->isBusy());
    }

    int count(const char* pszType)
    {
        return evalJs(m_pView.get(), QStringLiteral("counts.%1").arg(QLatin1String(pszType)))
            .toInt();
    }

    void drag()
    {
        QWidget* pInput = m_pView->inputWidget();
        QTest::mousePress(pInput, Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));
        for (int i = 1; i <= 5; ++i)
            QTest::mouseMove(pInput, QPoint(50 + 20 * i, 50 + 10 * i));
        QTest::mouseRelease(pInput, Qt::LeftButton, Qt::NoModifier, QPoint(150, 100));
        QTest::keyClick(pInput, Qt::Key_A);
        // Then, with the filter taken off, the marker key. Input reaches the page in
        // order: once the marker is counted, everything before it that passed the filter
        // has been counted too.
        QObject* pFilter = m_pView->userActionsFilter();
        if (pFilter)
            pInput->removeEventFilter(pFilter);
        QTest::keyClick(pInput, Qt::Key_F2);
        QTRY_COMPARE(count("marker"), 1);
        if (pFilter)
            pInput->installEventFilter(pFilter);
    }

private Q_SLOTS:
    void initTestCase()
    {
        qunsetenv("QT_QTESTLIB_RUNNING");
        initUiResources();
    }

    void cleanup() { m_pView.reset(); }

    void dragReachesThePage_data()
    {
        QTest::addColumn<int>("filterType");
        QTest::addColumn<bool>("pressAndRelease");
        QTest::addColumn<bool>("movesWhilePressed");
        QTest::addColumn<bool>("keys");
        QTest::newRow("no filter") << int(CTWWebView::eFilterNone) << true << true << true;
        QTest::newRow("kinetic scroll")
            << int(CTWWebView::eFilterKineticScroll) << true << false << true;
        QTest::newRow("block all")
            << int(CTWWebView::eFilterBlockAllUserActions) << false << false << false;
    }

    void dragReachesThePage()
    {
        QFETCH(int, filterType);
        QFETCH(bool, pressAndRelease);
        QFETCH(bool, movesWhilePressed);
        QFETCH(bool, keys);
        openCountingPage(filterType);
        drag();
        QCOMPARE(count("mousedown"), pressAndRelease ? 1 : 0);
        QCOMPARE(count("mouseup"), pressAndRelease ? 1 : 0);
        QCOMPARE(count("mousemove") > 0, movesWhilePressed);
        QCOMPARE(count("keydown") > 0, keys);

        // Once the button is up, moves pass the kinetic filter again; a press with another
        // button does not arm it.
        if (filterType == CTWWebView::eFilterKineticScroll) {
            QWidget* pInput = m_pView->inputWidget();
            QTest::mousePress(pInput, Qt::RightButton, Qt::NoModifier, QPoint(60, 60));
            QTest::mouseMove(pInput, QPoint(90, 90));
            QTest::mouseMove(pInput, QPoint(120, 110));
            QTRY_VERIFY(count("mousemove") > 0);
            QTest::mouseRelease(pInput, Qt::RightButton, Qt::NoModifier, QPoint(120, 110));
        }
    }

    // What the map's filter refuses beyond the mouse and keys above: wheel turns, touches,
    // gestures and drops would move the map or navigate the page.
    void blockAllRefusesOtherInput_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("wheel") << int(QEvent::Wheel);
        QTest::newRow("touch begin") << int(QEvent::TouchBegin);
        QTest::newRow("touch update") << int(QEvent::TouchUpdate);
        QTest::newRow("native gesture") << int(QEvent::NativeGesture);
        QTest::newRow("drag enter") << int(QEvent::DragEnter);
        QTest::newRow("drag move") << int(QEvent::DragMove);
        QTest::newRow("drop") << int(QEvent::Drop);
    }

    void blockAllRefusesOtherInput()
    {
        QFETCH(int, type);
        CTWWebView::CBlockAllUserActionsEventFilter filter(nullptr);
        QWidget target;
        QEvent event{QEvent::Type(type)};
        QVERIFY(filter.eventFilter(&target, &event));
    }

    void tapsDoNothingWhileLoading()
    {
        openCountingPage(CTWWebView::eFilterNone);
        // A navigation to a server that never answers keeps the view busy; the old page is
        // still the one taps would reach.
        CFakeTileServer hanging;
        hanging.setMode(CFakeTileServer::eHang);
        QVERIFY(hanging.start());
        m_pView->load(QUrl(hanging.baseUrl() + QStringLiteral("/slow")));
        QTRY_VERIFY(m_pView->isBusy());
        QWidget* pInput = m_pView->inputWidget();
        QTest::mouseClick(pInput, Qt::LeftButton, Qt::NoModifier, QPoint(40, 40));
        // While busy only the animation shows: black with the spinner's frame in the middle.
        const QImage busy = m_pView->grab().toImage();
        QVERIFY(countColour(busy, busy.rect(), Qt::black, 4) > busy.width() * busy.height() / 2);

        m_pView->stop();
        QTRY_VERIFY(!m_pView->isBusy());
        // The marker key comes after the click: once it is counted, so is the click if it
        // went through.
        QTest::keyClick(pInput, Qt::Key_F2);
        QTRY_COMPARE(count("marker"), 1);
        QCOMPARE(count("mousedown"), 0);
        QTest::mouseClick(pInput, Qt::LeftButton, Qt::NoModifier, QPoint(40, 40));
        QTRY_COMPARE(count("mousedown"), 1);
    }
};

TARVIK_WEBENGINE_TEST_MAIN(TestWebView)
#include "tst_ctwwebview.moc"
