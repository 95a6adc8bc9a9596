// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The worker-thread storage service: shared named instances, queued requests and
// broadcast answers, order, user data, refusal before start, quit, and a GUI thread
// that keeps turning while the worker is busy.
#include <QElapsedTimer>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <sqlite3.h>

#include "casynctstorage.h"
#include "cprivatebus.h"
#include "storagefixture.h"

using namespace Dravo;
using Folder = CAsyncTStorage::eFolderName;

namespace {
// A thousand single writes are the point of one test; on a memory file system they cost
// no disk syncs, so the test measures the draining and not the disk.
const bool g_bTmpfs = [] {
    if (QFileInfo(QStringLiteral("/dev/shm")).isWritable()) {
        qputenv("TMPDIR", "/dev/shm");
    }
    return true;
}();

class CTag : public CTarvikStorage::CUserData
{
public:
    explicit CTag(int n) : number(n) {}
    int number;
};
}  // namespace

class StorageAsyncTest : public QObject
{
    Q_OBJECT

private:
    Test::CScopedHome m_home;
    Test::CPrivateBuses m_buses;
    CAsyncTStorage* m_pStorage = nullptr;

private Q_SLOTS:
    void initTestCase();
    void sharedNamedInstances();
    void refusedBeforeInitialisation();
    void answersCarryFolderAndUserData();
    void strictOrderAndBroadcast();
    void requestSignalsDriveTheWorker();
    void guiThreadKeepsTurning();
    void quitFinishesQueuedWritesAndRefusesLaterOnes();
};

void StorageAsyncTest::initTestCase()
{
    QVERIFY2(m_buses.start(), qPrintable(m_buses.errorString()));
    CAsyncTStorage::registerMetaTypes();
    m_pStorage = CAsyncTStorage::getInstance(11);
    QSignalSpy initialized(m_pStorage, &CAsyncTStorage::signalInitialized);
    m_pStorage->start();
    QVERIFY(initialized.wait(10000));
    QVERIFY(m_pStorage->isInitialized());
}

void StorageAsyncTest::sharedNamedInstances()
{
    CAsyncTStorage* ui = CAsyncTStorage::getInstance(1);
    QCOMPARE(CAsyncTStorage::getInstance(1), ui);
    QVERIFY(CAsyncTStorage::getInstance(7) != ui);
    QVERIFY(!ui->isRunning());
}

void StorageAsyncTest::refusedBeforeInitialisation()
{
    CAsyncTStorage* idle = CAsyncTStorage::getInstance(12);
    QSignalSpy requests(idle, &CAsyncTStorage::signalGetSettingsRequest);
    QSignalSpy saves(idle, &CAsyncTStorage::signalSaveTarvikRequest);
    QVERIFY(!idle->isInitialized());
    QVERIFY(!idle->getSettings());
    QVERIFY(!idle->saveTarvik(Test::makeTarvik("x", 1), Folder::eFolderDraft));
    QVERIFY(!idle->getTarviks(Folder::eFolderInbox));
    QVERIFY(!idle->removeAllTarviks(Folder::eFolderInbox));
    QCOMPARE(requests.count(), 0);
    QCOMPARE(saves.count(), 0);
}

void StorageAsyncTest::answersCarryFolderAndUserData()
{
    CTag tag(42);
    QSignalSpy saved(m_pStorage, &CAsyncTStorage::signalTarvikSaved);
    QVERIFY(m_pStorage->saveTarvik(Test::makeTarvik("tagged", 100), Folder::eFolderDraft, &tag));
    QVERIFY(saved.wait(5000));
    QCOMPARE(saved.first().at(0).toBool(), true);
    const int tid = saved.first().at(1).toInt();
    QVERIFY(tid > 0);
    QCOMPARE(saved.first().at(2).toUInt(), uint(Folder::eFolderDraft));
    auto* back = saved.first().at(3).value<CTarvikStorage::CUserData*>();
    QCOMPARE(back, static_cast<CTarvikStorage::CUserData*>(&tag));
    QCOMPARE(static_cast<CTag*>(back)->number, 42);

    QSignalSpy gotten(m_pStorage, &CAsyncTStorage::signalTarvikGotten);
    QVERIFY(m_pStorage->getTarvik(tid, Folder::eFolderDraft));
    QVERIFY(gotten.wait(5000));
    QCOMPARE(gotten.first().at(1).value<CTarvik>().title(), QStringLiteral("tagged"));
    QVERIFY(gotten.first().at(3).value<CTarvikStorage::CUserData*>() == nullptr);

    QSignalSpy removed(m_pStorage, &CAsyncTStorage::signalTarvikRemoved);
    QVERIFY(m_pStorage->removeTarvik(tid + 1000, Folder::eFolderDraft, &tag));
    QVERIFY(removed.wait(5000));
    QCOMPARE(removed.first().at(0).toBool(), false);
    QCOMPARE(removed.first().at(1).toInt(), tid + 1000);
}

void StorageAsyncTest::strictOrderAndBroadcast()
{
    QStringList order;
    QStringList second;
    auto c1 =
        connect(m_pStorage, &CAsyncTStorage::signalTarviksSaved, this,
                [&](bool, QList<int>, uint, CTarvikStorage::CUserData*) { order << "saved"; });
    auto c2 = connect(
        m_pStorage, &CAsyncTStorage::signalTarviksGotten, this,
        [&](bool ok, QList<CTarvik> tarviks, uint folder, CTarvikStorage::CUserData*) {
            order << QStringLiteral("gotten %1 %2 %3").arg(ok).arg(tarviks.size()).arg(folder);
        });
    auto c3 = connect(
        m_pStorage, &CAsyncTStorage::signalTarviksGotten, this,
        [&](bool, QList<CTarvik>, uint, CTarvikStorage::CUserData*) { second << "gotten"; });
    QList<CTarvik> batch;
    for (int i = 0; i < 200; ++i) {
        batch << Test::makeTarvik(QStringLiteral("o%1").arg(i), i);
    }
    QVERIFY(m_pStorage->removeAllTarviks(Folder::eFolderSent));
    QVERIFY(m_pStorage->saveTarviks(batch, Folder::eFolderSent));
    QVERIFY(m_pStorage->getTarviks(Folder::eFolderSent));
    QVERIFY(m_pStorage->getTarviks(Folder::eFolderSent, 5, 0));
    QTRY_COMPARE_WITH_TIMEOUT(order.size(), 3, 10000);
    QCOMPARE(order, (QStringList{"saved", "gotten 1 200 2", "gotten 1 5 2"}));
    QCOMPARE(second.size(), 2);
    disconnect(c1);
    disconnect(c2);
    disconnect(c3);
}

void StorageAsyncTest::requestSignalsDriveTheWorker()
{
    CTSettings settings;
    settings.setScreenname(QStringLiteral("Mari"));
    QSignalSpy savedSettings(m_pStorage, &CAsyncTStorage::signalSettingsSaved);
    QSignalSpy gotSettings(m_pStorage, &CAsyncTStorage::signalSettingsGotten);
    Q_EMIT m_pStorage->signalSaveSettingsRequest(settings, CTSettings::eMaskScreenname);
    Q_EMIT m_pStorage->signalGetSettingsRequest();
    QTRY_COMPARE_WITH_TIMEOUT(gotSettings.count(), 1, 5000);
    QCOMPARE(savedSettings.count(), 1);
    QCOMPARE(savedSettings.first().at(1).toUInt(), uint(CTSettings::eMaskScreenname));
    QCOMPARE(gotSettings.first().at(1).value<CTSettings>().screenname(), QStringLiteral("Mari"));

    CLocationRequest request;
    request.addScheduleEntry(3, QStringLiteral("09:00"), QStringLiteral("10:00"));
    QSignalSpy gotRequest(m_pStorage, &CAsyncTStorage::signalLocationRequestGotten);
    QVERIFY(m_pStorage->saveLocationRequest(request, CLocationRequest::eMaskSchedule));
    QVERIFY(m_pStorage->getLocationRequest());
    QTRY_COMPARE_WITH_TIMEOUT(gotRequest.count(), 1, 5000);
    QCOMPARE(gotRequest.first().at(1).value<CLocationRequest>().schedule(), request.schedule());
}

void StorageAsyncTest::guiThreadKeepsTurning()
{
    // Another connection holds the database: the worker's write waits out SQLite's
    // busy time-out (seconds) while the GUI thread's timer must keep firing on time.
    sqlite3* daemon = nullptr;
    QCOMPARE(sqlite3_open(m_home.dbPath().toUtf8().constData(), &daemon), SQLITE_OK);
    QCOMPARE(sqlite3_exec(daemon, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);

    QElapsedTimer clock;
    qint64 last = 0;
    qint64 worstGap = 0;
    int ticks = 0;
    QTimer timer;
    timer.setInterval(10);
    connect(&timer, &QTimer::timeout, this, [&] {
        const qint64 now = clock.elapsed();
        worstGap = qMax(worstGap, now - last);
        last = now;
        ++ticks;
    });
    QSignalSpy saved(m_pStorage, &CAsyncTStorage::signalTarvikSaved);
    clock.start();
    timer.start();
    QVERIFY(m_pStorage->saveTarvik(Test::makeTarvik("waits", 1), Folder::eFolderInbox));
    QVERIFY(saved.wait(3 * CTarvikStorage::busyTimeoutMs));
    timer.stop();
    sqlite3_exec(daemon, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(daemon);

    QCOMPARE(saved.first().at(0).toBool(), false);
    QVERIFY2(clock.elapsed() >= CTarvikStorage::busyTimeoutMs - 200,
             "the worker did not wait for the lock");
    QVERIFY2(ticks > CTarvikStorage::busyTimeoutMs / 20, qPrintable(QString::number(ticks)));
    // Blocked, the GUI would miss its timer for the whole wait; a busy machine delays it
    // far less than that.
    QVERIFY2(worstGap < CTarvikStorage::busyTimeoutMs / 2,
             qPrintable(QStringLiteral("worst gap %1 ms").arg(worstGap)));
}

void StorageAsyncTest::quitFinishesQueuedWritesAndRefusesLaterOnes()
{
    CAsyncTStorage* other = CAsyncTStorage::getInstance(13);
    QSignalSpy initialized(other, &CAsyncTStorage::signalInitialized);
    other->start();
    QVERIFY(initialized.wait(10000));
    QVERIFY(m_pStorage->removeAllTarviks(Folder::eFolderOutbox));
    for (int i = 0; i < 1000; ++i) {
        QVERIFY(m_pStorage->saveTarvik(Test::makeTarvik(QStringLiteral("q%1").arg(i), i),
                                       Folder::eFolderOutbox));
    }
    QVERIFY(m_pStorage->saveSettings(CTSettings(), 0));

    QSignalSpy before1(m_pStorage, &CAsyncTStorage::beforeDestroy);
    QSignalSpy before2(other, &CAsyncTStorage::beforeDestroy);
    // What QCoreApplication emits when its event loop ends.
    QVERIFY(QMetaObject::invokeMethod(QCoreApplication::instance(), "aboutToQuit",
                                      Qt::DirectConnection));
    QCOMPARE(before1.count(), 1);
    QCOMPARE(before2.count(), 1);
    QVERIFY(!m_pStorage->saveTarvik(Test::makeTarvik("late", 1), Folder::eFolderOutbox));
    QVERIFY(!m_pStorage->saveSettings(CTSettings(), CTSettings::eMaskScreenname));
    QVERIFY(m_pStorage->wait(CAsyncTStorage::drainTimeoutMs));
    QVERIFY(other->wait(5000));
    QVERIFY(!m_pStorage->isInitialized());

    CTarvikStorage reopened(QStringLiteral("reopened"));
    QList<CTarvik> outbox;
    QVERIFY(reopened.getTarviks(Folder::eFolderOutbox, outbox));
    QCOMPARE(outbox.size(), 1000);
    QCOMPARE(outbox.first().title(), QStringLiteral("q999"));
}

QTEST_GUILESS_MAIN(StorageAsyncTest)
#include "tst_asyncstorage.moc"
