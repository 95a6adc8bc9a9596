#include <QPainter>
#include <QtTest>

#include "canimation.h"

using namespace Dravo;

namespace {

// A strip of frames, each one solid colour: frame i is qRgb(10 + 20 * i, 0, 0).
QString writeStrip(const QTemporaryDir& dir, const QString& strName, int iWidth, int iHeight,
                   int iFrames)
{
    QImage image(iWidth, iHeight, QImage::Format_RGB32);
    const int iFrameWidth = qMax(1, iWidth / iFrames);
    for (int x = 0; x < iWidth; ++x)
        for (int y = 0; y < iHeight; ++y)
            image.setPixel(x, y, qRgb(10 + 20 * qMin(x / iFrameWidth, iFrames - 1), 0, 0));
    const QString strPath = dir.filePath(strName);
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
    void frameRect_data();
    void frameRect();
    void oneFrameStripNeverRepaints();
    void stopWhenStoppedEmitsNothing();
    void stopResetsFrame();
    void nullImageNeverStarts_data();
    void nullImageNeverStarts();
    void loadStopsRunningAnimation();
    void drawsCurrentFrame();

private:
    QTemporaryDir m_dir;
};

void tst_Animation::frameRect_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("frames");
    QTest::addColumn<int>("steps");
    QTest::addColumn<QRect>("expected");
    QTest::newRow("first frame") << 320 << 8 << 0 << QRect(0, 0, 40, 40);
    QTest::newRow("fourth frame") << 320 << 8 << 3 << QRect(120, 0, 40, 40);
    QTest::newRow("last frame") << 320 << 8 << 7 << QRect(280, 0, 40, 40);
    QTest::newRow("wraps to first") << 320 << 8 << 8 << QRect(0, 0, 40, 40);
    QTest::newRow("second round") << 320 << 8 << 11 << QRect(120, 0, 40, 40);
    QTest::newRow("uneven width truncates") << 100 << 3 << 2 << QRect(66, 0, 33, 40);
    QTest::newRow("two frames") << 80 << 2 << 1 << QRect(40, 0, 40, 40);
    QTest::newRow("narrower than frame count") << 5 << 8 << 0 << QRect();
}

void tst_Animation::frameRect()
{
    QFETCH(int, width);
    QFETCH(int, frames);
    QFETCH(int, steps);
    QFETCH(QRect, expected);

    const QString strPath = writeStrip(
        m_dir, QStringLiteral("strip%1x%2.png").arg(width).arg(frames), width, 40, frames);
    CAnimation animation(strPath, frames, 1000);
    QSignalSpy frameSpy(&animation, &CAnimation::frameChanged);
    step(animation, steps);
    QCOMPARE(animation.currentFrame(), steps % frames);
    QCOMPARE(frameSpy.count(), steps);
    QCOMPARE(animation.frameRect().isValid(), expected.isValid());
    if (expected.isValid())
        QCOMPARE(animation.frameRect(), expected);
    QCOMPARE(animation.start(), expected.isValid());
    animation.stop();
}

void tst_Animation::oneFrameStripNeverRepaints()
{
    const QString strPath = writeStrip(m_dir, QStringLiteral("one.png"), 40, 40, 1);
    CAnimation animation(strPath, 1, 5);
    QSignalSpy frameSpy(&animation, &CAnimation::frameChanged);
    QSignalSpy startSpy(&animation, &CAnimation::started);
    QVERIFY(animation.start());
    QCOMPARE(startSpy.count(), 1);
    QVERIFY(animation.isRunning());
    // Let the real timer fire a few times.
    QTest::qWait(60);
    step(animation, 3);
    QCOMPARE(frameSpy.count(), 0);
    QCOMPARE(animation.currentFrame(), 0);
    QCOMPARE(animation.frameRect(), QRect(0, 0, 40, 40));
}

void tst_Animation::stopWhenStoppedEmitsNothing()
{
    const QString strPath = writeStrip(m_dir, QStringLiteral("s.png"), 80, 40, 2);
    CAnimation animation(strPath, 2, 100);
    QSignalSpy stopSpy(&animation, &CAnimation::stopped);
    animation.stop();
    animation.stop();
    QCOMPARE(stopSpy.count(), 0);
    QVERIFY(!animation.isRunning());
}

void tst_Animation::stopResetsFrame()
{
    const QString strPath = writeStrip(m_dir, QStringLiteral("r.png"), 160, 40, 4);
    CAnimation animation(strPath, 4, 10);
    QSignalSpy frameSpy(&animation, &CAnimation::frameChanged);
    QVERIFY(animation.start());
    QTRY_VERIFY(frameSpy.count() >= 2);
    animation.stop();
    QVERIFY(animation.start());
    QCOMPARE(animation.currentFrame(), 0);
    step(animation, 1);
    QSignalSpy stopSpy(&animation, &CAnimation::stopped);
    QCOMPARE(animation.currentFrame(), 1);
    animation.stop();
    QCOMPARE(stopSpy.count(), 1);
    QCOMPARE(animation.currentFrame(), 0);
    QVERIFY(!animation.isRunning());
}

void tst_Animation::nullImageNeverStarts_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("missing resource") << ":/res/img/no_such_strip.png";
    QTest::newRow("missing file") << "/nonexistent/strip.png";
    QTest::newRow("empty path") << "";
}

void tst_Animation::nullImageNeverStarts()
{
    QFETCH(QString, path);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("CAnimation::load failed"));
    CAnimation animation(CAnimation::Descriptor(path, 8, 300));
    QSignalSpy startSpy(&animation, &CAnimation::started);
    QSignalSpy frameSpy(&animation, &CAnimation::frameChanged);
    QVERIFY(animation.image().isNull());
    QVERIFY(!animation.frameRect().isValid());
    QVERIFY(!animation.start());
    QVERIFY(!animation.isRunning());
    QCOMPARE(startSpy.count(), 0);

    QImage canvas(50, 50, QImage::Format_RGB32);
    canvas.fill(Qt::blue);
    QPainter painter(&canvas);
    animation.draw(&painter, QPoint(0, 0));
    animation.draw(&painter, QRect(0, 0, 50, 50));
    painter.end();
    QCOMPARE(canvas.pixel(10, 10), qRgb(0, 0, 255));
    QCOMPARE(frameSpy.count(), 0);
}

void tst_Animation::loadStopsRunningAnimation()
{
    const QString strA = writeStrip(m_dir, QStringLiteral("a.png"), 80, 40, 2);
    const QString strB = writeStrip(m_dir, QStringLiteral("b.png"), 120, 30, 3);
    CAnimation animation(strA, 2, 10);
    QVERIFY(animation.start());
    step(animation, 1);
    QSignalSpy stopSpy(&animation, &CAnimation::stopped);
    QVERIFY(animation.load(CAnimation::Descriptor(strB, 3, 250)));
    QCOMPARE(stopSpy.count(), 1);
    QVERIFY(!animation.isRunning());
    QCOMPARE(animation.currentFrame(), 0);
    QCOMPARE(animation.framesCount(), 3);
    QCOMPARE(animation.interval(), 250);
    QCOMPARE(animation.frameRect(), QRect(0, 0, 40, 30));
}

void tst_Animation::drawsCurrentFrame()
{
    const QString strPath = writeStrip(m_dir, QStringLiteral("d.png"), 120, 20, 3);
    CAnimation animation(strPath, 3, 1000);
    step(animation, 2);
    QImage canvas(100, 100, QImage::Format_RGB32);
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    animation.draw(&painter, QPoint(30, 50));       // own size, 40 x 20
    animation.draw(&painter, QRect(0, 0, 10, 10));  // scaled
    painter.end();
    const QRgb frame2 = qRgb(50, 0, 0);
    QCOMPARE(canvas.pixel(30, 50), frame2);
    QCOMPARE(canvas.pixel(69, 69), frame2);
    QCOMPARE(canvas.pixel(70, 50), qRgb(255, 255, 255));
    QCOMPARE(canvas.pixel(30, 70), qRgb(255, 255, 255));
    QCOMPARE(canvas.pixel(9, 9), frame2);
    QCOMPARE(canvas.pixel(10, 10), qRgb(255, 255, 255));
}

QTEST_GUILESS_MAIN(tst_Animation)
#include "tst_animation.moc"
