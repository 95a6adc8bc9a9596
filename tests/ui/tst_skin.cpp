// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QTemporaryDir>
#include <QtTest>

#include "cskin.h"
#include "uiresources.h"

using namespace Dravo;

namespace {

const QRgb M = CSkin::MARKER;

// An image whose row 0 (horizontal) or column 0 (vertical) follows the pattern: 'X' a marker
// pixel, 'a' almost black, 's' translucent black, anything else grey. The other axis gets a run.
QImage patternImage(const QString& strPattern, bool bHorizontal)
{
    const int n = strPattern.size();
    QImage image(bHorizontal ? n : 4, bHorizontal ? 4 : n, QImage::Format_ARGB32);
    image.fill(0xFF808080);
    for (int i = 0; i < n; ++i) {
        const char c = strPattern.at(i).toLatin1();
        const QRgb px = c == 'X' ? M : c == 'a' ? 0xFF000001 : c == 's' ? 0x80000000 : 0xFF808080;
        image.setPixel(bHorizontal ? i : 0, bHorizontal ? 0 : i, px);
    }
    image.setPixel(bHorizontal ? 0 : 1, bHorizontal ? 1 : 0, M);
    return image;
}

// A 12 x 10 skin, stretch columns 4-7 and rows 3-5, so borders L 3, R 4, T 2, B 4. Corner
// pixels all differ; edges vary only across their stretch direction and the centre is one
// colour, so stretched pieces keep exact colours.
const int SRC_W = 12, SRC_H = 10, S_LEFT = 4, S_RIGHT = 7, S_TOP = 3, S_BOTTOM = 5;

QImage nineSource()
{
    QImage image(SRC_W, SRC_H, QImage::Format_ARGB32);
    for (int y = 0; y < SRC_H; ++y) {
        for (int x = 0; x < SRC_W; ++x) {
            const bool bMidX = x >= S_LEFT && x <= S_RIGHT;
            const bool bMidY = y >= S_TOP && y <= S_BOTTOM;
            QRgb px = bMidX && bMidY ? qRgb(16, 192, 32)
                      : bMidX        ? qRgb(200, 0, 10 * y)
                      : bMidY        ? qRgb(0, 10 * x, 200)
                                     : qRgb(20 * x, 20 * y, 77);
            if (x == 0 || y == 0)  // markers beside the stretch rows and columns only
                px = (y == 0 ? bMidX : bMidY) && x != y ? M : 0;
            image.setPixel(x, y, px);
        }
    }
    return image;
}

// The source at a scale as the art is made for high-density screens: each content pixel an
// s x s block, the marker lines still one pixel wide and running over the scaled runs.
QImage nineSourceAt(int s)
{
    const QImage src = nineSource();
    QImage image(s * (SRC_W - 1) + 1, s * (SRC_H - 1) + 1, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, src.pixel(x ? 1 + (x - 1) / s : 0, y ? 1 + (y - 1) / s : 0));
    return image;
}

// Along one axis, the source index that target index i of a resize to iTarget shows. The far
// border wins where the borders overlap, as it is painted later; any stretch index will do.
int sourceIndex(int i, int iTarget, int iSource, int iFirst, int iLast)
{
    const int iNear = iFirst - 1, iFar = iSource - iLast - 1;
    if (i >= iTarget - iFar)
        return iSource - iFar + i - (iTarget - iFar);
    return i < iNear ? 1 + i : iFirst;
}

}  // namespace

class tst_Skin : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        initUiResources();
        QVERIFY(m_dir.isValid());
        for (const int s : {1, 2, 3})
            QVERIFY(nineSourceAt(s).save(m_dir.filePath(
                s == 1 ? QStringLiteral("nine.png") : QStringLiteral("nine@%1x.png").arg(s))));
    }

    void markerScan_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<int>("first");  // -1: no run, so no stretch rectangle
        QTest::addColumn<int>("last");
        QTest::newRow("run inside") << ".__XXX__" << 3 << 5;
        QTest::newRow("run from 1") << ".XX_____" << 1 << 2;
        QTest::newRow("run to the end") << ".____XXX" << 5 << 7;
        QTest::newRow("single pixel") << "._X_____" << 2 << 2;
        QTest::newRow("corner is not part of a run") << "XXXXXXXX" << 1 << 7;
        QTest::newRow("second run ignored") << ".XX__XXX" << 1 << 2;
        QTest::newRow("almost black ends run") << ".XXaXXX_" << 1 << 2;
        QTest::newRow("translucent black ends run") << ".XXsXX__" << 1 << 2;
        QTest::newRow("almost and translucent black start none") << ".as_XX__" << 4 << 5;
        QTest::newRow("no run") << "........" << -1 << -1;
        QTest::newRow("marker in the corner only") << "X......." << -1 << -1;
    }

    void markerScan()
    {
        QFETCH(QString, pattern);
        QFETCH(int, first);
        QFETCH(int, last);
        for (const bool bHorizontal : {true, false}) {
            const CSkin skin(patternImage(pattern, bHorizontal), QSize(30, 20));
            const QRect stretch = skin.stretchRect();
            QCOMPARE(skin.hasScaledImage(), first > 0);
            if (first < 0) {
                QVERIFY(stretch.isNull());
                continue;
            }
            QCOMPARE(bHorizontal ? stretch.left() : stretch.top(), first);
            QCOMPARE(bHorizontal ? stretch.right() : stretch.bottom(), last);
        }
    }

    void unusableImageGivesNoScaledImage()
    {
        QVERIFY(!CSkin(QImage(), QSize(40, 40)).hasScaledImage());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("CSkin::CSkin failed to load"));
        const CSkin missing(QStringLiteral(":/res_ui/img/no_such_skin.png"), nullptr,
                            QSize(40, 40));
        QVERIFY(missing.sourceImage().isNull());
        QVERIFY(!missing.hasScaledImage());
    }

    void nineSliceResize_data()
    {
        QTest::addColumn<QSize>("size");  // logical
        QTest::addColumn<qreal>("dpr");
        QTest::newRow("same as source") << QSize(SRC_W - 1, SRC_H - 1) << 1.0;
        QTest::newRow("larger") << QSize(40, 30) << 1.0;
        QTest::newRow("wide and flat") << QSize(300, 9) << 1.0;
        QTest::newRow("centre width zero") << QSize(7, 20) << 1.0;
        QTest::newRow("narrower than borders") << QSize(5, 20) << 1.0;
        QTest::newRow("lower than borders") << QSize(30, 4) << 1.0;
        QTest::newRow("smaller both ways") << QSize(4, 3) << 1.0;
        QTest::newRow("one pixel") << QSize(1, 1) << 1.0;
        QTest::newRow("@2x larger") << QSize(40, 30) << 2.0;
        QTest::newRow("@2x narrower than borders") << QSize(5, 20) << 2.0;
        QTest::newRow("@3x wide and flat") << QSize(300, 9) << 3.0;
        QTest::newRow("@3x smaller both ways") << QSize(4, 3) << 3.0;
        QTest::newRow("1.5 from @2x") << QSize(40, 30) << 1.5;
    }

    void nineSliceResize()
    {
        QFETCH(QSize, size);
        QFETCH(qreal, dpr);
        const QImage src = nineSource();
        CSkin skin(m_dir.filePath(QStringLiteral("nine.png")));
        QCOMPARE(skin.stretchRect(), QRect(QPoint(S_LEFT, S_TOP), QPoint(S_RIGHT, S_BOTTOM)));
        QVERIFY(!skin.hasScaledImage());
        skin.resize(size, dpr);
        const QImage& out = skin.scaledImage();
        QCOMPARE(out.size(), (QSizeF(size) * dpr).toSize());
        QCOMPARE(out.devicePixelRatio(), dpr);
        QCOMPARE(out.format(), QImage::Format_ARGB32);
        // At a whole ratio each physical pixel shows the source pixel of its logical one: the
        // variant for the ratio is used 1:1, so no edge between two border pixels is blended.
        const int s = int(dpr);
        if (s != dpr)
            return;
        for (int y = 0; y < out.height(); ++y) {
            for (int x = 0; x < out.width(); ++x) {
                const QPoint from(sourceIndex(x / s, size.width(), SRC_W, S_LEFT, S_RIGHT),
                                  sourceIndex(y / s, size.height(), SRC_H, S_TOP, S_BOTTOM));
                QVERIFY2(out.pixel(x, y) == src.pixel(from),
                         qPrintable(QStringLiteral("pixel (%1,%2)").arg(x).arg(y)));
            }
        }
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(tst_Skin)
#include "tst_skin.moc"
