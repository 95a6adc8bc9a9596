// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The view that shows a page's pictures: its input filters, its busy state and its failure
// text.
#include <QMouseEvent>

#include "ctwwebview.h"
#include "mapfixture.h"
#include "uiresources.h"

using namespace Dravo;
using namespace TarvikTest;

class TestWebView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { initUiResources(); }

    // What the map's filter refuses: every action that would move the map or navigate
    // the page; a context menu request passes.
    void blockAllRefusesInput_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("refused");
        for (QEvent::Type type :
             {QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::KeyPress, QEvent::Wheel,
              QEvent::TouchBegin, QEvent::TouchUpdate, QEvent::NativeGesture, QEvent::DragEnter,
              QEvent::DragMove, QEvent::Drop})
            QTest::newRow(qPrintable(QString::number(int(type)))) << int(type) << true;
        QTest::newRow("context menu") << int(QEvent::ContextMenu) << false;
    }

    void blockAllRefusesInput()
    {
        QFETCH(int, type);
        QFETCH(bool, refused);
        CTWWebView::CBlockAllUserActionsEventFilter filter(nullptr);
        QWidget target;
        QEvent event{QEvent::Type(type)};
        QCOMPARE(filter.eventFilter(&target, &event), refused);
    }

    // A left-button drag passes as press and release without the moves between them; a
    // press with another button does not arm the filter.
    void kineticFilterSwallowsDragMoves()
    {
        CTWWebView::CKineticScrollEventFilter filter(nullptr);
        auto mouse = [&](QEvent::Type type, Qt::MouseButton button) {
            QMouseEvent event(type, QPointF(10, 10), QPointF(10, 10), button, button,
                              Qt::NoModifier);
            return filter.eventFilter(nullptr, &event);
        };
        QVERIFY(!mouse(QEvent::MouseButtonPress, Qt::RightButton));
        QVERIFY(!mouse(QEvent::MouseMove, Qt::NoButton));
        QVERIFY(!mouse(QEvent::MouseButtonPress, Qt::LeftButton));
        QVERIFY(mouse(QEvent::MouseMove, Qt::NoButton));
        QVERIFY(!mouse(QEvent::MouseButtonRelease, Qt::LeftButton));
        QVERIFY(!mouse(QEvent::MouseMove, Qt::NoButton));
    }

    // While a page loads only the animation shows, black around it, and taps are refused;
    // then the page's picture; a failure text replaces the picture.
    void busyThenPictureThenFailure()
    {
        CTWWebView view(nullptr, CTWWebView::eFilterNone);
        view.resize(200, 150);
        QImage picture(view.size(), QImage::Format_ARGB32_Premultiplied);
        picture.fill(QColor(0x20, 0xc0, 0x40));
        emit view.loadStarted();
        view.setFrame(picture);
        QVERIFY(view.isBusy());
        QMouseEvent tap(QEvent::MouseButtonPress, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton,
                        Qt::LeftButton, Qt::NoModifier);
        QVERIFY(!QApplication::sendEvent(&view, &tap));
        QImage shot = view.grab().toImage();
        QVERIFY(countColour(shot, shot.rect(), Qt::black, 4) > 200 * 150 / 2);
        QCOMPARE(countColour(shot, shot.rect(), QColor(0x20, 0xc0, 0x40), 4), 0);

        emit view.loadFinished(true);
        QVERIFY(!view.isBusy());
        shot = view.grab().toImage();
        QCOMPARE(countColour(shot, shot.rect(), QColor(0x20, 0xc0, 0x40), 4), 200 * 150);

        view.setFailureText(QStringLiteral("no map"));
        QVERIFY(view.frame().isNull());
        shot = view.grab().toImage();
        QCOMPARE(countColour(shot, shot.rect(), QColor(0x20, 0xc0, 0x40), 4), 0);
        QVERIFY(countColour(shot, shot.rect(), Qt::white, 60) > 10);
    }
};

TARVIK_MAP_TEST_MAIN(TestWebView)
#include "tst_ctwwebview.moc"
