#include <QtTest>

#include "ctitle.h"
#include "ctwlabel.h"
#include "ctwpopup.h"
#include "ctwstackedwidget.h"
#include "ctwtoolbar.h"
#include "ctwtoolbutton.h"
#include "ctwwidget.h"
#include "uiresources.h"

using namespace Dravo;

namespace {

const QRgb BRUSH = 0xFF2040A0;

QImage grabbed(QWidget& widget)
{
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

// The busy strip as the widgets load it.
QImage strip()
{
    return QImage(CAnimation::PROGRESS_ANIMATION.m_strImage).convertToFormat(QImage::Format_RGB32);
}

// A skin whose corners and middle differ: 10 x 10, stretch column 5, stretch row 5.
CSkin testSkin()
{
    QImage image(10, 10, QImage::Format_ARGB32);
    image.fill(0xFF00FF00);
    for (int y = 1; y < 10; ++y)
        for (int x = 6; x < 10; ++x)
            if (y > 5)
                image.setPixel(x, y, 0xFFFF00FF);  // bottom-right corner
    image.setPixel(0, 0, 0x00000000);
    for (int i = 1; i < 10; ++i) {
        image.setPixel(i, 0, i == 5 ? CSkin::MARKER : 0x00000000);
        image.setPixel(0, i, i == 5 ? CSkin::MARKER : 0x00000000);
    }
    return CSkin(image);
}

template <typename W>
void checkBusyLifecycle()
{
    W widget;
    CAnimation* pAnimation = widget.animation();
    QSignalSpy startSpy(pAnimation, &CAnimation::started);
    QSignalSpy stopSpy(pAnimation, &CAnimation::stopped);
    QVERIFY(!widget.isBusy());
    widget.setBusy(false);
    QCOMPARE(stopSpy.count(), 0);

    widget.setBusy(true);
    widget.setBusy(true);
    QVERIFY(widget.isBusy());
    QCOMPARE(startSpy.count(), 1);
    QVERIFY(pAnimation->isRunning());

    QMetaObject::invokeMethod(pAnimation, "onTimeout", Qt::DirectConnection);
    QMetaObject::invokeMethod(pAnimation, "onTimeout", Qt::DirectConnection);
    QCOMPARE(pAnimation->currentFrame(), 2);

    widget.setBusy(false);
    widget.setBusy(false);
    QCOMPARE(stopSpy.count(), 1);
    QCOMPARE(pAnimation->currentFrame(), 0);
    QVERIFY(!pAnimation->isRunning());
}

template <typename W>
void checkBusyPainting(const QSize& size)
{
    W widget;
    widget.resize(size);
    widget.setBrush(QColor::fromRgb(BRUSH));
    const QImage frames = strip();

    QImage idle = grabbed(widget);
    QCOMPARE(idle.pixel(size.width() / 2, size.height() / 2), BRUSH);

    widget.setBusy(true);
    QMetaObject::invokeMethod(widget.animation(), "onTimeout", Qt::DirectConnection);
    const QImage busy = grabbed(widget);
    const int x0 = (size.width() - 40) / 2;  // may be negative: drawn clipped, not moved
    const int y0 = (size.height() - 40) / 2;
    int iCompared = 0;
    for (int y = qMax(0, y0); y < qMin(size.height(), y0 + 40); ++y) {
        for (int x = qMax(0, x0); x < qMin(size.width(), x0 + 40); ++x) {
            // Frame 1 of the strip.
            QCOMPARE(busy.pixel(x, y), frames.pixel(40 + x - x0, y - y0));
            ++iCompared;
        }
    }
    QVERIFY(iCompared > 0);
    if (x0 > 0)
        QCOMPARE(busy.pixel(x0 - 1, size.height() / 2), BRUSH);
}

}  // namespace

class tst_Widgets : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { initUiResources(); }

    void busyLifecycleWidget() { checkBusyLifecycle<CTWWidget>(); }
    void busyLifecycleLabel() { checkBusyLifecycle<CTWLabel>(); }
    void busyPainting_data();
    void busyPainting();
    void busyIndicatorAboveLabelText();
    void skinFollowsSize();
    void skinWithoutMarkersFallsBackToBrush();
    void toolButtonIconStates();
    void toolButtonFactories();
    void stackPushPop();
    void popupReportsTaps();
    void titleText();
};

void tst_Widgets::busyPainting_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("roomy") << QSize(120, 90);
    QTest::newRow("odd size") << QSize(101, 61);
    QTest::newRow("narrower than a frame") << QSize(21, 80);
    QTest::newRow("lower than a frame") << QSize(90, 15);
}

void tst_Widgets::busyPainting()
{
    QFETCH(QSize, size);
    checkBusyPainting<CTWWidget>(size);
    if (QTest::currentTestFailed())
        return;
    checkBusyPainting<CTWLabel>(size);
}

void tst_Widgets::busyIndicatorAboveLabelText()
{
    CTWLabel label(QStringLiteral("<div style='background:#ffffff'>WWWWWWWWWWWWWWWWWWWW</div>"));
    label.setTextFormat(Qt::RichText);
    label.setAlignment(Qt::AlignCenter);
    label.resize(160, 60);
    label.setBrush(QColor::fromRgb(BRUSH));
    label.setBusy(true);
    const QImage image = grabbed(label);
    // The middle shows the strip's first frame, not the white text box under it.
    const QImage frames = strip();
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 40; ++x)
            QCOMPARE(image.pixel(60 + x, 10 + y), frames.pixel(x, y));
}

void tst_Widgets::skinFollowsSize()
{
    CTWWidget widget;
    widget.resize(30, 20);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    widget.setSkin(testSkin());
    QCOMPARE(widget.skin().scaledImage().size(), QSize(30, 20));
    QImage image = grabbed(widget);
    QCOMPARE(image.pixel(29, 19), 0xFFFF00FFu);
    QCOMPARE(image.pixel(10, 5), 0xFF00FF00u);

    widget.resize(80, 50);
    QCOMPARE(widget.skin().scaledImage().size(), QSize(80, 50));
    image = grabbed(widget);
    QCOMPARE(image.pixel(79, 49), 0xFFFF00FFu);
    QCOMPARE(image.pixel(76, 46), 0xFFFF00FFu);
    QCOMPARE(image.pixel(75, 46), 0xFF00FF00u);
    QCOMPARE(image.pixel(76, 45), 0xFF00FF00u);
}

void tst_Widgets::skinWithoutMarkersFallsBackToBrush()
{
    CTWPopup popup;
    popup.resize(50, 40);
    popup.setBrush(QColor::fromRgb(BRUSH));
    popup.setSkin(CSkin(QStringLiteral(":/res_ui/img/transparent_bg.png")));
    QVERIFY(!popup.skin().hasScaledImage());
    QCOMPARE(grabbed(popup).pixel(25, 20), BRUSH);

    popup.setSkin(CSkin(QStringLiteral(":/res_ui/img/popup_bg.png")));
    QVERIFY(popup.skin().hasScaledImage());
    QVERIFY(grabbed(popup).pixel(25, 20) != BRUSH);
}

void tst_Widgets::toolButtonIconStates()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QList<QPair<QString, QRgb>> files = {
        {"off.png", 0xFFFF0000}, {"on.png", 0xFF00FF00}, {"dis.png", 0xFF0000FF}};
    for (const auto& file : files) {
        QImage image(24, 16, QImage::Format_ARGB32);
        image.fill(file.second);
        QVERIFY(image.save(dir.filePath(file.first)));
    }
    const QIcon icon =
        CTWToolButton::createIcon(dir.path() + QLatin1Char('/'), "off.png", "on.png", "dis.png");
    CTWToolButton* pButton = CTWToolButton::createButton(icon, true, false, false);
    QScopedPointer<CTWToolButton> guard(pButton);
    pButton->resize(64, 40);
    pButton->setBrush(QColor::fromRgb(BRUSH));

    auto centre = [&]() { return grabbed(*pButton).pixel(32, 20); };
    QCOMPARE(grabbed(*pButton).pixel(2, 2), BRUSH);
    // Icon centred: 24 x 16 in 64 x 40 starts at (20, 12).
    QCOMPARE(grabbed(*pButton).pixel(20, 12), 0xFFFF0000u);
    QCOMPARE(grabbed(*pButton).pixel(19, 12), BRUSH);
    QCOMPARE(grabbed(*pButton).pixel(43, 27), 0xFFFF0000u);
    QCOMPARE(grabbed(*pButton).pixel(44, 28), BRUSH);

    pButton->setDown(true);
    QCOMPARE(centre(), 0xFF00FF00u);
    pButton->setDown(false);
    pButton->setChecked(true);
    QCOMPARE(centre(), 0xFF00FF00u);
    pButton->setEnabled(false);
    QCOMPARE(centre(), 0xFF0000FFu);
    pButton->setChecked(false);
    QCOMPARE(centre(), 0xFF0000FFu);
    pButton->setEnabled(true);
    QCOMPARE(centre(), 0xFFFF0000u);
}

void tst_Widgets::toolButtonFactories()
{
    const QIcon icon(QStringLiteral(":/res/img/arrow_north.png"));
    QScopedPointer<CTWToolButton> plain(CTWToolButton::createButton(icon));
    QVERIFY(!plain->parent());
    QCOMPARE(plain->iconSize(), QImage(":/res/img/arrow_north.png").size());
    QVERIFY(!plain->isCheckable());
    QVERIFY(!plain->autoExclusive());
    QCOMPARE(plain->focusPolicy(), Qt::NoFocus);

    QScopedPointer<CTWToolButton> focusable(CTWToolButton::createButton(icon, true, true, true));
    QVERIFY(focusable->isCheckable());
    QVERIFY(focusable->autoExclusive());
    QVERIFY(focusable->focusPolicy() != Qt::NoFocus);
    QCOMPARE(focusable->contentsMargins(), QMargins());
}

void tst_Widgets::stackPushPop()
{
    CTWStackedWidget stack;
    stack.pop();  // empty: nothing happens
    QPointer<QWidget> first = new QWidget;
    QPointer<QWidget> second = new QWidget;
    stack.push(first);
    stack.push(second);
    QCOMPARE(stack.count(), 2);
    QCOMPARE(stack.currentWidget(), second.data());
    stack.pop();
    QVERIFY(second.isNull());  // deleted at once
    QCOMPARE(stack.currentWidget(), first.data());
    stack.pop();
    QVERIFY(first.isNull());
    QCOMPARE(stack.count(), 0);
    stack.pop();
}

void tst_Widgets::popupReportsTaps()
{
    CTWPopup popup;
    popup.resize(100, 60);
    QSignalSpy pressSpy(&popup, &CTWPopup::onMousePressed);
    QSignalSpy releaseSpy(&popup, &CTWPopup::onMouseReleased);
    QTest::mousePress(&popup, Qt::LeftButton, {}, QPoint(50, 30));
    QCOMPARE(pressSpy.count(), 1);
    QCOMPARE(releaseSpy.count(), 0);
    QTest::mouseRelease(&popup, Qt::LeftButton, {}, QPoint(50, 30));
    QCOMPARE(releaseSpy.count(), 1);
}

void tst_Widgets::titleText()
{
    CTitle title;
    QCOMPARE(title.minimumHeight(), title.fontMetrics().height() + 20);
    QCOMPARE(title.maximumHeight(), title.minimumHeight());
    QVERIFY(title.skin().stretchRect().isValid());
    title.setText(QStringLiteral("Inbox"));
    QCOMPARE(title.label()->text(), QStringLiteral("<font color='white'><b>Inbox</b></font>"));
    QCOMPARE(title.label()->alignment(), Qt::AlignHCenter | Qt::AlignVCenter);
}

QTEST_MAIN(tst_Widgets)
#include "tst_widgets.moc"
