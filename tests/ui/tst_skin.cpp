#include <QtTest>

#include "cskin.h"
#include "uiresources.h"

using namespace Dravo;

namespace {

const QRgb M = CSkin::MARKER;

// Builds an image whose row 0 (horizontal) or column 0 (vertical) follows a pattern:
// 'X' is a marker pixel, 'a' almost black, 's' semi-transparent black, anything else grey.
QImage patternImage(const QString& strPattern, bool bHorizontal)
{
    const int n = strPattern.size();
    QImage image(bHorizontal ? n : 4, bHorizontal ? 4 : n, QImage::Format_ARGB32);
    image.fill(0xFF808080);
    for (int i = 0; i < n; ++i) {
        QRgb px = 0xFF808080;
        switch (strPattern.at(i).toLatin1()) {
            case 'X':
                px = M;
                break;
            case 'a':
                px = 0xFF000001;
                break;
            case 's':
                px = 0x80000000;
                break;
            default:
                break;
        }
        if (bHorizontal)
            image.setPixel(i, 0, px);
        else
            image.setPixel(0, i, px);
    }
    // A run on the other axis so the rectangle is not null because of it.
    if (bHorizontal)
        image.setPixel(0, 1, M);
    else
        image.setPixel(1, 0, M);
    return image;
}

// A 12 x 10 skin: stretch columns 4-7, rows 3-5, so borders L 3, R 4, T 2, B 4.
// Fixed corner pixels are all different; edge pieces vary only across their stretch
// direction and the centre is one colour, so scaled pieces keep exact colours.
const int SRC_W = 12, SRC_H = 10, S_LEFT = 4, S_RIGHT = 7, S_TOP = 3, S_BOTTOM = 5;
const QRgb CENTRE = 0xFF10C020;

enum eBand
{
    eLow,
    eMid,
    eHigh
};

eBand band(int i, int iFirst, int iLast)
{
    return i < iFirst ? eLow : (i > iLast ? eHigh : eMid);
}

QRgb sourceColour(int x, int y)
{
    const eBand bx = band(x, S_LEFT, S_RIGHT);
    const eBand by = band(y, S_TOP, S_BOTTOM);
    if (bx == eMid && by == eMid)
        return CENTRE;
    if (bx == eMid)  // top or bottom edge: colour by row only
        return qRgba(200, 0, 10 * y, 255);
    if (by == eMid)  // left or right edge: colour by column only
        return qRgba(0, 10 * x, 200, 255);
    return qRgba(20 * x, 20 * y, 77, 255);  // corners: unique per pixel
}

QImage nineSource()
{
    QImage image(SRC_W, SRC_H, QImage::Format_ARGB32);
    for (int y = 1; y < SRC_H; ++y)
        for (int x = 1; x < SRC_W; ++x)
            image.setPixel(x, y, sourceColour(x, y));
    image.setPixel(0, 0, 0xFFFFFFFF);
    for (int x = 1; x < SRC_W; ++x)
        image.setPixel(x, 0, x >= S_LEFT && x <= S_RIGHT ? M : 0x00000000);
    for (int y = 1; y < SRC_H; ++y)
        image.setPixel(0, y, y >= S_TOP && y <= S_BOTTOM ? M : 0x00000000);
    return image;
}

// Where a target pixel of a W x H resize comes from, in source coordinates. Right and bottom
// borders win where borders overlap, since they are painted later.
QPoint sourceOf(int x, int y, int W, int H)
{
    const int L = S_LEFT - 1, R = SRC_W - S_RIGHT - 1, T = S_TOP - 1, B = SRC_H - S_BOTTOM - 1;
    int sx, sy;
    if (x >= W - R)
        sx = SRC_W - R + (x - (W - R));
    else if (x < L)
        sx = 1 + x;
    else
        sx = S_LEFT;  // any stretch column: edge pieces are uniform along it
    if (y >= H - B)
        sy = SRC_H - B + (y - (H - B));
    else if (y < T)
        sy = 1 + y;
    else
        sy = S_TOP;
    return QPoint(sx, sy);
}

}  // namespace

class tst_Skin : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { initUiResources(); }

    void markerScan_data();
    void markerScan();
    void noRunGivesNullScaledImage_data();
    void noRunGivesNullScaledImage();
    void nineSliceResize_data();
    void nineSliceResize();
    void copyKeepsScaledImage();
    void missingFileLeavesNoSkin();
    void shippedSkins_data();
    void shippedSkins();
    void shippedStrips_data();
    void shippedStrips();
    void shippedIcons_data();
    void shippedIcons();
};

void tst_Skin::markerScan_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    // Index 0 is the corner and never part of a run.
    QTest::newRow("run inside") << ".__XXX__" << 3 << 5;
    QTest::newRow("run from 1") << ".XX_____" << 1 << 2;
    QTest::newRow("run to the end") << ".____XXX" << 5 << 7;
    QTest::newRow("single pixel") << "._X_____" << 2 << 2;
    QTest::newRow("whole line") << "XXXXXXXX" << 1 << 7;
    QTest::newRow("second run ignored") << ".XX__XXX" << 1 << 2;
    QTest::newRow("almost black ends run") << ".XXaXXX_" << 1 << 2;
    QTest::newRow("translucent black ends run") << ".XXsXX__" << 1 << 2;
    QTest::newRow("almost black is no start") << ".aa_XX__" << 4 << 5;
    QTest::newRow("translucent is no start") << ".s__XX__" << 4 << 5;
}

void tst_Skin::markerScan()
{
    QFETCH(QString, pattern);
    QFETCH(int, first);
    QFETCH(int, last);

    const CSkin horizontal(patternImage(pattern, true));
    QCOMPARE(horizontal.stretchRect().left(), first);
    QCOMPARE(horizontal.stretchRect().right(), last);

    const CSkin vertical(patternImage(pattern, false));
    QCOMPARE(vertical.stretchRect().top(), first);
    QCOMPARE(vertical.stretchRect().bottom(), last);
}

void tst_Skin::noRunGivesNullScaledImage_data()
{
    QTest::addColumn<QImage>("image");
    QImage plain(20, 10, QImage::Format_ARGB32);
    plain.fill(0xFF303030);
    QTest::newRow("no markers") << plain;
    QImage rowOnly = plain;
    rowOnly.setPixel(5, 0, M);
    QTest::newRow("row run only") << rowOnly;
    QImage columnOnly = plain;
    columnOnly.setPixel(0, 5, M);
    QTest::newRow("column run only") << columnOnly;
    QImage cornerOnly = plain;
    cornerOnly.setPixel(0, 0, M);
    QTest::newRow("marker in the corner only") << cornerOnly;
    QTest::newRow("null image") << QImage();
}

void tst_Skin::noRunGivesNullScaledImage()
{
    QFETCH(QImage, image);
    CSkin skin(image, QSize(100, 50));
    QVERIFY(skin.stretchRect().isNull());
    QVERIFY(!skin.hasScaledImage());
    QVERIFY(skin.scaledImage().isNull());
    skin.resize(QRect(0, 0, 30, 30));
    QVERIFY(!skin.hasScaledImage());
}

void tst_Skin::nineSliceResize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("same as source") << QSize(SRC_W - 1, SRC_H - 1);
    QTest::newRow("larger") << QSize(40, 30);
    QTest::newRow("wide and flat") << QSize(300, 9);
    QTest::newRow("centre width zero") << QSize(7, 20);
    QTest::newRow("narrower than borders") << QSize(5, 20);
    QTest::newRow("lower than borders") << QSize(30, 4);
    QTest::newRow("smaller both ways") << QSize(4, 3);
    QTest::newRow("one pixel") << QSize(1, 1);
}

void tst_Skin::nineSliceResize()
{
    QFETCH(QSize, size);
    CSkin skin(nineSource());
    QCOMPARE(skin.stretchRect(), QRect(QPoint(S_LEFT, S_TOP), QPoint(S_RIGHT, S_BOTTOM)));
    QVERIFY(!skin.hasScaledImage());

    skin.resize(size);
    QVERIFY(skin.hasScaledImage());
    const QImage& out = skin.scaledImage();
    QCOMPARE(out.size(), size);
    QCOMPARE(out.format(), QImage::Format_ARGB32);

    const QImage src = nineSource();
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const QPoint from = sourceOf(x, y, size.width(), size.height());
            const QRgb expected = src.pixel(from);
            if (out.pixel(x, y) != expected)
                QFAIL(qPrintable(QStringLiteral("pixel (%1,%2) is %3, expected %4 from (%5,%6)")
                                     .arg(x)
                                     .arg(y)
                                     .arg(out.pixel(x, y), 8, 16)
                                     .arg(expected, 8, 16)
                                     .arg(from.x())
                                     .arg(from.y())));
        }
    }
}

void tst_Skin::copyKeepsScaledImage()
{
    CSkin original(nineSource(), 25, 17);
    CSkin copy(original);
    CSkin assigned;
    QVERIFY(!assigned.hasScaledImage());
    assigned = original;
    for (const CSkin* pSkin : {&copy, &assigned}) {
        QVERIFY(pSkin->hasScaledImage());
        QCOMPARE(pSkin->scaledImage(), original.scaledImage());
        QCOMPARE(pSkin->stretchRect(), original.stretchRect());
    }
    // The copy resizes on its own.
    copy.resize(QSize(50, 50));
    QCOMPARE(original.scaledImage().size(), QSize(25, 17));
}

void tst_Skin::missingFileLeavesNoSkin()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("CSkin::CSkin failed to load"));
    CSkin skin(QStringLiteral(":/res_ui/img/no_such_skin.png"), nullptr, QSize(40, 40));
    QVERIFY(skin.sourceImage().isNull());
    QVERIFY(!skin.hasScaledImage());
}

void tst_Skin::shippedSkins_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRect>("stretch");  // null: no markers at all
    auto run = [](int l, int r, int t, int b) { return QRect(QPoint(l, t), QPoint(r, b)); };
    QTest::newRow("toolbar") << "toolbar" << QSize(151, 41) << run(3, 150, 1, 38);
    QTest::newRow("popup_bg") << "popup_bg" << QSize(250, 103) << run(26, 225, 25, 78);
    QTest::newRow("title_bg") << "title_bg" << QSize(151, 41) << run(1, 150, 1, 38);
    QTest::newRow("list_item_bg") << "list_item_bg" << QSize(151, 41) << QRect();
    QTest::newRow("line_edit_bg") << "line_edit_bg" << QSize(209, 29) << run(17, 194, 7, 22);
    QTest::newRow("btn_bg") << "btn_bg" << QSize(69, 41) << run(19, 49, 10, 30);
    QTest::newRow("btn_bg_hl") << "btn_bg_hl" << QSize(69, 41) << run(19, 43, 10, 30);
    QTest::newRow("main_bg") << "main_bg" << QSize(321, 457) << run(1, 320, 1, 456);
    QTest::newRow("transparent_bg") << "transparent_bg" << QSize(151, 41) << QRect();
}

void tst_Skin::shippedSkins()
{
    QFETCH(QString, name);
    QFETCH(QSize, size);
    QFETCH(QRect, stretch);

    const QImage image(QStringLiteral(":/res_ui/img/%1.png").arg(name));
    QVERIFY2(!image.isNull(), qPrintable(name));
    QCOMPARE(image.size(), size);
    QVERIFY(image.hasAlphaChannel());

    // Every marker pixel of row 0 and column 0 lies exactly in the listed runs, and the runs
    // are complete; so the scan finds them and a later run cannot exist.
    for (int x = 1; x < size.width(); ++x) {
        const bool bExpected = !stretch.isNull() && x >= stretch.left() && x <= stretch.right();
        QVERIFY2((image.pixel(x, 0) == M) == bExpected, qPrintable(QString::number(x)));
    }
    for (int y = 1; y < size.height(); ++y) {
        const bool bExpected = !stretch.isNull() && y >= stretch.top() && y <= stretch.bottom();
        QVERIFY2((image.pixel(0, y) == M) == bExpected, qPrintable(QString::number(y)));
    }

    CSkin skin(image, QSize(400, 300));
    QCOMPARE(skin.stretchRect(), stretch);
    QCOMPARE(skin.hasScaledImage(), !stretch.isNull());
    if (name != QLatin1String("transparent_bg") && skin.hasScaledImage()) {
        // The stretched skin is drawn: its middle is covered.
        QVERIFY(qAlpha(skin.scaledImage().pixel(200, 150)) > 0);
    }
}

void tst_Skin::shippedStrips_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("refresh") << ":/res_ui/img/refresh_anim.png";
    QTest::newRow("progress") << ":/res/img/progress_anim.png";
}

void tst_Skin::shippedStrips()
{
    QFETCH(QString, path);
    const QImage image(path);
    QVERIFY(!image.isNull());
    QCOMPARE(image.size(), QSize(320, 40));
    QVERIFY(!image.hasAlphaChannel());
    // Eight different frames.
    QSet<QByteArray> frames;
    for (int i = 0; i < 8; ++i) {
        const QImage frame = image.copy(i * 40, 0, 40, 40);
        frames.insert(
            QByteArray(reinterpret_cast<const char*>(frame.constBits()), frame.sizeInBytes()));
    }
    QCOMPARE(frames.size(), 8);
}

void tst_Skin::shippedIcons_data()
{
    QTest::addColumn<QString>("name");
    for (const char* pName : {"send",          "inbox",           "outbox",
                              "sent",          "settings",        "feedback",
                              "about",         "message_read",    "message_unread",
                              "message_sent",  "message_sending", "message_failed_send",
                              "message_draft", "arrow_east",      "arrow_west",
                              "arrow_north",   "arrow_south",     "zoom_plus",
                              "zoom_minus",    "tarvik_logo",     "tarvik_logo_large"})
        QTest::newRow(pName) << QString::fromLatin1(pName);
}

void tst_Skin::shippedIcons()
{
    QFETCH(QString, name);
    const QImage image(QStringLiteral(":/res/img/%1.png").arg(name));
    QVERIFY(!image.isNull());
    QVERIFY(image.hasAlphaChannel());
    // Transparent around the drawing, and something opaque inside it.
    QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    int iOpaque = 0;
    for (int y = 0; y < argb.height(); ++y)
        for (int x = 0; x < argb.width(); ++x)
            iOpaque += qAlpha(argb.pixel(x, y)) == 255;
    QVERIFY(iOpaque > argb.width() * argb.height() / 20);
}

QTEST_GUILESS_MAIN(tst_Skin)
#include "tst_skin.moc"
