// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "clocationengine.h"
#include "clocationprovider.h"
#include "clogcapture.h"
#include "cnmeastreamer.h"

using namespace Dravo;
using Dravo::Test::CNmeaStreamer;

namespace {

QString fixture(const QString& name)
{
    return QStringLiteral(TARVIK_SOURCE_DIR "/tests/gps/data/") + name;
}

QList<QByteArray> sentencesOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QList<QByteArray> result;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (!line.trimmed().isEmpty()) {
            result.append(line.trimmed());
        }
    }
    return result;
}

// Latitude and longitude of the n-th GGA sentence, decoded independently of Qt.
QPair<double, double> ggaPosition(const QList<QByteArray>& sentences, int n)
{
    for (const QByteArray& sentence : sentences) {
        const QList<QByteArray> f = sentence.split(',');
        if (!f.at(0).endsWith("GGA") || n-- > 0) {
            continue;
        }
        const double lat = f.at(2).left(2).toDouble() + f.at(2).mid(2).toDouble() / 60.0;
        const double lon = f.at(4).left(3).toDouble() + f.at(4).mid(3).toDouble() / 60.0;
        return {f.at(3) == "S" ? -lat : lat, f.at(5) == "W" ? -lon : lon};
    }
    return {0.0, 0.0};
}

CLocation answerOf(const QSignalSpy& spy)
{
    return qvariant_cast<CLocation>(spy.at(0).at(0));
}

CLocationEngine::CTimings timings(int giveUpMs, int settleMs)
{
    CLocationEngine::CTimings t;
    t.iGiveUpMs = giveUpMs;
    t.iSettleMs = settleMs;
    return t;
}

}  // namespace

class TestNmea : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // QtTest exports QT_QTESTLIB_RUNNING, and Qt Positioning then hides every
        // plugin not marked testable, the nmea plugin among them.
        qunsetenv("QT_QTESTLIB_RUNNING");
    }

    void cleanup() { qunsetenv("TARVIK_NMEA_SOURCE"); }

    // A recorded file is replayed with its own time stamps: freshly stamped, its
    // first fix is the answer; as recorded (years old) every fix is stale.
    void fileReplay_data()
    {
        QTest::addColumn<bool>("retime");
        QTest::newRow("current time stamps") << true;
        QTest::newRow("recorded time stamps") << false;
    }

    void fileReplay()
    {
        QFETCH(bool, retime);
        Test::CLogCapture log;
        QTemporaryDir dir;
        const QList<QByteArray> sentences = sentencesOf(fixture(QStringLiteral("track.nmea")));
        const QDateTime start = QDateTime::currentDateTimeUtc();
        QFile file(dir.filePath(QStringLiteral("track.nmea")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        for (int i = 0; i < sentences.size(); ++i) {
            const QByteArray& s = sentences.at(i);
            file.write((retime ? CNmeaStreamer::retimed(s, start.addSecs(i / 2)) : s) + "\r\n");
        }
        file.close();
        qputenv("TARVIK_NMEA_SOURCE", file.fileName().toUtf8());
        CLocationEngine engine(timings(2500, 400));
        CLocationProvider provider(nullptr, &engine);
        QSignalSpy spy(&provider, &CLocationProvider::onLocation);
        provider.requestLocation();
        QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, 6000);
        const CLocation location = answerOf(spy);
        QCOMPARE(location.isValid(), retime);
        if (retime) {
            const auto expected = ggaPosition(sentences, 0);
            QVERIFY(qAbs(location.latitude() - expected.first) < 1e-6);
            QVERIFY(qAbs(location.longitude() - expected.second) < 1e-6);
        } else {
            QVERIFY(log.containsPrefix(QStringLiteral("CLocationEngine::onChanged: stale fix")));
            QVERIFY(log.contains(QStringLiteral("CLocationEngine::onTimeout")));
        }
    }

    // The platform default (geoclue2) never answers without a system bus: the
    // engine's own give-up timer must end the request.
    void defaultSourceWithoutGeoclueGivesUp()
    {
        const QByteArray savedBus = qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/tarvik-test-bus");
        CLocationEngine engine(timings(800, 100));
        CLocationProvider provider(nullptr, &engine);
        QSignalSpy spy(&provider, &CLocationProvider::onLocation);
        provider.requestLocation();
        QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, 5000);
        QVERIFY(!answerOf(spy).isValid());
        QVERIFY(!engine.isRunning());
        if (savedBus.isEmpty()) {
            qunsetenv("DBUS_SYSTEM_BUS_ADDRESS");
        } else {
            qputenv("DBUS_SYSTEM_BUS_ADDRESS", savedBus);
        }
    }

    void missingFileGivesInvalidAtOnce()
    {
        QTemporaryDir dir;
        qputenv("TARVIK_NMEA_SOURCE", dir.filePath(QStringLiteral("absent.nmea")).toUtf8());
        CLocationEngine engine(timings(60000, 100));
        CLocationProvider provider(nullptr, &engine);
        QSignalSpy spy(&provider, &CLocationProvider::onLocation);
        provider.requestLocation();
        QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, 2000);
        QVERIFY(!answerOf(spy).isValid());
    }
};

QTEST_GUILESS_MAIN(TestNmea)
#include "tst_nmea.moc"
