#include <QtTest>

#include <QScrollBar>
#include <QStandardItemModel>
#include <QStringListModel>

#include "ctwlistitemdelegate.h"
#include "ctwlistview.h"
#include "uiresources.h"

using namespace Dravo;

namespace {

const QRgb BACKGROUND = 0xFFC8C8C8;

// A shown list view over an opaque, known background.
struct Fixture
{
    explicit Fixture(QAbstractItemModel* pModel, const QString& strEmpty = QString())
        : view(strEmpty)
    {
        view.setModel(pModel);
        view.setAutoFillBackground(true);
        QPalette palette = view.palette();
        palette.setColor(QPalette::Window, QColor::fromRgb(BACKGROUND));
        view.setPalette(palette);
        view.resize(240, 300);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
    }
    QImage grab() { return view.grab().toImage().convertToFormat(QImage::Format_RGB32); }
    CTWListView view;
};

bool isTextPixel(QRgb px)
{
    return qRed(px) == qGreen(px) && qGreen(px) == qBlue(px) && qRed(px) > 230;
}

int textPixels(const QImage& image, const QRect& area)
{
    int n = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            n += isTextPixel(image.pixel(x, y));
    return n;
}

bool near(QRgb a, QRgb b, int iTolerance)
{
    return qAbs(qRed(a) - qRed(b)) <= iTolerance && qAbs(qGreen(a) - qGreen(b)) <= iTolerance &&
           qAbs(qBlue(a) - qBlue(b)) <= iTolerance;
}

QStringList rows(int n)
{
    QStringList list;
    for (int i = 0; i < n; ++i)
        list << QStringLiteral("row %1").arg(i);
    return list;
}

}  // namespace

class tst_ListView : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { initUiResources(); }
    void busyStartsOnce();
    void busyRefusesTapsAndKeys();
    void wheelPassesWhileBusy();
    void busyVeilAndIndicator();
    void emptyText_data();
    void emptyText();
    void delegateRow_data();
    void delegateRow();
    void delegateSizeHintAddsMargins();
    void delegateWithoutModelData();
};

void tst_ListView::busyStartsOnce()
{
    CTWListView view(QStringLiteral("Nothing"));
    QSignalSpy startSpy(view.animation(), &CAnimation::started);
    QSignalSpy stopSpy(view.animation(), &CAnimation::stopped);
    view.setBusy(true);
    view.setBusy(true);
    QCOMPARE(startSpy.count(), 1);
    QMetaObject::invokeMethod(view.animation(), "onTimeout", Qt::DirectConnection);
    view.setBusy(false);
    view.setBusy(false);
    QCOMPARE(stopSpy.count(), 1);
    QCOMPARE(view.animation()->currentFrame(), 0);
}

void tst_ListView::busyRefusesTapsAndKeys()
{
    QStringListModel model(rows(20));
    Fixture f(&model);
    CTWListView& view = f.view;
    view.setCurrentIndex(model.index(0));
    QSignalSpy clickSpy(&view, &QAbstractItemView::clicked);
    QSignalSpy pressSpy(&view, &QAbstractItemView::pressed);
    const QPoint row3 = view.visualRect(model.index(3)).center();

    view.setBusy(true);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, row3);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, row3);
    QTest::keyClick(view.viewport(), Qt::Key_Down);
    QTest::keyClick(&view, Qt::Key_Down);
    QTest::keyClick(&view, Qt::Key_End);
    QCOMPARE(view.currentIndex().row(), 0);
    QCOMPARE(clickSpy.count(), 0);
    QCOMPARE(pressSpy.count(), 0);

    view.setBusy(false);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, row3);
    QCOMPARE(view.currentIndex().row(), 3);
    QCOMPARE(clickSpy.count(), 1);
    QTest::keyClick(&view, Qt::Key_Down);
    QCOMPARE(view.currentIndex().row(), 4);
}

void tst_ListView::wheelPassesWhileBusy()
{
    QStringListModel model(rows(200));
    Fixture f(&model);
    f.view.setBusy(true);
    QCOMPARE(f.view.verticalScrollBar()->value(), 0);
    const QPoint pos = f.view.viewport()->rect().center();
    QWheelEvent wheel(pos, f.view.viewport()->mapToGlobal(pos), QPoint(), QPoint(0, -120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(f.view.viewport(), &wheel);
    QVERIFY(f.view.verticalScrollBar()->value() > 0);
}

void tst_ListView::busyVeilAndIndicator()
{
    QStringListModel model;
    Fixture f(&model, QStringLiteral("No rows here"));
    f.view.setBusy(true);
    const QImage image = f.grab();
    const QRect area = f.view.viewport()->geometry();
    // Veil: black at alpha 150 over the background.
    const int iVeiled = qRed(BACKGROUND) * (255 - 150) / 255;
    QVERIFY(qAbs(qRed(image.pixel(area.left() + 3, area.top() + 3)) - iVeiled) <= 2);
    // Indicator: the strip's first frame, centred in the viewport.
    const QImage strip =
        QImage(CAnimation::PROGRESS_ANIMATION.m_strImage).convertToFormat(QImage::Format_RGB32);
    const QPoint origin =
        area.topLeft() + QPoint((area.width() - 40) / 2, (area.height() - 40) / 2);
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 40; ++x)
            QCOMPARE(image.pixel(origin + QPoint(x, y)), strip.pixel(x, y));
    // No empty text while busy, even though the model is empty.
    QCOMPARE(textPixels(image, area), 0);
}

void tst_ListView::emptyText_data()
{
    QTest::addColumn<int>("rowCount");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("drawn");
    QTest::newRow("empty model with text") << 0 << "No tarviks" << true;
    QTest::newRow("empty model, empty text") << 0 << "" << false;
    QTest::newRow("rows present") << 3 << "No tarviks" << false;
}

void tst_ListView::emptyText()
{
    QFETCH(int, rowCount);
    QFETCH(QString, text);
    QFETCH(bool, drawn);
    QStandardItemModel model(rowCount, 1);
    Fixture f(&model);
    f.view.setEmptyText(text);
    const QImage image = f.grab();
    // Rows here have no text, so any white text is the empty text, near the middle.
    const QRect middle(20, 130, 200, 40);
    QCOMPARE(textPixels(image, middle) > 0, drawn);
    QCOMPARE(textPixels(image, QRect(0, 0, 240, 120)), 0);
}

void tst_ListView::delegateRow_data()
{
    QTest::addColumn<bool>("withIcon");
    QTest::addColumn<bool>("selected");
    QTest::newRow("text only") << false << false;
    QTest::newRow("icon and text") << true << false;
    QTest::newRow("selected") << false << true;
    QTest::newRow("selected with icon") << true << true;
}

void tst_ListView::delegateRow()
{
    QFETCH(bool, withIcon);
    QFETCH(bool, selected);
    const QRgb ICON = 0xFFFF0000;
    QStandardItemModel model;
    QPixmap pixmap(20, 12);
    pixmap.fill(QColor::fromRgb(ICON));
    for (int i = 0; i < 3; ++i) {
        QStandardItem* pItem = new QStandardItem(QStringLiteral("IIII"));
        if (withIcon)
            pItem->setIcon(QIcon(pixmap));
        model.appendRow(pItem);
    }
    Fixture f(&model);
    CTWListItemDelegate delegate;
    delegate.setMargins(10, 12, 10, 12);
    f.view.setItemDelegate(&delegate);
    f.view.setIconSize(QSize(20, 12));
    f.view.setMinimumHeight(300);
    QPalette palette = f.view.palette();
    palette.setColor(QPalette::Window, Qt::black);
    f.view.setPalette(palette);
    if (selected)
        f.view.selectionModel()->select(model.index(1, 0), QItemSelectionModel::Select);

    const QImage image = f.grab();
    const QRect row = f.view.visualRect(model.index(1, 0)).translated(f.view.viewport()->pos());
    QVERIFY(row.height() > 34);

    // Separator: 0x111111 one pixel above the bottom, 0x333333 on the bottom line.
    for (int x : {row.left(), row.center().x(), row.right()}) {
        QCOMPARE(image.pixel(x, row.bottom()), CTWListItemDelegate::SEPARATOR_LIGHT);
        QCOMPARE(image.pixel(x, row.bottom() - 1), CTWListItemDelegate::SEPARATOR_DARK);
    }

    // Highlight: the row's background is the highlight image's colour at that height.
    const QImage highlight(QStringLiteral(":/res_ui/img/list_item_bg.png"));
    const QPoint probe(row.right() - 4, row.top() + row.height() / 2);
    const QRgb expected = highlight.pixel(
        highlight.width() - 2, highlight.height() * (probe.y() - row.top()) / row.height());
    QCOMPARE(near(image.pixel(probe), expected, 8), selected);
    if (!selected)
        QCOMPARE(image.pixel(probe), 0xFF000000u);

    // Icon at (17, 17) from the row's corner.
    if (withIcon) {
        QCOMPARE(image.pixel(row.topLeft() + QPoint(17, 17)), ICON);
        QCOMPARE(image.pixel(row.topLeft() + QPoint(36, 28)), ICON);
        QVERIFY(image.pixel(row.topLeft() + QPoint(16, 17)) != ICON);
    }

    // Text starts 17 right of the left margin, or of the icon's width plus that.
    const int iTextLeft = row.left() + 10 + (withIcon ? 20 : 0) + 17;
    int iFirst = -1;
    for (int x = row.left(); x <= row.right() && iFirst < 0; ++x)
        for (int y = row.top(); y < row.bottom() - 1; ++y)
            if (isTextPixel(image.pixel(x, y))) {
                iFirst = x;
                break;
            }
    QVERIFY2(
        iFirst >= iTextLeft && iFirst <= iTextLeft + 3,
        qPrintable(QStringLiteral("text starts at %1, expected %2").arg(iFirst).arg(iTextLeft)));
}

void tst_ListView::delegateSizeHintAddsMargins()
{
    QStringListModel model(rows(3));
    Fixture f(&model);
    const int iPlain = f.view.visualRect(model.index(0)).height();
    CTWListItemDelegate delegate;
    delegate.setMargins(1, 7, 2, 4);
    int l, t, r, b;
    delegate.getMargins(l, t, r, b);
    QCOMPARE(QList<int>({l, t, r, b}), QList<int>({1, 7, 2, 4}));
    f.view.setItemDelegate(&delegate);
    f.view.doItemsLayout();
    QCOMPARE(f.view.visualRect(model.index(0)).height(), iPlain + 11);
}

void tst_ListView::delegateWithoutModelData()
{
    // A row whose model has no display or decoration data still paints its separator.
    QStandardItemModel model(1, 1);
    Fixture f(&model);
    CTWListItemDelegate delegate;
    f.view.setItemDelegate(&delegate);
    const QImage image = f.grab();
    const QRect row = f.view.visualRect(model.index(0, 0));
    QCOMPARE(image.pixel(row.left() + 5, row.bottom()), CTWListItemDelegate::SEPARATOR_LIGHT);
}

QTEST_MAIN(tst_ListView)
#include "tst_listview.moc"
