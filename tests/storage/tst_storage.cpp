// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The database file and every storage operation on a throwaway HOME.
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QSqlError>
#include <QTest>

#include <sqlite3.h>
#include <unistd.h>

#include <memory>

#include "cprivatebus.h"
#include "ctarvikstorage.h"
#include "storagefixture.h"

using namespace Dravo;
using Dravo::Test::CScopedHome;
using Dravo::Test::CScopedMount;
using Dravo::Test::CSideConnection;
using Dravo::Test::fields;
using Dravo::Test::makeTarvik;

using Folder = CTarvikStorage::eFolderName;

namespace {
int g_connection = 0;
QString nextName()
{
    return QStringLiteral("test_%1").arg(++g_connection);
}
}  // namespace

class StorageOperationsTest : public QObject
{
    Q_OBJECT

private:
    Test::CPrivateBuses m_buses;

private Q_SLOTS:
    void initTestCase();

    void createsDatabaseAndFetchesImei_data();
    void createsDatabaseAndFetchesImei();
    void versionRule_data();
    void versionRule();

    void getTarviksOrderAndPaging_data();
    void getTarviksOrderAndPaging();
    void saveTarviksPartialSuccess();
    void saveTarviksEveryField_data();
    void saveTarviksEveryField();
    void twoProcessesOpenOneFile_data();
    void twoProcessesOpenOneFile();
    void removeOperations();
    void settingsMask_data();
    void settingsMask();
    void settingsConversionFailure();
    void locationRequestRoundTrip();

    void folderOutOfRange_data();
    void folderOutOfRange();
    void closedDatabase();
    void notADatabase();
    void lockedByAnotherConnection();
    void databaseFull();
    void readOnlyLocations();
};

void StorageOperationsTest::initTestCase()
{
    CTarvikStorage::initResources();
    QVERIFY2(m_buses.start(), qPrintable(m_buses.errorString()));
}

void StorageOperationsTest::createsDatabaseAndFetchesImei_data()
{
    QTest::addColumn<QStringList>("fakeArgs");
    QTest::addColumn<QString>("imei");
    QTest::newRow("SIM service") << QStringList{"--sim", "356938035643809"}
                                 << QStringLiteral("356938035643809");
    QTest::newRow("ModemManager") << QStringList{"--modem", "490154203237518"}
                                  << QStringLiteral("490154203237518");
    QTest::newRow("SIM wins over ModemManager")
        << QStringList{"--sim", "356938035643809", "--modem", "490154203237518"}
        << QStringLiteral("356938035643809");
    QTest::newRow("SIM with empty IMEI, ModemManager answers")
        << QStringList{"--sim", "", "--modem", "490154203237518"}
        << QStringLiteral("490154203237518");
    QTest::newRow("neither") << QStringList{} << QString();
}

void StorageOperationsTest::createsDatabaseAndFetchesImei()
{
    QFETCH(QStringList, fakeArgs);
    QFETCH(QString, imei);
    Test::CHelperProcess fakes;
    if (!fakeArgs.isEmpty()) {
        QVERIFY(fakes.start(Test::binaryPath(QStringLiteral("tarvik-fakes")), fakeArgs));
    }
    CScopedHome home;
    QVERIFY(!QDir(home.dataDir()).exists());

    CTarvikStorage storage(nextName());
    QVERIFY(storage.isOpen());
    QVERIFY(QFile::exists(home.dbPath()));
    CTSettings settings;
    QVERIFY(storage.getSettings(settings));
    QCOMPARE(settings.version(), QStringLiteral("1.0.5"));
    QCOMPARE(settings.imei(), imei);
    CSideConnection side(home.dbPath());
    QCOMPARE(
        side.scalar(QStringLiteral("select value is null from settings where name='imei'")).toInt(),
        imei.isEmpty() ? 1 : 0);
}

void StorageOperationsTest::versionRule_data()
{
    QTest::addColumn<QString>("versionSql");
    QTest::addColumn<bool>("recreated");
    QTest::newRow("older version")
        << QStringLiteral("update settings set value='1.0.4' where name='version'") << true;
    QTest::newRow("NULL version") << QStringLiteral(
                                         "update settings set value=NULL where name='version'")
                                  << true;
    QTest::newRow("no version row")
        << QStringLiteral("delete from settings where name='version'") << false;
    QTest::newRow("same version") << QString() << false;
}

void StorageOperationsTest::versionRule()
{
    QFETCH(QString, versionSql);
    QFETCH(bool, recreated);
    CScopedHome home;
    {
        CTarvikStorage first(nextName());
        int tid = -1;
        QVERIFY(
            first.saveTarvik(makeTarvik(QStringLiteral("kept?"), 1000), Folder::eFolderInbox, tid));
        CTSettings settings;
        settings.setMynumber(QStringLiteral("+3725550000"));
        QVERIFY(first.saveSettings(settings, CTSettings::eMaskMynumber));
    }
    if (!versionSql.isEmpty()) {
        CSideConnection side(home.dbPath());
        QVERIFY(side.exec(versionSql));
    }
    CTarvikStorage storage(nextName());
    QVERIFY(storage.isOpen());
    QList<CTarvik> inbox;
    QVERIFY(storage.getTarviks(Folder::eFolderInbox, inbox));
    QCOMPARE(inbox.size(), recreated ? 0 : 1);
    CTSettings settings;
    QVERIFY(storage.getSettings(settings));
    QCOMPARE(settings.mynumber().isEmpty(), recreated);
    if (recreated) {
        QCOMPARE(settings.version(), QStringLiteral("1.0.5"));
    }
}

void StorageOperationsTest::getTarviksOrderAndPaging_data()
{
    QTest::addColumn<int>("limit");
    QTest::addColumn<int>("offset");
    QTest::addColumn<QStringList>("titles");
    QTest::newRow("all, newest first") << -1 << 0 << QStringList{"c", "b", "a"};
    QTest::newRow("limit 0") << 0 << 0 << QStringList{};
    QTest::newRow("limit 2") << 2 << 0 << QStringList{"c", "b"};
    QTest::newRow("limit 1 offset 1") << 1 << 1 << QStringList{"b"};
    QTest::newRow("offset past the end") << -1 << 5 << QStringList{};
}

void StorageOperationsTest::getTarviksOrderAndPaging()
{
    QFETCH(int, limit);
    QFETCH(int, offset);
    QFETCH(QStringList, titles);
    CScopedHome home;
    CTarvikStorage storage(nextName());
    QList<int> tids;
    // Inserted out of time order: the folder is listed by time, not by id.
    QVERIFY(
        storage.saveTarviks({makeTarvik("b", 2000), makeTarvik("a", 1000), makeTarvik("c", 3000)},
                            Folder::eFolderSent, tids));
    QList<CTarvik> tarviks;
    QVERIFY(storage.getTarviks(Folder::eFolderSent, tarviks, limit, offset));
    QStringList got;
    for (const CTarvik& t : tarviks) {
        got << t.title();
    }
    QCOMPARE(got, titles);
    QList<CTarvik> other;
    QVERIFY(storage.getTarviks(Folder::eFolderInbox, other));
    QVERIFY(other.isEmpty());
}

void StorageOperationsTest::saveTarviksPartialSuccess()
{
    CScopedHome home;
    CTarvikStorage storage(nextName());
    CTarvik ghost = makeTarvik(QStringLiteral("ghost"), 2000);
    ghost.setId(77);
    QList<int> tids;
    QVERIFY(!storage.saveTarviks({makeTarvik("one", 1000), ghost, makeTarvik("three", 3000)},
                                 Folder::eFolderOutbox, tids));
    QCOMPARE(tids, (QList<int>{1, 2}));
    // Alone, the unknown id fails the same way and reports no id.
    int tid = 0;
    QVERIFY(!storage.saveTarvik(ghost, Folder::eFolderOutbox, tid));
    QCOMPARE(tid, -1);
    QList<CTarvik> outbox;
    QVERIFY(storage.getTarviks(Folder::eFolderOutbox, outbox));
    QCOMPARE(outbox.size(), 2);
    QCOMPARE(outbox.at(0).title(), QStringLiteral("three"));

    QList<int> none;
    QVERIFY(!storage.saveTarviks({}, Folder::eFolderOutbox, none));
    QVERIFY(none.isEmpty());
}

void StorageOperationsTest::saveTarviksEveryField_data()
{
    QTest::addColumn<bool>("existing");
    QTest::addColumn<bool>("rolledBack");
    QTest::newRow("new ids") << false << false;
    QTest::newRow("existing ids") << true << false;
    QTest::newRow("new ids, batch rolled back") << false << true;
    QTest::newRow("existing ids, batch rolled back") << true << true;
}

void StorageOperationsTest::saveTarviksEveryField()
{
    QFETCH(bool, existing);
    QFETCH(bool, rolledBack);
    CScopedHome home;
    CTarvikStorage storage(nextName());
    QList<CTarvik> batch;
    for (int i = 1; i <= 3; ++i) {
        // Every field set and unlike its neighbours, so a value bound to the wrong column
        // shows; the messages of the batch differ too.
        CTarvik t = Test::makeFullTarvik();
        t.setGuid(QStringLiteral("guid%1").arg(i));
        t.setTitle(QStringLiteral("title%1").arg(i));
        int tid = -1;
        if (existing) {
            QVERIFY(storage.saveTarvik(makeTarvik("old", i), Folder::eFolderDraft, tid));
        }
        t.setId(tid);
        batch << t;
    }
    if (rolledBack) {
        // The trigger rolls the whole transaction back, as SQLite does on an I/O error; the
        // storage then saves item by item, where the failing item fails alone.
        CSideConnection side(home.dbPath());
        const char* event = existing ? "update" : "insert";
        QVERIFY(side.exec(QStringLiteral("create trigger boom before %1 on draft when "
                                         "new.ttitle='boom' begin select raise(rollback, "
                                         "'boom'); end")
                              .arg(QLatin1String(event))));
        CTarvik boom = batch.at(1);
        boom.setTitle(QStringLiteral("boom"));
        batch.insert(1, boom);
    }
    QList<int> tids;
    QCOMPARE(storage.saveTarviks(batch, Folder::eFolderDraft, tids), !rolledBack);
    if (rolledBack) {
        batch.removeAt(1);
    }
    QCOMPARE(tids.size(), 3);
    for (int i = 0; i < 3; ++i) {
        CTarvik back;
        QVERIFY(storage.getTarvik(tids.at(i), Folder::eFolderDraft, back));
        QCOMPARE(fields(back), fields(batch.at(i)));
        if (existing) {
            QCOMPARE(back.id(), batch.at(i).id());
        }
    }
    QList<CTarvik> all;
    QVERIFY(storage.getTarviks(Folder::eFolderDraft, all));
    QCOMPARE(all.size(), 3);
}

namespace {
// One side of the two-process race: opens the database in the HOME it inherited, saves one
// message titled `title` and exits 0 when the save succeeded. Its log goes to stderr.
int raceChild(const QString& title)
{
    CTarvikStorage::initResources();
    CTarvikStorage storage(QStringLiteral("race"));
    int tid = -1;
    return storage.saveTarvik(makeTarvik(title, 1), Folder::eFolderInbox, tid) ? 0 : 1;
}
}  // namespace

void StorageOperationsTest::twoProcessesOpenOneFile_data()
{
    QTest::addColumn<bool>("outdated");
    QTest::newRow("fresh file") << false;
    QTest::newRow("outdated file") << true;
}

void StorageOperationsTest::twoProcessesOpenOneFile()
{
    QFETCH(bool, outdated);
    for (int round = 0; round < 15; ++round) {
        CScopedHome home;
        if (outdated) {
            {
                CTarvikStorage old(nextName());
                int tid = -1;
                QVERIFY(old.saveTarvik(makeTarvik("old", 1), Folder::eFolderInbox, tid));
            }
            CSideConnection side(home.dbPath());
            QVERIFY(
                side.exec(QStringLiteral("update settings set value='1.0.4' where "
                                         "name='version'")));
        }
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("*.debug=true"));
        QProcess a;
        QProcess b;
        a.setProcessEnvironment(env);
        b.setProcessEnvironment(env);
        a.start(QCoreApplication::applicationFilePath(), {"--race-child", "a"});
        b.start(QCoreApplication::applicationFilePath(), {"--race-child", "b"});
        QVERIFY(a.waitForFinished(20000) && b.waitForFinished(20000));
        const QString logs = QString::fromLocal8Bit(a.readAllStandardError()) +
                             QString::fromLocal8Bit(b.readAllStandardError());
        QVERIFY2(a.exitCode() == 0 && b.exitCode() == 0, qPrintable(logs));
        const int recreated = logs.count(QStringLiteral("recreating DB"));
        QVERIFY2(recreated == (outdated ? 1 : 0), qPrintable(logs));
        CSideConnection side(home.dbPath());
        QCOMPARE(side.scalar(QStringLiteral("select group_concat(ttitle) from (select ttitle "
                                            "from inbox order by ttitle)"))
                     .toString(),
                 QStringLiteral("a,b"));
        QCOMPARE(side.scalar(QStringLiteral("select value from settings where name='version'"))
                     .toString(),
                 QStringLiteral("1.0.5"));
    }
}

void StorageOperationsTest::removeOperations()
{
    CScopedHome home;
    CTarvikStorage storage(nextName());
    QList<int> tids;
    QVERIFY(storage.saveTarviks({makeTarvik("a", 1), makeTarvik("b", 2), makeTarvik("c", 3)},
                                Folder::eFolderInbox, tids));
    QVERIFY(!storage.removeTarvik(99, Folder::eFolderInbox));
    QVERIFY(!storage.removeTarviks({}, Folder::eFolderInbox));
    // One missing tid fails the call but does not stop the others.
    QVERIFY(!storage.removeTarviks({tids.at(0), 99, tids.at(2)}, Folder::eFolderInbox));
    QList<CTarvik> inbox;
    QVERIFY(storage.getTarviks(Folder::eFolderInbox, inbox));
    QCOMPARE(inbox.size(), 1);
    QCOMPARE(inbox.first().title(), QStringLiteral("b"));
    // A tid of another folder is not removed.
    QVERIFY(!storage.removeTarvik(tids.at(1), Folder::eFolderSent));
    QVERIFY(storage.removeAllTarviks(Folder::eFolderInbox));
    QVERIFY(storage.getTarviks(Folder::eFolderInbox, inbox = {}));
    QVERIFY(inbox.isEmpty());
}

void StorageOperationsTest::settingsMask_data()
{
    QTest::addColumn<uint>("mask");
    QTest::addColumn<QStringList>("written");
    QTest::newRow("0 writes nothing") << 0u << QStringList{};
    QTest::newRow("screen name and number") << 0x03u << QStringList{"screenname", "mynumber"};
    QTest::newRow("regflag only") << 0x08u << QStringList{"regflag"};
    QTest::newRow("high bits ignored") << 0xFFFFFFE0u << QStringList{};
    QTest::newRow("all") << 0x3Fu
                         << QStringList{"screenname", "mynumber", "imsi", "regflag",
                                        "pollinginterval"};
}

void StorageOperationsTest::settingsMask()
{
    QFETCH(uint, mask);
    QFETCH(QStringList, written);
    CScopedHome home;
    CTarvikStorage storage(nextName());
    CTSettings before;
    QVERIFY(storage.getSettings(before));

    CTSettings settings;
    settings.setImei(QStringLiteral("000000000000000"));
    settings.setVersion(QStringLiteral("9.9.9"));
    settings.setScreenname(QStringLiteral("Mari"));
    settings.setMynumber(QStringLiteral("+3725551234"));
    settings.setImsi(QStringLiteral("248010000000001"));
    settings.setRegflag(1);
    settings.setPollinginterval(15);
    QVERIFY(storage.saveSettings(settings, mask));

    CTSettings after;
    QVERIFY(storage.getSettings(after));
    QCOMPARE(after.imei(), before.imei());
    QCOMPARE(after.version(), QStringLiteral("1.0.5"));
    QCOMPARE(after.screenname(),
             written.contains("screenname") ? settings.screenname() : QString());
    QCOMPARE(after.mynumber(), written.contains("mynumber") ? settings.mynumber() : QString());
    QCOMPARE(after.imsi(), written.contains("imsi") ? settings.imsi() : QString());
    QCOMPARE(after.regflag(), written.contains("regflag") ? 1 : 0);
    QCOMPARE(after.pollinginterval(), written.contains("pollinginterval") ? 15 : 0);
    CSideConnection side(home.dbPath());
    QCOMPARE(side.scalar(QStringLiteral("select count(*) from settings")).toInt(), 9);
}

void StorageOperationsTest::settingsConversionFailure()
{
    CScopedHome home;
    CTarvikStorage storage(nextName());
    {
        CSideConnection side(home.dbPath());
        QVERIFY(
            side.exec(QStringLiteral("update settings set value='Mari' where name='screenname'")));
        QVERIFY(side.exec(QStringLiteral("update settings set value='' where name='regflag'")));
    }
    CTSettings settings;
    QVERIFY(!storage.getSettings(settings));
    QCOMPARE(settings.screenname(), QStringLiteral("Mari"));
}

void StorageOperationsTest::locationRequestRoundTrip()
{
    CScopedHome home;
    CTarvikStorage storage(nextName());
    CLocationRequest request;
    request.setProvidelocation(1);
    request.setProvidelocationperiod(30);
    request.addScheduleEntry(1, QStringLiteral("08:00"), QStringLiteral("12:00"));
    request.addScheduleEntry(1, QStringLiteral("13:00"), QStringLiteral("17:00"));
    request.addScheduleEntry(5, QStringLiteral("anything"), QStringLiteral(" kept as is "));
    QVERIFY(storage.saveLocationRequest(request, CLocationRequest::eMaskAll));
    CLocationRequest loaded;
    QVERIFY(storage.getLocationRequest(loaded));
    QCOMPARE(loaded.providelocation(), 1);
    QCOMPARE(loaded.providelocationperiod(), 30);
    QCOMPARE(loaded.schedule(), request.schedule());

    // Only the schedule bit: replaced whole, flags untouched; an empty list empties it.
    CLocationRequest cleared;
    QVERIFY(storage.saveLocationRequest(cleared, CLocationRequest::eMaskSchedule));
    QVERIFY(storage.getLocationRequest(loaded = CLocationRequest()));
    QCOMPARE(loaded.providelocation(), 1);
    QVERIFY(loaded.schedule().isEmpty());

    {
        CSideConnection side(home.dbPath());
        QVERIFY(side.exec(QStringLiteral(
            "update settings set value='often' where name='providelocationperiod'")));
    }
    QVERIFY(!storage.getLocationRequest(loaded));
}

void StorageOperationsTest::folderOutOfRange_data()
{
    QTest::addColumn<int>("folder");
    QTest::newRow("-1") << -1;
    QTest::newRow("4") << 4;
}

void StorageOperationsTest::folderOutOfRange()
{
    QFETCH(int, folder);
    CScopedHome home;
    CTarvikStorage storage(nextName());
    const auto f = static_cast<Folder>(folder);
    CTarvik tarvik;
    QList<CTarvik> tarviks;
    QList<int> tids;
    int tid = 0;
    QVERIFY(!storage.getTarvik(1, f, tarvik));
    QVERIFY(!storage.getTarviks(f, tarviks));
    QVERIFY(!storage.saveTarvik(makeTarvik("x", 1), f, tid));
    QCOMPARE(tid, -1);
    QVERIFY(!storage.saveTarviks({makeTarvik("x", 1)}, f, tids));
    QVERIFY(!storage.removeTarvik(1, f));
    QVERIFY(!storage.removeTarviks({1}, f));
    QVERIFY(!storage.removeAllTarviks(f));
    CSideConnection side(home.dbPath());
    QCOMPARE(side.scalar(QStringLiteral("select count(*) from inbox")).toInt(), 0);
}

void StorageOperationsTest::closedDatabase()
{
    CScopedHome home;
    // The data directory's name is taken by a file: the database cannot be created.
    QFile blocker(home.path() + QStringLiteral("/.tarvik"));
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    CTarvikStorage storage(nextName());
    QVERIFY(!storage.isOpen());
    CTarvik tarvik;
    QList<CTarvik> tarviks;
    QList<int> tids;
    int tid = 0;
    CTSettings settings;
    CLocationRequest request;
    const Folder inbox = Folder::eFolderInbox;
    const bool anySucceeded =
        storage.getTarvik(1, inbox, tarvik) || storage.getTarviks(inbox, tarviks) ||
        storage.saveTarvik(tarvik, inbox, tid) || storage.saveTarviks({tarvik}, inbox, tids) ||
        storage.removeTarvik(1, inbox) || storage.removeTarviks({1}, inbox) ||
        storage.removeAllTarviks(inbox) || storage.getSettings(settings) ||
        storage.saveSettings(settings, 0x1F) || storage.getLocationRequest(request) ||
        storage.saveLocationRequest(request, 0x7);
    QVERIFY(!anySucceeded);
}

void StorageOperationsTest::notADatabase()
{
    CScopedHome home;
    QVERIFY(QDir().mkpath(home.dataDir()));
    QByteArray garbage(64 * 1024, Qt::Uninitialized);
    QRandomGenerator generator(7);
    for (char& c : garbage) {
        c = char(generator.bounded(256));
    }
    QFile file(home.dbPath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(garbage);
    file.close();

    CTarvikStorage storage(nextName());
    QList<CTarvik> inbox;
    QVERIFY(!storage.getTarviks(Folder::eFolderInbox, inbox));
    int tid = 0;
    QVERIFY(!storage.saveTarvik(makeTarvik("x", 1), Folder::eFolderInbox, tid));
    CTSettings settings;
    QVERIFY(!storage.getSettings(settings));
    // The file is somebody's data: it is neither replaced nor touched.
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), garbage);
}

void StorageOperationsTest::lockedByAnotherConnection()
{
    CScopedHome home;
    CTarvikStorage storage(nextName());
    int tid = -1;
    QVERIFY(storage.saveTarvik(makeTarvik("before", 1), Folder::eFolderInbox, tid));

    sqlite3* daemon = nullptr;
    QCOMPARE(sqlite3_open(home.dbPath().toUtf8().constData(), &daemon), SQLITE_OK);
    QCOMPARE(sqlite3_exec(daemon, "BEGIN EXCLUSIVE; insert into inbox (ttitle) values ('daemon');",
                          nullptr, nullptr, nullptr),
             SQLITE_OK);

    int newTid = 0;
    QVERIFY(!storage.saveTarvik(makeTarvik("blocked", 2), Folder::eFolderInbox, newTid));
    QList<CTarvik> inbox;
    QVERIFY(!storage.getTarviks(Folder::eFolderInbox, inbox));

    QCOMPARE(sqlite3_exec(daemon, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(daemon);
    QVERIFY(storage.getTarviks(Folder::eFolderInbox, inbox));
    QCOMPARE(inbox.size(), 2);
    QVERIFY(storage.saveTarvik(makeTarvik("after", 3), Folder::eFolderInbox, newTid));
}

void StorageOperationsTest::databaseFull()
{
    CScopedHome home;
    CTarvikStorage storage(nextName());
    QList<int> tids;
    QVERIFY(
        storage.saveTarviks({makeTarvik("a", 1), makeTarvik("b", 2)}, Folder::eFolderInbox, tids));
    // Cap the file at its current size: SQLite then reports "database or disk is full"
    // exactly as on a full disk.
    QSqlDatabase db = QSqlDatabase::database(storage.connectionName(), false);
    QSqlQuery pragma(db);
    QVERIFY(pragma.exec(QStringLiteral("pragma page_count")) && pragma.next());
    const int pages = pragma.value(0).toInt();
    QVERIFY(pragma.exec(QStringLiteral("pragma max_page_count = %1").arg(pages)));
    pragma.finish();

    QList<CTarvik> big;
    for (int i = 0; i < 20; ++i) {
        CTarvik t = makeTarvik(QStringLiteral("big%1").arg(i), 100 + i);
        t.setNote(QString(4000, QLatin1Char('x')));
        big << t;
    }
    QList<int> saved;
    QVERIFY(!storage.saveTarviks(big, Folder::eFolderInbox, saved));
    QList<CTarvik> inbox;
    QVERIFY(storage.getTarviks(Folder::eFolderInbox, inbox));
    // Whatever was reported saved is really there, and nothing older was lost.
    QCOMPARE(inbox.size(), 2 + saved.size());
    QVERIFY(pragma.exec(QStringLiteral("pragma max_page_count = 1000000")));
    pragma.finish();
    int tid = -1;
    QVERIFY(storage.saveTarvik(makeTarvik("room again", 500), Folder::eFolderInbox, tid));
}

void StorageOperationsTest::readOnlyLocations()
{
    CScopedHome home;
    const bool root = geteuid() == 0;
    std::unique_ptr<CScopedMount> mount;
    if (root) {
        mount = std::make_unique<CScopedMount>(home.dataDir(), QStringLiteral("1m"));
        if (!mount->mounted()) {
            QSKIP("NEEDS ROOT WITH MOUNT: no permission to mount a tmpfs for a read-only home");
        }
    }
    {
        CTarvikStorage storage(nextName());
        int tid = -1;
        QVERIFY(storage.saveTarvik(makeTarvik("stored", 1), Folder::eFolderInbox, tid));
    }
    if (root) {
        QVERIFY(mount->remountReadOnly());
    } else {
        QVERIFY(QFile::setPermissions(home.dbPath(), QFileDevice::ReadOwner));
        QVERIFY(
            QFile::setPermissions(home.dataDir(), QFileDevice::ReadOwner | QFileDevice::ExeOwner));
    }
    CTarvikStorage storage(nextName());
    QList<CTarvik> inbox;
    QVERIFY(storage.getTarviks(Folder::eFolderInbox, inbox));
    QCOMPARE(inbox.size(), 1);
    int tid = -1;
    QVERIFY(!storage.saveTarvik(makeTarvik("refused", 2), Folder::eFolderInbox, tid));
    CTSettings settings;
    settings.setScreenname(QStringLiteral("x"));
    QVERIFY(!storage.saveSettings(settings, CTSettings::eMaskScreenname));
    QVERIFY(storage.getTarviks(Folder::eFolderInbox, inbox = {}));
    QCOMPARE(inbox.size(), 1);
    if (!root) {
        QFile::setPermissions(home.dataDir(), QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                  QFileDevice::ExeOwner);
    }
}

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "--race-child") == 0) {
        return raceChild(QString::fromLocal8Bit(argv[2]));
    }
    StorageOperationsTest test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_storage.moc"
