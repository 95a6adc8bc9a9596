// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QPainter>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QtTest>

#include "ctwlistitemdelegate.h"
#include "ctwlistview.h"
#include "uiresources.h"

using namespace Dravo;

namespace {

const QRgb GREY = 0xFFC8C8C8;

// A shown 240 x 300 list of the given rows over an opaque background.
struct Fixture
{
    Fixture(const QStringList& rows, const QString& strEmpty = QString(), QRgb background = GREY)
        : view(strEmpty)
    {
        for (const QString& strRow : rows)
            model.appendRow(new QStandardItem(strRow));
        view.setModel(&model);
        view.setAutoFillBackground(true);
        QPalette palette = view.palette();
        palette.setColor(QPalette::Window, QColor::fromRgb(background));
        view.setPalette(palette);
        view.resize(240, 300);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
    }

    QImage grab() { return view.grab().toImage().convertToFormat(QImage::Format_RGB32); }

    QStandardItemModel model;
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

}  // namespace

class tst_ListView : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { initUiResources(); }

    void busyRefusesTapsAndKeys()
    {
        QStringList rows;
        for (int i = 0; i < 40; ++i)
            rows << QStringLiteral("row %1").arg(i);
        Fixture f(rows);
        CTWListView& view = f.view;
        view.setCurrentIndex(f.model.index(0, 0));
        QSignalSpy clickSpy(&view, &QAbstractItemView::clicked);
        QSignalSpy pressSpy(&view, &QAbstractItemView::pressed);
        const QPoint row3 = view.visualRect(f.model.index(3, 0)).center();
        view.setBusy(true);
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, row3);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, row3);
        QTest::keyClick(view.viewport(), Qt::Key_Down);
        QTest::keyClick(&view, Qt::Key_End);
        QCOMPARE(view.currentIndex().row(), 0);
        QCOMPARE(clickSpy.count() + pressSpy.count(), 0);

        // Wheel events still scroll.
        const QPoint pos = view.viewport()->rect().center();
        QWheelEvent wheel(pos, view.viewport()->mapToGlobal(pos), QPoint(), QPoint(0, -120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &wheel);
        QVERIFY(view.verticalScrollBar()->value() > 0);

        view.setBusy(false);
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {},
                          view.visualRect(f.model.index(8, 0)).center());
        QCOMPARE(view.currentIndex().row(), 8);
        QTest::keyClick(&view, Qt::Key_Down);
        QCOMPARE(view.currentIndex().row(), 9);
    }

    void overlay_data()
    {
        QTest::addColumn<int>("rowCount");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("busy");
        QTest::addColumn<bool>("textDrawn");
        QTest::newRow("empty model with text") << 0 << "No tarviks" << false << true;
        QTest::newRow("empty model, empty text") << 0 << "" << false << false;
        QTest::newRow("rows present") << 3 << "No tarviks" << false << false;
        QTest::newRow("busy: veil and indicator instead") << 0 << "No tarviks" << true << false;
    }

    void overlay()
    {
        QFETCH(int, rowCount);
        QFETCH(QString, text);
        QFETCH(bool, busy);
        QFETCH(bool, textDrawn);
        Fixture f(QStringList(rowCount, QString()), text);
        f.view.setBusy(busy);
        const QImage image = f.grab();
        // Rows here have no text, so any white text is the empty text, near the middle.
        QCOMPARE(textPixels(image, QRect(20, 130, 200, 40)) > 0, textDrawn);
        QCOMPARE(textPixels(image, QRect(0, 0, 240, 120)), 0);
        if (!busy)
            return;
        // Veil: black at alpha 150 over the background.
        const QRect area = f.view.viewport()->geometry();
        QVERIFY(qAbs(qRed(image.pixel(area.topLeft())) - qRed(GREY) * (255 - 150) / 255) <= 2);
        // Indicator: the strip's first frame, centred in the viewport.
        const QImage strip =
            QImage(CAnimation::PROGRESS_ANIMATION.m_strImage).convertToFormat(QImage::Format_RGB32);
        const QPoint origin =
            area.topLeft() + QPoint((area.width() - 40) / 2, (area.height() - 40) / 2);
        for (int y = 0; y < 40; ++y)
            for (int x = 0; x < 40; ++x)
                QCOMPARE(image.pixel(origin + QPoint(x, y)), strip.pixel(x, y));
    }

    // The icon keeps its 1x logical size at any pixel ratio and comes 1:1 from the pixmap made
    // for the ratio: a checkerboard of single pixels shows unchanged.
    void delegateIconAtPixelRatio_data()
    {
        QTest::addColumn<int>("dpr");
        QTest::newRow("1") << 1;
        QTest::newRow("2") << 2;
        QTest::newRow("3") << 3;
    }

    void delegateIconAtPixelRatio()
    {
        QFETCH(int, dpr);
        QIcon icon;
        QImage variant;
        for (int s = 1; s <= 3; ++s) {
            QImage image(20 * s, 12 * s, QImage::Format_RGB32);
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x)
                    image.setPixel(x, y, (x + y) % 2 ? qRgb(255, 0, 80 * s) : qRgb(0, 255, 0));
            image.setDevicePixelRatio(s);
            icon.addPixmap(QPixmap::fromImage(image));
            if (s == dpr)
                variant = image;
        }
        QStandardItemModel model;
        model.appendRow(new QStandardItem(icon, QStringLiteral("I")));
        QImage canvas(200 * dpr, 60 * dpr, QImage::Format_RGB32);
        canvas.fill(Qt::black);
        canvas.setDevicePixelRatio(dpr);
        QStyleOptionViewItem option;
        option.rect = QRect(0, 0, 200, 60);
        QPainter painter(&canvas);
        CTWListItemDelegate().paint(&painter, option, model.index(0, 0));
        painter.end();

        const int o = CTWListItemDelegate::ICON_OFFSET * dpr;
        QImage drawn = canvas.copy(o - 1, o - 1, variant.width() + 2, variant.height() + 2);
        drawn.setDevicePixelRatio(1);
        variant.setDevicePixelRatio(1);
        QCOMPARE(drawn.copy(1, 1, variant.width(), variant.height()), variant);
        QCOMPARE(drawn.pixel(0, 0), 0xFF000000u);
        QCOMPARE(drawn.pixel(drawn.width() - 1, drawn.height() - 1), 0xFF000000u);
    }

    void delegateRow_data()
    {
        QTest::addColumn<bool>("withIcon");
        QTest::addColumn<bool>("selected");
        QTest::newRow("text only") << false << false;
        QTest::newRow("icon and text") << true << false;
        QTest::newRow("selected") << false << true;
        QTest::newRow("selected with icon") << true << true;
    }

    void delegateRow()
    {
        QFETCH(bool, withIcon);
        QFETCH(bool, selected);
        Fixture f(QStringList(3, QStringLiteral("IIII")), QString(), 0xFF000000);
        QPixmap pixmap(20, 12);
        pixmap.fill(Qt::red);
        for (int i = 0; i < 3 && withIcon; ++i)
            f.model.item(i)->setIcon(QIcon(pixmap));
        CTWListItemDelegate delegate;
        delegate.setMargins(10, 12, 10, 12);
        f.view.setItemDelegate(&delegate);
        f.view.setIconSize(pixmap.size());
        if (selected)
            f.view.selectionModel()->select(f.model.index(1, 0), QItemSelectionModel::Select);
        const QImage image = f.grab();
        const QRect row =
            f.view.visualRect(f.model.index(1, 0)).translated(f.view.viewport()->pos());
        QVERIFY(row.height() > 34);

        // Separator: 0x111111 one pixel above the bottom, 0x333333 on the bottom line.
        for (int x : {row.left(), row.center().x(), row.right()}) {
            QCOMPARE(image.pixel(x, row.bottom()), 0xFF333333u);
            QCOMPARE(image.pixel(x, row.bottom() - 1), 0xFF111111u);
        }
        // Highlight: the highlight image's colour at that height; black where not selected.
        const QImage highlight(QStringLiteral(":/res_ui/img/list_item_bg.png"));
        const QPoint probe(row.right() - 4, row.top() + row.height() / 2);
        const QRgb shade = highlight.pixel(
            highlight.width() - 2, highlight.height() * (probe.y() - row.top()) / row.height());
        const QRgb actual = image.pixel(probe);
        QCOMPARE(qAbs(qRed(actual) - qRed(shade)) <= 8 &&
                     qAbs(qGreen(actual) - qGreen(shade)) <= 8 &&
                     qAbs(qBlue(actual) - qBlue(shade)) <= 8,
                 selected);
        if (!selected)
            QCOMPARE(actual, 0xFF000000u);
    }
};

QTEST_MAIN(tst_ListView)
#include "tst_listview.moc"
