// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Send on the compose form until SendReceiveRequest is seen on the session bus, with a
// cached position fix and 100 earlier failed messages in the outbox (all saved again
// with the new one). Also the longest gap between ticks of a 5 ms GUI timer during
// that time: how long the GUI thread was kept from its events.
// Run: build/bin/tarvik-bench-send   (private buses and HOME are made by the program)
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDBusConnection>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>

#include "capplicationstyle.h"
#include "casynctstorage.h"
#include "ccomposetarvikform.h"
#include "cconnectionmanager.h"
#include "cformstack.h"
#include "clocationengine.h"
#include "clocationpopupform.h"
#include "clocationprovider.h"
#include "cnmeastreamer.h"
#include "cprivatebus.h"
#include "ctarvikstorage.h"
#include "dbusobject.h"
#include "uiresources.h"

using namespace Dravo;

namespace {

constexpr int kFailedMessages = 100;

// CPU time of the calling thread: what the GUI thread itself spent, apart from the time
// other processes had the processor.
qint64 threadCpuNs()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return qint64(ts.tv_sec) * 1000000000 + ts.tv_nsec;
}

// Receives the client's bus signal on a second connection, as the daemon would.
class CBusListener : public QObject
{
    Q_OBJECT
public:
    QElapsedTimer* m_pClock = nullptr;
    qint64 m_iSeenNs = -1;

public Q_SLOTS:
    void onSendReceiveRequest() { m_iSeenNs = m_pClock->nsecsElapsed(); }
};

struct CEnvironment
{
    QTemporaryDir home;
    QTemporaryDir nmea;
    Test::CPrivateBuses buses;
    QDBusConnection peer = QDBusConnection(QString());
    CBusListener listener;
    QScopedPointer<CLocationEngine> engine;
    QScopedPointer<CTarvikStorage> storage;
    QScopedPointer<CFormStack> stack;
    bool ok = false;

    bool start()
    {
        if (!buses.start())
            return false;
        qputenv("HOME", home.path().toLocal8Bit());
        initUiResources();
        CApplicationStyle::install();
        Tarvik::DBusObject::instance();
        peer = QDBusConnection::connectToBus(buses.session().address(), "bench-peer");
        if (!peer.connect(QString(), "/com/qel/tarvik", "com.qel.TarvikClient",
                          "SendReceiveRequest", &listener, SLOT(onSendReceiveRequest())))
            return false;
        CAsyncTStorage* pStorage = CAsyncTStorage::getInstance(1);
        QSignalSpy spy(pStorage, &CAsyncTStorage::signalInitialized);
        pStorage->start();
        if (!pStorage->isInitialized() && !spy.wait(10000))
            return false;
        storage.reset(new CTarvikStorage(QStringLiteral("bench_check")));
        CTSettings settings;
        settings.setMynumber("+15550100");
        settings.setScreenname("Ann");
        settings.setRegflag(1);
        storage->saveSettings(settings, 0x01 | 0x02 | 0x08);
        // As the client does a moment after its window shows.
        CConnectionManager::instance()->prepare();
        (void)QTest::qWaitFor(
            [] { return !CConnectionManager::instance()->backendName().isEmpty(); }, 5000);
        return warmFix();
    }

    // One real fix from a freshly stamped NMEA file; later requests answer from the cache.
    bool warmFix()
    {
        QFile in(QStringLiteral(TARVIK_SOURCE_DIR "/tests/gps/data/track.nmea"));
        QFile out(nmea.filePath("track.nmea"));
        if (!in.open(QIODevice::ReadOnly) || !out.open(QIODevice::WriteOnly))
            return false;
        const QDateTime now = QDateTime::currentDateTimeUtc();
        int i = 0;
        for (const QByteArray& line : in.readAll().split('\n')) {
            if (!line.trimmed().isEmpty())
                out.write(Test::CNmeaStreamer::retimed(line.trimmed(), now.addSecs(i++ / 2)) +
                          "\r\n");
        }
        out.close();
        qputenv("TARVIK_NMEA_SOURCE", out.fileName().toUtf8());
        CLocationTimings timings;
        timings.iSettleMs = 100;
        engine.reset(new CLocationEngine(timings));
        CLocationPopupForm::setLocationEngine(engine.data());
        CLocationProvider provider(nullptr, engine.data());
        QSignalSpy spy(&provider, &CLocationProvider::onLocation);
        provider.requestLocation();
        return spy.wait(10000) && qvariant_cast<CLocation>(spy.at(0).at(0)).isValid();
    }

    void fillOutbox()
    {
        storage->removeAllTarviks(CAsyncTStorage::eFolderOutbox);
        QList<CTarvik> lst;
        for (int i = 0; i < kFailedMessages; ++i) {
            CTarvik t;
            t.setFrom("+15550100");
            t.setTo(QStringLiteral("+1555%1").arg(i, 6, 10, QLatin1Char('0')));
            t.setTitle(QStringLiteral("Earlier message %1").arg(i));
            t.setNote(QStringLiteral("This one could not be sent before."));
            t.setDateTime(QDateTime::currentDateTimeUtc());
            t.setLatitude(59.437);
            t.setLongitude(24.7536);
            t.setFlag(0);
            lst << t;
        }
        QList<int> tids;
        storage->saveTarviks(lst, CAsyncTStorage::eFolderOutbox, tids);
    }
};

CEnvironment* g_env = nullptr;

// One Send on a fresh compose form over a full outbox; false when the request never
// came. Latency and the longest GUI gap in nanoseconds.
bool sendOnce(qint64* pLatencyNs, qint64* pGapNs, qint64* pCpuNs)
{
    g_env->fillOutbox();
    g_env->stack.reset(new CFormStack());
    g_env->stack->resize(800, 450);
    g_env->stack->show();
    auto* pForm = new CComposeTarvikForm(g_env->stack.data(), 0, "+15550111,+15550112", "Lunch?",
                                         "At the corner.");
    g_env->stack->showForm(pForm);
    QTest::qWait(CForm::UNLOCK_INTERVAL + 10);

    QElapsedTimer clock;
    g_env->listener.m_pClock = &clock;
    g_env->listener.m_iSeenNs = -1;
    qint64 lastTick = 0;
    qint64 longestGap = 0;
    QTimer ticker;
    ticker.setInterval(5);
    ticker.setTimerType(Qt::PreciseTimer);
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        const qint64 now = clock.nsecsElapsed();
        longestGap = std::max(longestGap, now - lastTick);
        lastTick = now;
    });
    ticker.start();
    const qint64 cpuStart = threadCpuNs();
    clock.start();
    QTest::mouseClick(pForm->btnSend(), Qt::LeftButton);
    // The click itself runs on the GUI thread: it counts as a gap.
    longestGap = std::max(longestGap, clock.nsecsElapsed() - lastTick);
    QElapsedTimer limit;
    limit.start();
    while (g_env->listener.m_iSeenNs < 0 && limit.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    ticker.stop();
    *pCpuNs = threadCpuNs() - cpuStart;
    g_env->stack.reset();
    QTest::qWait(20);
    *pLatencyNs = g_env->listener.m_iSeenNs;
    *pGapNs = longestGap;
    if (qEnvironmentVariableIsSet("TARVIK_BENCH_VERBOSE"))
        fprintf(stderr, "latency %.1f ms, longest gap %.1f ms, GUI thread CPU %.1f ms\n",
                *pLatencyNs / 1e6, *pGapNs / 1e6, *pCpuNs / 1e6);
    return *pLatencyNs >= 0;
}

void BM_SendToBusSignal(benchmark::State& state)
{
    if (!g_env || !g_env->ok) {
        state.SkipWithError("environment did not start");
        return;
    }
    double maxLatencyMs = 0;
    double maxGapMs = 0;
    double cpuMs = 0;
    for (auto _ : state) {
        qint64 latencyNs = 0;
        qint64 gapNs = 0;
        qint64 cpuNs = 0;
        if (!sendOnce(&latencyNs, &gapNs, &cpuNs)) {
            state.SkipWithError("SendReceiveRequest did not arrive");
            return;
        }
        state.SetIterationTime(latencyNs / 1e9);
        maxLatencyMs = std::max(maxLatencyMs, latencyNs / 1e6);
        maxGapMs = std::max(maxGapMs, gapNs / 1e6);
        cpuMs += cpuNs / 1e6;
    }
    state.counters["gui_cpu_ms"] = cpuMs / double(state.iterations());
    state.counters["max_latency_ms"] = maxLatencyMs;
    state.counters["longest_gui_gap_ms"] = maxGapMs;
    state.counters["outbox"] = kFailedMessages + 1;
}
BENCHMARK(BM_SendToBusSignal)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);

}  // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", qgetenv("QT_QPA_PLATFORM").isEmpty() ? QByteArray("offscreen")
                                                                    : qgetenv("QT_QPA_PLATFORM"));
    QApplication app(argc, argv);
    CEnvironment env;
    env.ok = env.start();
    g_env = &env;
    // The first Send of a process also loads the network backend and the popup's
    // images; it is reported apart from the steady figures.
    qint64 latencyNs = 0;
    qint64 gapNs = 0;
    qint64 cpuNs = 0;
    if (env.ok && sendOnce(&latencyNs, &gapNs, &cpuNs))
        printf(
            "first send after start: %.1f ms to SendReceiveRequest, longest GUI gap %.1f ms, "
            "GUI thread CPU %.1f ms\n",
            latencyNs / 1e6, gapNs / 1e6, cpuNs / 1e6);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    g_env = nullptr;
    CLocationPopupForm::setLocationEngine(nullptr);
    return env.ok ? 0 : 1;
}

#include "bench_send.moc"
