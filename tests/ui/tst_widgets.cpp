// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QtTest>

#include "ctwlabel.h"
#include "ctwlistview.h"
#include "ctwstackedwidget.h"
#include "ctwtoolbutton.h"
#include "ctwwidget.h"
#include "uiresources.h"

using namespace Dravo;

namespace {

const QRgb BRUSH = 0xFF2040A0;
const QRgb GREEN = 0xFF00FF00;
const QRgb MAGENTA = 0xFFFF00FF;

QImage grabbed(QWidget& widget)
{
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

// 10 x 10 with stretch column 5 and stretch row 5: green, with a magenta bottom-right corner.
CSkin testSkin()
{
    QImage image(10, 10, QImage::Format_ARGB32);
    image.fill(GREEN);
    for (int i = 0; i < 10; ++i) {
        image.setPixel(i, 0, i == 5 ? CSkin::MARKER : 0x00000000);
        image.setPixel(0, i, i == 5 ? CSkin::MARKER : 0x00000000);
    }
    for (int y = 6; y < 10; ++y)
        for (int x = 6; x < 10; ++x)
            image.setPixel(x, y, MAGENTA);
    return CSkin(image);
}

template <typename W>
void checkBusyLifecycle()
{
    W widget;
    CAnimation* pAnimation = widget.animation();
    QSignalSpy startSpy(pAnimation, &CAnimation::started);
    QSignalSpy stopSpy(pAnimation, &CAnimation::stopped);
    widget.setBusy(false);
    widget.setBusy(true);
    widget.setBusy(true);
    QVERIFY(widget.isBusy());
    QCOMPARE(startSpy.count(), 1);
    QMetaObject::invokeMethod(pAnimation, "onTimeout", Qt::DirectConnection);
    QCOMPARE(pAnimation->currentFrame(), 1);
    widget.setBusy(false);
    widget.setBusy(false);
    QVERIFY(!widget.isBusy());
    QCOMPARE(stopSpy.count(), 1);
    QCOMPARE(pAnimation->currentFrame(), 0);
}

// Frame 1 of the busy strip must show centred at its own size, clipped rather than moved when
// the widget is smaller, over whatever the widget draws.
template <typename W>
void checkBusyPainting(W& widget, const QSize& size)
{
    widget.resize(size);
    widget.setBrush(QColor::fromRgb(BRUSH));
    widget.setBusy(true);
    QMetaObject::invokeMethod(widget.animation(), "onTimeout", Qt::DirectConnection);
    const QImage image = grabbed(widget);
    const QImage strip =
        QImage(CAnimation::PROGRESS_ANIMATION.m_strImage).convertToFormat(QImage::Format_RGB32);
    const int x0 = (size.width() - 40) / 2;
    const int y0 = (size.height() - 40) / 2;
    for (int y = qMax(0, y0); y < qMin(size.height(), y0 + 40); ++y)
        for (int x = qMax(0, x0); x < qMin(size.width(), x0 + 40); ++x)
            QCOMPARE(image.pixel(x, y), strip.pixel(40 + x - x0, y - y0));
    if (x0 > 0 && y0 > 0)
        QCOMPARE(image.pixel(0, 0), BRUSH);
}

}  // namespace

class tst_Widgets : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { initUiResources(); }

    void busyLifecycle()
    {
        checkBusyLifecycle<CTWWidget>();
        checkBusyLifecycle<CTWLabel>();
        checkBusyLifecycle<CTWListView>();
    }

    void busyPainting_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("roomy") << QSize(120, 90);
        QTest::newRow("odd size") << QSize(101, 61);
        QTest::newRow("narrower than a frame") << QSize(21, 80);
        QTest::newRow("lower than a frame") << QSize(90, 15);
    }

    void busyPainting()
    {
        QFETCH(QSize, size);
        CTWWidget widget;
        checkBusyPainting(widget, size);
        // The label's text lies under the indicator.
        CTWLabel label(
            QStringLiteral("<div style='background:#ffffff'>WWWWWWWWWWWWWWWWWWWW</div>"));
        label.setTextFormat(Qt::RichText);
        label.setAlignment(Qt::AlignCenter);
        checkBusyPainting(label, size);
    }

    void skinFollowsSizeOrFallsBackToBrush()
    {
        CTWWidget widget;
        widget.resize(30, 20);
        widget.show();
        QVERIFY(QTest::qWaitForWindowExposed(&widget));
        widget.setBrush(QColor::fromRgb(BRUSH));
        widget.setSkin(CSkin(QStringLiteral(":/res_ui/img/transparent_bg.png")));  // no markers
        QCOMPARE(grabbed(widget).pixel(15, 10), BRUSH);

        widget.setSkin(testSkin());
        QCOMPARE(grabbed(widget).pixel(29, 19), MAGENTA);
        widget.resize(80, 50);
        // The 4 x 4 bottom-right corner moved with the size.
        const QImage image = grabbed(widget);
        QCOMPARE(QList<QRgb>({image.pixel(79, 49), image.pixel(76, 46), image.pixel(75, 46),
                              image.pixel(76, 45), image.pixel(10, 5)}),
                 QList<QRgb>({MAGENTA, MAGENTA, GREEN, GREEN, GREEN}));
    }
};

QTEST_MAIN(tst_Widgets)
#include "tst_widgets.moc"
