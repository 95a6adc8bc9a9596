// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QGeoPositionInfoSource>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include "clocationengine.h"
#include "clocationprovider.h"
#include "clogcapture.h"

using namespace Dravo;

namespace {

// A position source driven by the test.
class CTestSource : public QGeoPositionInfoSource
{
public:
    explicit CTestSource(QObject* parent) : QGeoPositionInfoSource(parent) {}

    QGeoPositionInfo lastKnownPosition(bool) const override { return QGeoPositionInfo(); }
    PositioningMethods supportedPositioningMethods() const override
    {
        return SatellitePositioningMethods;
    }
    int minimumUpdateInterval() const override { return 0; }
    Error error() const override { return m_error; }
    void startUpdates() override
    {
        ++m_iStarts;
        m_bActive = true;
    }
    void stopUpdates() override
    {
        ++m_iStops;
        m_bActive = false;
    }
    void requestUpdate(int) override { startUpdates(); }

    void fix(double lat, double lon, const QDateTime& time = QDateTime::currentDateTime())
    {
        Q_EMIT positionUpdated(QGeoPositionInfo(QGeoCoordinate(lat, lon), time));
    }
    void fail(Error error)
    {
        m_error = error;
        Q_EMIT errorOccurred(error);
    }

    int m_iStarts = 0;
    int m_iStops = 0;
    bool m_bActive = false;
    Error m_error = NoError;
};

CLocation answerOf(const QSignalSpy& spy, int index = 0)
{
    return qvariant_cast<CLocation>(spy.at(index).at(0));
}

}  // namespace

class TestLocationEngine : public QObject
{
    Q_OBJECT

private:
    // An engine with short timers whose source the test drives.
    CLocationEngine* makeEngine(int giveUpMs = 2000, int settleMs = 150, int maxAgeS = 600)
    {
        CLocationEngine::CTimings timings;
        timings.iGiveUpMs = giveUpMs;
        timings.iSettleMs = settleMs;
        timings.iMaxAgeS = maxAgeS;
        m_pSource = nullptr;
        auto* engine = new CLocationEngine(timings, [this](QObject* parent) {
            m_pSource = new CTestSource(parent);
            return m_pSource.data();
        });
        engine->setParent(this);
        return engine;
    }

    QPointer<CTestSource> m_pSource;

private Q_SLOTS:
    void answerIsPostedAndCachedFixAnswersAtOnce()
    {
        CLocationEngine* engine = makeEngine();
        CLocationProvider provider(nullptr, engine);
        QSignalSpy spy(&provider, &CLocationProvider::onLocation);
        provider.requestLocation();
        QVERIFY(m_pSource);
        QCOMPARE(m_pSource->m_iStarts, 1);
        m_pSource->fix(59.437, 24.7536);
        QVERIFY(engine->isSettling());
        QTRY_COMPARE(spy.count(), 1);
        QVERIFY(answerOf(spy).isValid());
        QCOMPARE(answerOf(spy).latitude(), 59.437);
        QCOMPARE(answerOf(spy).longitude(), 24.7536);
        QVERIFY(!provider.isConnected());
        QVERIFY(!m_pSource->m_bActive);

        // Within the cache age: answered from the cache, source not started again,
        // and never from inside requestLocation() itself.
        provider.requestLocation();
        QCOMPARE(spy.count(), 1);
        QTRY_COMPARE(spy.count(), 2);
        QCOMPARE(m_pSource->m_iStarts, 1);
        QCOMPARE(answerOf(spy, 1).latitude(), 59.437);
    }

    void expiredCacheStartsSource()
    {
        CLocationEngine* engine = makeEngine(2000, 50, 1);
        CLocationProvider provider(nullptr, engine);
        QSignalSpy spy(&provider, &CLocationProvider::onLocation);
        provider.requestLocation();
        m_pSource->fix(1.0, 2.0);
        QTRY_COMPARE(spy.count(), 1);
        QTest::qWait(1100);
        provider.requestLocation();
        QCOMPARE(m_pSource->m_iStarts, 2);
        m_pSource->fix(3.0, 4.0);
        QTRY_COMPARE(spy.count(), 2);
        QCOMPARE(answerOf(spy, 1).latitude(), 3.0);
    }

    void fixAge_data()
    {
        QTest::addColumn<int>("ageS");
        QTest::addColumn<bool>("used");
        QTest::newRow("fresh") << 0 << true;
        QTest::newRow("599 s") << 599 << true;
        QTest::newRow("601 s") << 601 << false;
        QTest::newRow("a day") << 86400 << false;
    }

    void fixAge()
    {
        QFETCH(int, ageS);
        QFETCH(bool, used);
        Test::CLogCapture log;
        CLocationEngine* engine = makeEngine(600, 100);
        CLocationProvider provider(nullptr, engine);
        QSignalSpy spy(&provider, &CLocationProvider::onLocation);
        provider.requestLocation();
        m_pSource->fix(10.0, 20.0, QDateTime::currentDateTime().addSecs(-ageS));
        QCOMPARE(engine->isSettling(), used);
        if (!used) {
            // The stale fix restarts the source to ask for a new one.
            QCOMPARE(m_pSource->m_iStops, 1);
            QCOMPARE(m_pSource->m_iStarts, 2);
            QVERIFY(m_pSource->m_bActive);
            QVERIFY(log.containsPrefix(QStringLiteral("CLocationEngine::onChanged: stale fix")));
        }
        QTRY_COMPARE(spy.count(), 1);
        QCOMPARE(answerOf(spy).isValid(), used);
        QCOMPARE(log.contains(QStringLiteral("CLocationEngine::onTimeout")), !used);
    }

    void lastReceiverDisconnectStopsEverything()
    {
        CLocationEngine* engine = makeEngine(300, 100);
        auto* first = new CLocationProvider(nullptr, engine);
        CLocationProvider second(nullptr, engine);
        QSignalSpy spyFirst(first, &CLocationProvider::onLocation);
        QSignalSpy spySecond(&second, &CLocationProvider::onLocation);
        first->requestLocation();
        first->requestLocation();  // already waiting: no second request
        second.requestLocation();
        QCOMPARE(m_pSource->m_iStarts, 1);  // the second provider joins the running request
        std::vector<std::unique_ptr<QObject>> receivers(300);
        for (auto& receiver : receivers) {
            receiver = std::make_unique<QObject>();
            connect(engine, &CLocationEngine::onLocation, receiver.get(), [](CLocation) {});
        }
        m_pSource->fix(5.0, 6.0);
        QVERIFY(engine->isSettling());

        delete first;  // one receiver left: keeps running
        QCoreApplication::processEvents();
        QVERIFY(engine->isRunning());
        QVERIFY(m_pSource->m_bActive);

        // Plain receivers destroyed while connected: every signal-slot mutex is met
        // (they are picked by address), and none may be held while the engine looks.
        receivers.clear();
        QCoreApplication::processEvents();
        QVERIFY(engine->isRunning());

        second.cancel();
        QTRY_VERIFY(!engine->isRunning());
        QVERIFY(!engine->isSettling());
        QVERIFY(!engine->isGivingUpTimerActive());
        QVERIFY(!m_pSource->m_bActive);
        QCOMPARE(spyFirst.count(), 0);
        QCOMPARE(spySecond.count(), 0);
    }

    void sourceErrorGivesInvalid_data()
    {
        QTest::addColumn<int>("error");
        QTest::newRow("access") << int(QGeoPositionInfoSource::AccessError);
        QTest::newRow("closed: the service stopped") << int(QGeoPositionInfoSource::ClosedError);
        QTest::newRow("unknown") << int(QGeoPositionInfoSource::UnknownSourceError);
        QTest::newRow("timeout") << int(QGeoPositionInfoSource::UpdateTimeoutError);
    }

    void sourceErrorGivesInvalid()
    {
        QFETCH(int, error);
        CLocationEngine* engine = makeEngine(5000, 1000);
        CLocationProvider provider(nullptr, engine);
        QSignalSpy spy(&provider, &CLocationProvider::onLocation);
        provider.requestLocation();
        m_pSource->fix(1.0, 2.0);  // even during settling an error ends the request
        m_pSource->fail(static_cast<QGeoPositionInfoSource::Error>(error));
        QVERIFY(!m_pSource->m_bActive);
        QTRY_COMPARE(spy.count(), 1);
        QVERIFY(!answerOf(spy).isValid());
    }

    void noSourceGivesInvalid()
    {
        CLocationEngine engine(CLocationEngine::CTimings(), [](QObject*) {
            return static_cast<QGeoPositionInfoSource*>(nullptr);
        });
        CLocationProvider provider(nullptr, &engine);
        QSignalSpy spy(&provider, &CLocationProvider::onLocation);
        provider.requestLocation();
        QCOMPARE(spy.count(), 0);
        QTRY_COMPARE(spy.count(), 1);
        QVERIFY(!answerOf(spy).isValid());
    }

    void queuedReceiverAcrossThreadGetsLocation()
    {
        // The signal travels queued, so the type must be registered under its short name.
        CLocationEngine* engine = makeEngine(2000, 20);
        QThread thread;
        QObject receiver;
        receiver.moveToThread(&thread);
        thread.start();
        // Also when a check below fails: the thread ends before its receiver goes.
        const auto stop = qScopeGuard([&thread] {
            thread.quit();
            thread.wait();
        });
        QAtomicInt got(0);
        QObject::connect(
            engine, &CLocationEngine::onLocation, &receiver,
            [&got](CLocation location) { got = location.isValid() ? 1 : 2; }, Qt::QueuedConnection);
        QTRY_VERIFY(m_pSource && m_pSource->m_bActive);
        m_pSource->fix(1.5, 2.5);
        QTRY_COMPARE(int(got), 1);
    }
};

QTEST_GUILESS_MAIN(TestLocationEngine)
#include "tst_clocationengine.moc"
