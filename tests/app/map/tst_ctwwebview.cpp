// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What reaches a page through the web view's input filters and its busy state.
#include <QContextMenuEvent>
#include <QSignalSpy>

#include "cfakemapservers.h"
#include "ctwwebview.h"
#include "mapfixture.h"
#include "uiresources.h"

using namespace Dravo;
using namespace TarvikTest;

namespace {
// Counts the input events the page's document receives.
const char* const kCountingPage =
    "<html><body style='margin:0;height:100%;background:#202020'><script>"
    "var counts = {mousedown: 0, mousemove: 0, mouseup: 0, keydown: 0};"
    "Object.keys(counts).forEach(function (t) {"
    "  document.addEventListener(t, function () { counts[t]++; }, true); });"
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
        QTest::qWait(300);
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
        QTRY_COMPARE(count("mousedown"), pressAndRelease ? 1 : 0);
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
        // A long press's context menu request is not among the blocked actions.
        if (filterType == CTWWebView::eFilterBlockAllUserActions) {
            QContextMenuEvent menu(QContextMenuEvent::Mouse, QPoint(10, 10), QPoint(10, 10));
            QVERIFY(!m_pView->userActionsFilter()->eventFilter(m_pView->inputWidget(), &menu));
        }
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
        QTest::qWait(300);
        // While busy only the animation shows: black with the spinner's frame in the middle.
        const QImage busy = m_pView->grab().toImage();
        QVERIFY(countColour(busy, busy.rect(), Qt::black, 4) > busy.width() * busy.height() / 2);
        QCOMPARE(count("mousedown"), 0);

        m_pView->stop();
        QTRY_VERIFY(!m_pView->isBusy());
        QTest::mouseClick(pInput, Qt::LeftButton, Qt::NoModifier, QPoint(40, 40));
        QTRY_COMPARE(count("mousedown"), 1);
    }
};

TARVIK_WEBENGINE_TEST_MAIN(TestWebView)
#include "tst_ctwwebview.moc"
