// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QtTest>

#include "canimation.h"

using namespace Dravo;

namespace {

// A strip of iFrames frames, frame i solid qRgb(10 + 20 * i, 0, 0).
QString writeStrip(const QTemporaryDir& dir, int iWidth, int iHeight, int iFrames)
{
    QImage image(iWidth, iHeight, QImage::Format_RGB32);
    const int iFrameWidth = qMax(1, iWidth / iFrames);
    for (int x = 0; x < iWidth; ++x)
        for (int y = 0; y < iHeight; ++y)
            image.setPixel(x, y, qRgb(10 + 20 * qMin(x / iFrameWidth, iFrames - 1), 0, 0));
    const QString strPath =
        dir.filePath(QStringLiteral("strip%1x%2x%3.png").arg(iWidth).arg(iHeight).arg(iFrames));
    image.save(strPath, "PNG");
    return strPath;
}

void step(CAnimation& animation, int iTimes)
{
    for (int i = 0; i < iTimes; ++i)
        QMetaObject::invokeMethod(&animation, "onTimeout", Qt::DirectConnection);
}

}  // namespace

class tst_Animation : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void frameRect_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("frames");
        QTest::addColumn<int>("steps");
        QTest::addColumn<QRect>("expected");
        QTest::newRow("first frame") << 320 << 8 << 0 << QRect(0, 0, 40, 40);
        QTest::newRow("last frame") << 320 << 8 << 7 << QRect(280, 0, 40, 40);
        QTest::newRow("wraps to first") << 320 << 8 << 8 << QRect(0, 0, 40, 40);
        QTest::newRow("second round") << 320 << 8 << 11 << QRect(120, 0, 40, 40);
        QTest::newRow("uneven width truncates") << 100 << 3 << 2 << QRect(66, 0, 33, 40);
        QTest::newRow("narrower than frame count") << 5 << 8 << 0 << QRect();
    }

    void frameRect()
    {
        QFETCH(int, width);
        QFETCH(int, frames);
        QFETCH(int, steps);
        QFETCH(QRect, expected);
        CAnimation animation(writeStrip(m_dir, width, 40, frames), frames, 1000);
        QSignalSpy frameSpy(&animation, &CAnimation::frameChanged);
        step(animation, steps);
        QCOMPARE(animation.currentFrame(), steps % frames);
        QCOMPARE(frameSpy.count(), steps);
        QCOMPARE(animation.frameRect().isValid(), expected.isValid());
        if (expected.isValid())
            QCOMPARE(animation.frameRect(), expected);
        QCOMPARE(animation.start(), expected.isValid());
    }

    void stopAndLoadResetToFrameZero()
    {
        CAnimation animation(writeStrip(m_dir, 160, 40, 4), 4, 10);
        QSignalSpy stopSpy(&animation, &CAnimation::stopped);
        QSignalSpy frameSpy(&animation, &CAnimation::frameChanged);
        animation.stop();  // not running: emits nothing
        QVERIFY(animation.start());
        QTRY_VERIFY(frameSpy.count() >= 2);
        animation.stop();
        animation.stop();
        QCOMPARE(stopSpy.count(), 1);
        QCOMPARE(animation.currentFrame(), 0);
        // Loading another strip passes through stopped.
        QVERIFY(animation.start());
        step(animation, 1);
        QVERIFY(animation.load(CAnimation::Descriptor(writeStrip(m_dir, 120, 30, 3), 3, 250)));
        QCOMPARE(stopSpy.count(), 2);
        QVERIFY(!animation.isRunning());
        QCOMPARE(animation.frameRect(), QRect(0, 0, 40, 30));
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(tst_Animation)
#include "tst_animation.moc"
