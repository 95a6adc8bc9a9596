// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The database file and every storage operation on a throwaway HOME.
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QSqlError>
#include <QTest>

#include <sqlite3.h>
#include <unistd.h>

#include <functional>
#include <memory>

#include "clogcapture.h"
#include "cprivatebus.h"
#include "ctarvikstorage.h"
#include "storagefixture.h"

using namespace Dravo;
using Dravo::Test::CLogCapture;
using Dravo::Test::CScopedHome;
using Dravo::Test::CSideConnection;
using Dravo::Test::makeTarvik;

using Folder = CTarvikStorage::eFolderName;

namespace {
int g_connection = 0;
QString nextName()
{
    return QStringLiteral("test_%1").arg(++g_connection);
}

QString dump(const CLogCapture& log)
{
    return log.lines().join(QLatin1Char('\n'));
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
    void saveInsertAndUpdate();
    void saveUnknownIdInsertsNothing();
    void saveTarviksPartialSuccess();
    void saveTarviksSeenByOtherConnections();
    void removeOperations();
    void hugeNoteAndHostileText();
    void hostileRowsFromAnotherProgram();
    void settingsMask_data();
    void settingsMask();
    void settingsConversionFailure();
    void locationRequestRoundTrip();

    void folderOutOfRange_data();
    void folderOutOfRange();
    void closedDatabase_data();
    void closedDatabase();
    void notADatabase();
    void lockedByAnotherConnection();
    void databaseFull();
    void readOnlyLocations();
    void diskFullAtCreation();
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

    CLogCapture log;
    const QString name = nextName();
    CTarvikStorage storage(name);
    QVERIFY(storage.isOpen());
    QVERIFY(QFile::exists(home.dbPath()));

    const QStringList expected = {
        QStringLiteral("CTarvikStorage::CTarvikStorage constructor m_strConnectionName = ") + name,
        QStringLiteral("CTarvikStorage::openDatabase creating database"),
        QStringLiteral("CTarvikStorage::openDatabase write SW version to a new DB after creating"),
        QStringLiteral("CTarvikStorage::openDatabase get IMEI started"),
        imei.isEmpty() ? QStringLiteral("CTarvikStorage::openDatabase failed to get imei")
                       : QStringLiteral("CTarvikStorage::openDatabase get IMEI ended: ") + imei,
    };
    QCOMPARE(log.lines(), expected);

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
    QTest::addColumn<QString>("logLine");
    QTest::newRow("older version")
        << QStringLiteral("update settings set value='1.0.4' where name='version'") << true
        << QStringLiteral(
               "CTarvikStorage::openDatabase: recreating DB since SW & DB versions are not equal");
    QTest::newRow("NULL version")
        << QStringLiteral("update settings set value=NULL where name='version'") << true
        << QStringLiteral(
               "CTarvikStorage::openDatabase: recreating DB since SW & DB versions are not equal");
    QTest::newRow("no version row")
        << QStringLiteral("delete from settings where name='version'") << false
        << QStringLiteral("CTarvikStorage::openDatabase failed to get version from query");
    QTest::newRow("same version") << QString() << false << QString();
}

void StorageOperationsTest::versionRule()
{
    QFETCH(QString, versionSql);
    QFETCH(bool, recreated);
    QFETCH(QString, logLine);
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
    CLogCapture log;
    CTarvikStorage storage(nextName());
    QVERIFY(storage.isOpen());
    if (!logLine.isEmpty()) {
        QVERIFY2(log.contains(logLine), qPrintable(dump(log)));
    }
    QCOMPARE(log.contains(QStringLiteral("CTarvikStorage::openDatabase creating database")),
             recreated);
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

void StorageOperationsTest::saveInsertAndUpdate()
{
    CScopedHome home;
    CTarvikStorage storage(nextName());
    CTarvik tarvik = makeTarvik(QStringLiteral("first"), 1255244709, 37.77493, -122.41942);
    tarvik.setColor(QStringLiteral("#ff8800"));
    tarvik.setCountry(372);
    tarvik.setPriority(3);
    int tid = 0;
    QVERIFY(storage.saveTarvik(tarvik, Folder::eFolderDraft, tid));
    QCOMPARE(tid, 1);

    CTarvik loaded;
    QVERIFY(storage.getTarvik(tid, Folder::eFolderDraft, loaded));
    QCOMPARE(loaded.id(), tid);
    QCOMPARE(loaded.title(), tarvik.title());
    QCOMPARE(loaded.dateTime(), tarvik.dateTime());
    QCOMPARE(loaded.latitude(), 37.77493);
    QCOMPARE(loaded.longitude(), -122.41942);
    QCOMPARE(loaded.carrier(), QStringLiteral("n/a"));
    QCOMPARE(loaded.color(), QStringLiteral("#ff8800"));
    QCOMPARE(loaded.country(), 372);
    QCOMPARE(loaded.priority(), 3);
    QCOMPARE(loaded.flag(), 1);
    QCOMPARE(loaded.toXml(), [&] {
        CTarvik expected = tarvik;
        expected.setId(tid);
        return expected.toXml();
    }());

    loaded.setTitle(QStringLiteral("edited"));
    loaded.setFlag(0);
    int updated = -1;
    QVERIFY(storage.saveTarvik(loaded, Folder::eFolderDraft, updated));
    QCOMPARE(updated, tid);
    QList<CTarvik> drafts;
    QVERIFY(storage.getTarviks(Folder::eFolderDraft, drafts));
    QCOMPARE(drafts.size(), 1);
    QCOMPARE(drafts.first().title(), QStringLiteral("edited"));
    QCOMPARE(drafts.first().flag(), 0);

    CTarvik missing;
    CLogCapture log;
    QVERIFY(!storage.getTarvik(42, Folder::eFolderDraft, missing));
    QVERIFY(log.contains(
        QStringLiteral("CTarvikStorage::getTarvik tid=42 failed to get record from query")));
}

void StorageOperationsTest::saveUnknownIdInsertsNothing()
{
    CScopedHome home;
    CTarvikStorage storage(nextName());
    CTarvik tarvik = makeTarvik(QStringLiteral("ghost"), 1000);
    tarvik.setId(5);
    int tid = 0;
    CLogCapture log;
    QVERIFY(!storage.saveTarvik(tarvik, Folder::eFolderOutbox, tid));
    QCOMPARE(tid, -1);
    QVERIFY(log.contains(
        QStringLiteral("CTarvikStorage::saveTarvik tid=5 failed to get record from query")));
    QList<CTarvik> outbox;
    QVERIFY(storage.getTarviks(Folder::eFolderOutbox, outbox));
    QVERIFY(outbox.isEmpty());
}

void StorageOperationsTest::saveTarviksPartialSuccess()
{
    CScopedHome home;
    CTarvikStorage storage(nextName());
    CTarvik ghost = makeTarvik(QStringLiteral("ghost"), 2000);
    ghost.setId(77);
    QList<int> tids;
    CLogCapture log;
    QVERIFY(!storage.saveTarviks({makeTarvik("one", 1000), ghost, makeTarvik("three", 3000)},
                                 Folder::eFolderOutbox, tids));
    QCOMPARE(tids, (QList<int>{1, 2}));
    QVERIFY(log.contains(QStringLiteral("CTarvikStorage::saveTarviks i=1 failed to save tarvik")));
    QList<CTarvik> outbox;
    QVERIFY(storage.getTarviks(Folder::eFolderOutbox, outbox));
    QCOMPARE(outbox.size(), 2);
    QCOMPARE(outbox.at(0).title(), QStringLiteral("three"));

    log.clear();
    QList<int> none;
    QVERIFY(!storage.saveTarviks({}, Folder::eFolderOutbox, none));
    QVERIFY(none.isEmpty());
    QVERIFY(log.contains(QStringLiteral(
        "CTarvikStorage::saveTarviks the list is empty - there is nothing to save")));
}

void StorageOperationsTest::saveTarviksSeenByOtherConnections()
{
    CScopedHome home;
    CTarvikStorage storage(nextName());
    QList<CTarvik> batch;
    for (int i = 0; i < 50; ++i) {
        batch << makeTarvik(QStringLiteral("m%1").arg(i), 1000 + i);
    }
    QList<int> tids;
    QVERIFY(storage.saveTarviks(batch, Folder::eFolderSent, tids));
    QCOMPARE(tids.size(), 50);
    QCOMPARE(tids.first(), 1);
    QCOMPARE(tids.last(), 50);
    // Committed: the daemon's connection sees every row, and nothing is left locked.
    CSideConnection side(home.dbPath());
    QCOMPARE(side.scalar(QStringLiteral("select count(*) from sent")).toInt(), 50);
    QVERIFY(side.exec(QStringLiteral("insert into sent (ttitle) values ('daemon')")));
}

void StorageOperationsTest::removeOperations()
{
    CScopedHome home;
    CTarvikStorage storage(nextName());
    QList<int> tids;
    QVERIFY(storage.saveTarviks({makeTarvik("a", 1), makeTarvik("b", 2), makeTarvik("c", 3)},
                                Folder::eFolderInbox, tids));
    CLogCapture log;
    QVERIFY(!storage.removeTarvik(99, Folder::eFolderInbox));
    QVERIFY(log.contains(
        QStringLiteral("CTarvikStorage::removeTarvik tid=99 failed to get record from query")));
    QVERIFY(!storage.removeTarviks({}, Folder::eFolderInbox));
    QVERIFY(log.contains(QStringLiteral("CTarvikStorage::removeTarviks the tids list is empty")));
    // One missing tid fails the call but does not stop the others.
    QVERIFY(!storage.removeTarviks({tids.at(0), 99, tids.at(2)}, Folder::eFolderInbox));
    QVERIFY(log.contains(
        QStringLiteral("CTarvikStorage::removeTarviks i=1 tid=99 failed to remove tarvik")));
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

void StorageOperationsTest::hugeNoteAndHostileText()
{
    CScopedHome home;
    CTarvikStorage storage(nextName());
    CTarvik tarvik = makeTarvik(QStringLiteral("'); drop table inbox; --"), 5);
    QString note;
    note.reserve(1 << 20);
    while (note.size() < (1 << 20)) {
        note += QStringLiteral("Tere \u00f5\u00e4\u00f6\u00fc \U0001F30D <&> \" ' \0 ");
    }
    tarvik.setNote(note);
    tarvik.setScreenname(QStringLiteral("<script>alert(1)</script>"));
    int tid = -1;
    QVERIFY(storage.saveTarvik(tarvik, Folder::eFolderInbox, tid));
    CTarvik loaded;
    QVERIFY(storage.getTarvik(tid, Folder::eFolderInbox, loaded));
    QCOMPARE(loaded.note().size(), note.size());
    QCOMPARE(loaded.note(), note);
    QCOMPARE(loaded.title(), tarvik.title());
    QVERIFY(loaded.toXml().contains(QStringLiteral("&lt;script&gt;")));
}

void StorageOperationsTest::hostileRowsFromAnotherProgram()
{
    CScopedHome home;
    CTarvikStorage storage(nextName());
    {
        CSideConnection side(home.dbPath());
        QVERIFY(side.exec(QStringLiteral(
            "insert into inbox (tutcdatetime, ttz, ttitle, tlatitude, tlongitude, tpriority, "
            "tcountry, tflag) "
            "values ('soon', 'x', 'text in numbers', 'n/a', '24,75', 'high', 'EE', 'yes')")));
        QVERIFY(
            side.exec(QStringLiteral("insert into inbox (tguid, tfrom, tto, tutcdatetime, ttz, "
                                     "ttitle, tnote, tlatitude, tlongitude, "
                                     "tpriority, tcolor, tcountry, tcarrier, tflag) values (NULL, "
                                     "NULL, NULL, NULL, NULL, NULL, NULL, "
                                     "NULL, NULL, NULL, NULL, NULL, NULL, NULL)")));
    }
    QList<CTarvik> inbox;
    CLogCapture log;
    QVERIFY(storage.getTarviks(Folder::eFolderInbox, inbox));
    QCOMPARE(inbox.size(), 2);
    for (const CTarvik& t : inbox) {
        QVERIFY(t.id() > 0);
        QCOMPARE(t.tz(), 0);
        QCOMPARE(t.flag(), 0);
        QCOMPARE(t.latitude(), 0.0);
    }
    QVERIFY(
        log.contains(QStringLiteral("CTarvikStorage::retrieveTarvikFromQuery invalid tflag: yes")));
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
    CLogCapture log;
    QVERIFY(!storage.getSettings(settings));
    QVERIFY(log.contains(
        QStringLiteral("CTarvikStorage::getSettings failed to convert regflag to int")));
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
    CLogCapture log;
    QVERIFY(!storage.getLocationRequest(loaded));
    QVERIFY(log.contains(QStringLiteral(
        "CTarvikStorage::getLocationRequest failed to convert providelocationperiod to int")));
}

void StorageOperationsTest::folderOutOfRange_data()
{
    QTest::addColumn<int>("folder");
    QTest::newRow("-1") << -1;
    QTest::newRow("4") << 4;
    QTest::newRow("huge") << (1 << 30);
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
    CLogCapture log;
    QVERIFY(!storage.getTarvik(1, f, tarvik));
    QVERIFY(!storage.getTarviks(f, tarviks));
    QVERIFY(!storage.saveTarvik(makeTarvik("x", 1), f, tid));
    QCOMPARE(tid, -1);
    QVERIFY(!storage.saveTarviks({makeTarvik("x", 1)}, f, tids));
    QVERIFY(!storage.removeTarvik(1, f));
    QVERIFY(!storage.removeTarviks({1}, f));
    QVERIFY(!storage.removeAllTarviks(f));
    for (const char* op : {"getTarvik", "getTarviks", "saveTarvik", "saveTarviks", "removeTarvik",
                           "removeTarviks", "removeAllTarviks"}) {
        const QString line = QStringLiteral("CTarvikStorage::%1 invalid folder=%2")
                                 .arg(QLatin1String(op))
                                 .arg(folder);
        QVERIFY2(log.contains(line), qPrintable(line));
    }
    CSideConnection side(home.dbPath());
    QCOMPARE(side.scalar(QStringLiteral("select count(*) from inbox")).toInt(), 0);
}

void StorageOperationsTest::closedDatabase_data()
{
    QTest::addColumn<QString>("operation");
    for (const char* op : {"getTarvik", "getTarviks", "saveTarvik", "saveTarviks", "removeTarvik",
                           "removeTarviks", "removeAllTarviks", "getSettings", "saveSettings",
                           "getLocationRequest", "saveLocationRequest"}) {
        QTest::newRow(op) << QString::fromLatin1(op);
    }
}

void StorageOperationsTest::closedDatabase()
{
    QFETCH(QString, operation);
    CScopedHome home;
    // The data directory's name is taken by a file: the database cannot be created.
    QFile blocker(home.path() + QStringLiteral("/.tarvik"));
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    CLogCapture log;
    CTarvikStorage storage(nextName());
    QVERIFY(!storage.isOpen());
    QVERIFY(
        log.contains(QStringLiteral("CTarvikStorage::createDatabase() failed to create db path")));
    QVERIFY(log.contains(QStringLiteral("CTarvikStorage::openDatabase failed to create database")));

    CTarvik tarvik;
    QList<CTarvik> tarviks;
    QList<int> tids;
    int tid = 0;
    CTSettings settings;
    CLocationRequest request;
    const Folder inbox = Folder::eFolderInbox;
    const QHash<QString, std::function<bool()>> calls = {
        {"getTarvik", [&] { return storage.getTarvik(1, inbox, tarvik); }},
        {"getTarviks", [&] { return storage.getTarviks(inbox, tarviks); }},
        {"saveTarvik", [&] { return storage.saveTarvik(tarvik, inbox, tid); }},
        {"saveTarviks", [&] { return storage.saveTarviks({tarvik}, inbox, tids); }},
        {"removeTarvik", [&] { return storage.removeTarvik(1, inbox); }},
        {"removeTarviks", [&] { return storage.removeTarviks({1}, inbox); }},
        {"removeAllTarviks", [&] { return storage.removeAllTarviks(inbox); }},
        {"getSettings", [&] { return storage.getSettings(settings); }},
        {"saveSettings", [&] { return storage.saveSettings(settings, 0x1F); }},
        {"getLocationRequest", [&] { return storage.getLocationRequest(request); }},
        {"saveLocationRequest", [&] { return storage.saveLocationRequest(request, 0x7); }},
    };
    log.clear();
    QVERIFY(!calls.value(operation)());
    QVERIFY2(log.contains(QStringLiteral("CTarvikStorage::%1 db is not opened").arg(operation)),
             qPrintable(dump(log)));
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

    CLogCapture log;
    CTarvikStorage storage(nextName());
    QVERIFY(log.containsPrefix(
        QStringLiteral("CTarvikStorage::openDatabase failed to execute select version query")));
    QList<CTarvik> inbox;
    QVERIFY(!storage.getTarviks(Folder::eFolderInbox, inbox));
    QVERIFY(log.containsPrefix(
        QStringLiteral("CTarvikStorage::retrieveTarviksFromQuery failed to execute query")));
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

    CLogCapture log;
    QElapsedTimer timer;
    timer.start();
    int newTid = 0;
    QVERIFY(!storage.saveTarvik(makeTarvik("blocked", 2), Folder::eFolderInbox, newTid));
    QList<CTarvik> inbox;
    QVERIFY(!storage.getTarviks(Folder::eFolderInbox, inbox));
    const qint64 elapsed = timer.elapsed();
    QVERIFY2(elapsed < 2 * (CTarvikStorage::busyTimeoutMs + 1000),
             qPrintable(QString::number(elapsed)));
    QVERIFY2(
        log.containsPrefix(QStringLiteral("CTarvikStorage::saveTarvik failed to exec query: ")),
        qPrintable(dump(log)));

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
    CLogCapture log;
    QList<int> saved;
    QVERIFY(!storage.saveTarviks(big, Folder::eFolderInbox, saved));
    QVERIFY(
        log.containsPrefix(QStringLiteral("CTarvikStorage::saveTarvik failed to exec query: ")));
    QList<CTarvik> inbox;
    QVERIFY(storage.getTarviks(Folder::eFolderInbox, inbox));
    // Whatever was reported saved is really there, and nothing older was lost.
    QCOMPARE(inbox.size(), 2 + saved.size());
    QVERIFY(pragma.exec(QStringLiteral("pragma max_page_count = 1000000")));
    pragma.finish();
    int tid = -1;
    QVERIFY(storage.saveTarvik(makeTarvik("room again", 500), Folder::eFolderInbox, tid));
}

namespace {
bool runCommand(const QString& program, const QStringList& args)
{
    QProcess process;
    process.start(program, args);
    return process.waitForFinished(10000) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

// A small tmpfs mounted at `path`, so the test can make it read-only or fill it up
// even when it runs as root (which ignores file modes).
class CScopedMount
{
public:
    CScopedMount(const QString& path, const QString& size)
        : m_strPath(path),
          m_bMounted(QDir().mkpath(path) &&
                     runCommand(QStringLiteral("mount"),
                                {"-t", "tmpfs", "-o", "size=" + size, "tmpfs", path}))
    {
    }
    ~CScopedMount()
    {
        if (m_bMounted) {
            runCommand(QStringLiteral("umount"), {"-l", m_strPath});
        }
    }
    bool mounted() const { return m_bMounted; }
    bool remountReadOnly() const
    {
        return runCommand(QStringLiteral("mount"), {"-o", "remount,ro", m_strPath});
    }

private:
    QString m_strPath;
    bool m_bMounted;
};
}  // namespace

void StorageOperationsTest::readOnlyLocations()
{
    CScopedHome home;
    const bool root = geteuid() == 0;
    std::unique_ptr<CScopedMount> mount;
    if (root) {
        mount = std::make_unique<CScopedMount>(home.dataDir(), QStringLiteral("1m"));
        if (!mount->mounted()) {
            QSKIP(
                "running as root without permission to mount a tmpfs: read-only cannot be "
                "simulated");
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
    CLogCapture log;
    CTarvikStorage storage(nextName());
    QList<CTarvik> inbox;
    QVERIFY(storage.getTarviks(Folder::eFolderInbox, inbox));
    QCOMPARE(inbox.size(), 1);
    int tid = -1;
    QVERIFY(!storage.saveTarvik(makeTarvik("refused", 2), Folder::eFolderInbox, tid));
    QVERIFY(
        log.containsPrefix(QStringLiteral("CTarvikStorage::saveTarvik failed to exec query: ")));
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

void StorageOperationsTest::diskFullAtCreation()
{
    if (geteuid() != 0) {
        QSKIP("filling a disk needs a private tmpfs, which needs root");
    }
    CScopedHome home;
    CScopedMount mount(home.dataDir(), QStringLiteral("64k"));
    if (!mount.mounted()) {
        QSKIP("no permission to mount a tmpfs");
    }
    // Fill the disk so the template copy cannot be written.
    QFile filler(home.dataDir() + QStringLiteral("filler"));
    QVERIFY(filler.open(QIODevice::WriteOnly));
    const QByteArray block(4096, 'f');
    while (filler.write(block) == block.size() && filler.flush()) {
    }
    filler.close();
    CLogCapture log;
    CTarvikStorage storage(nextName());
    QVERIFY(!storage.isOpen());
    QVERIFY2(log.containsPrefix(
                 QStringLiteral("CTarvikStorage::createDatabase() failed to write to stream: ")),
             qPrintable(dump(log)));
    QVERIFY(!QFile::exists(home.dbPath()));
    QList<CTarvik> inbox;
    QVERIFY(!storage.getTarviks(Folder::eFolderInbox, inbox));
}

QTEST_GUILESS_MAIN(StorageOperationsTest)
#include "tst_storage.moc"
