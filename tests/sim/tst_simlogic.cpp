// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The simulator's logic without the bus: options, scripted messages, recipient
// matching, and the outbox/inbox work on a real database file.
#include <QFile>
#include <QSet>
#include <QTest>

#include "cincomingscript.h"
#include "cprivatebus.h"
#include "csimoptions.h"
#include "csimstore.h"
#include "ctarvikstorage.h"
#include "simfixture.h"

using namespace Dravo;

class SimLogicTest : public QObject
{
    Q_OBJECT

private:
    Test::CPrivateBuses m_buses;

    static QList<CTarvik> folder(CTarvikStorage::eFolderName name)
    {
        CTarvikStorage storage(QStringLiteral("test_reader"));
        QList<CTarvik> tarviks;
        storage.getTarviks(name, tarviks);
        return tarviks;
    }

private Q_SLOTS:
    void initTestCase();
    void options_data();
    void options();
    void scriptFromJson_data();
    void scriptFromJson();
    void scriptTakesEntriesInTurn();
    void addressedTo_data();
    void addressedTo();
    void sendOutbox_data();
    void sendOutbox();
    void missingDatabaseIsNotCreated();
    void corruptDatabaseIsLeftAlone();
    void demoFillsOnlyEmptyFolders();
};

void SimLogicTest::initTestCase()
{
    // The storage asks the system bus for an IMEI when it creates a database.
    QVERIFY2(m_buses.start(), qPrintable(m_buses.errorString()));
}

void SimLogicTest::options_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<int>("registerMode");
    QTest::addColumn<int>("sendMode");
    QTest::addColumn<int>("delay");
    QTest::addColumn<int>("incoming");

    QTest::newRow("defaults") << QStringList() << true << int(CSimOptions::eRegisterSucceed)
                              << int(CSimOptions::eSendAll) << 800 << 1;
    QTest::newRow("all set") << QStringList{"--register", "fail", "--send",     "partial",
                                            "--delay",    "0",    "--incoming", "3"}
                             << true << int(CSimOptions::eRegisterFail)
                             << int(CSimOptions::eSendPartial) << 0 << 3;
    QTest::newRow("silent") << QStringList{"--register=silent", "--send=silent"} << true
                            << int(CSimOptions::eRegisterSilent) << int(CSimOptions::eSendSilent)
                            << 800 << 1;
    QTest::newRow("send fail") << QStringList{"--send", "fail"} << true
                               << int(CSimOptions::eRegisterSucceed) << int(CSimOptions::eSendFail)
                               << 800 << 1;
    QTest::newRow("unknown send mode")
        << QStringList{"--send", "maybe"} << false << 0 << 0 << 0 << 0;
    QTest::newRow("mode in capitals")
        << QStringList{"--register", "FAIL"} << false << 0 << 0 << 0 << 0;
    QTest::newRow("negative delay") << QStringList{"--delay", "-5"} << false << 0 << 0 << 0 << 0;
    QTest::newRow("delay not a number")
        << QStringList{"--delay", "1s"} << false << 0 << 0 << 0 << 0;
    QTest::newRow("register without number")
        << QStringList{"--register-at-start", "--number", " "} << false << 0 << 0 << 0 << 0;
    QTest::newRow("unknown option") << QStringList{"--bogus"} << false << 0 << 0 << 0 << 0;
}

void SimLogicTest::options()
{
    QFETCH(QStringList, args);
    QFETCH(bool, ok);
    args.prepend(QStringLiteral("tarvik-simd"));
    CSimOptions options;
    QString error;
    QCOMPARE(options.parse(args, &error), ok);
    QCOMPARE(error.isEmpty(), ok);
    if (ok) {
        QTEST(int(options.m_eRegisterMode), "registerMode");
        QTEST(int(options.m_eSendMode), "sendMode");
        QTEST(options.m_iDelayMs, "delay");
        QTEST(options.m_iIncoming, "incoming");
    }
}

void SimLogicTest::scriptFromJson_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QStringList>("senders");
    QTest::addColumn<int>("warnings");

    const QByteArray aino = R"({"from":"+358405550101","screenname":"Aino","title":"Hi",
        "note":"At the market","latitude":60.1675,"longitude":24.9525,"tz":2})";
    QTest::newRow("two good") << QByteArray(
                                     "[" + aino +
                                     R"(,{"from":"b@example.org","screenname":"B","title":"t",
        "note":"n","latitude":-33.86,"longitude":151.21}])")
                              << true << QStringList{"+358405550101", "b@example.org"} << 0;
    QTest::newRow("sender missing")
        << QByteArray("[" + aino + R"(,{"title":"x","latitude":1,"longitude":2}])") << true
        << QStringList{"+358405550101"} << 1;
    QTest::newRow("latitude off the globe")
        << QByteArray("[" + aino + R"(,{"from":"c","latitude":91,"longitude":0}])") << true
        << QStringList{"+358405550101"} << 1;
    QTest::newRow("longitude off the globe")
        << QByteArray("[" + aino + R"(,{"from":"c","latitude":0,"longitude":-180.5}])") << true
        << QStringList{"+358405550101"} << 1;
    QTest::newRow("position as text")
        << QByteArray("[" + aino + R"(,{"from":"c","latitude":"60.1","longitude":"24.9"}])") << true
        << QStringList{"+358405550101"} << 1;
    QTest::newRow("not an object")
        << QByteArray("[" + aino + ",42]") << true << QStringList{"+358405550101"} << 1;
    QTest::newRow("nothing usable")
        << QByteArray(R"([{"from":"","latitude":1,"longitude":1}])") << false << QStringList() << 1;
    QTest::newRow("empty array") << QByteArray("[]") << false << QStringList() << 0;
    QTest::newRow("object, not array") << aino << false << QStringList() << 0;
    QTest::newRow("not JSON") << QByteArray("from=+3581; title=x") << false << QStringList() << 0;
    QTest::newRow("truncated") << QByteArray("[" + aino.left(40)) << false << QStringList() << 0;
}

void SimLogicTest::scriptFromJson()
{
    QFETCH(QByteArray, json);
    QFETCH(bool, ok);
    QFETCH(QStringList, senders);
    CIncomingScript script;
    const int builtIn = script.entries().size();
    QString error;
    QStringList warnings;
    QCOMPARE(script.loadFromJson(json, &error, &warnings), ok);
    QCOMPARE(error.isEmpty(), ok);
    QTEST(int(warnings.size()), "warnings");
    if (!ok) {
        // A bad file leaves the messages the simulator had.
        QCOMPARE(script.entries().size(), builtIn);
        return;
    }
    QStringList got;
    for (const CIncomingScript::CEntry& entry : script.entries()) {
        got.append(entry.m_strFrom);
        QVERIFY(!entry.m_strScreenname.isEmpty());
    }
    QCOMPARE(got, senders);
}

void SimLogicTest::scriptTakesEntriesInTurn()
{
    const QList<CIncomingScript::CEntry> entries = CIncomingScript::builtInEntries();
    QVERIFY(entries.size() >= 5);
    QSet<QString> cities;
    for (const CIncomingScript::CEntry& entry : entries) {
        QVERIFY(qAbs(entry.m_dLatitude) <= 90.0 && qAbs(entry.m_dLongitude) <= 180.0);
        QVERIFY(!(entry.m_dLatitude == 0.0 && entry.m_dLongitude == 0.0));
        QVERIFY(!entry.m_strTitle.isEmpty() && !entry.m_strNote.isEmpty());
        cities.insert(entry.m_strAddress);
    }
    QCOMPARE(cities.size(), entries.size());

    CIncomingScript script(entries.size() - 1);
    const QDateTime when = QDateTime(QDate(2024, 5, 1), QTime(12, 0), Qt::UTC);
    const CTarvik last = script.next(QStringLiteral("+447700900100"), when);
    const CTarvik first = script.next(QStringLiteral("+447700900100"), when);
    QCOMPARE(last.from(), entries.last().m_strFrom);
    QCOMPARE(first.from(), entries.first().m_strFrom);
    QCOMPARE(first.title(), entries.first().m_strTitle);
    QCOMPARE(first.latitude(), entries.first().m_dLatitude);
    QCOMPARE(first.to(), QStringLiteral("+447700900100"));
    QCOMPARE(first.flag(), 1);
    QCOMPARE(first.dateTime(), when);
    QCOMPARE(first.version(), CTarvikStorage::softwareVersion);
    QVERIFY(!first.guid().isEmpty());
    QVERIFY(first.guid() != last.guid());
}

void SimLogicTest::addressedTo_data()
{
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("own");
    QTest::addColumn<bool>("expected");

    QTest::newRow("same") << "+447700900100"
                          << "+447700900100" << true;
    QTest::newRow("blanks and dashes") << "+44 7700-900 100"
                                       << "+447700900100" << true;
    QTest::newRow("00 prefix") << "00447700900100"
                               << "+447700900100" << true;
    QTest::newRow("second of list") << "+447700900101,+447700900100"
                                    << "+447700900100" << true;
    QTest::newRow("other number") << "+447700900101"
                                  << "+447700900100" << false;
    QTest::newRow("prefix only") << "+4477009001"
                                 << "+447700900100" << false;
    QTest::newRow("without plus") << "447700900100"
                                  << "+447700900100" << false;
    QTest::newRow("mail any case") << "x@example.org,Me@Example.ORG"
                                   << "me@example.org" << true;
    QTest::newRow("no own number") << "+447700900100"
                                   << "" << false;
    QTest::newRow("empty list") << ""
                                << "+447700900100" << false;
    QTest::newRow("commas only") << ",,"
                                 << "+447700900100" << false;
}

void SimLogicTest::addressedTo()
{
    QFETCH(QString, to);
    QFETCH(QString, own);
    QTEST(CSimStore::isAddressedTo(to, own), "expected");
}

void SimLogicTest::sendOutbox_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("sent");
    QTest::addColumn<QStringList>("leftInOutbox");
    QTest::addColumn<int>("loopback");

    // Outbox, newest first: "to me" (own number among others), "b", "c", and "old"
    // whose sending failed before (tflag 0) and is not retried by the daemon.
    QTest::newRow("all") << int(CSimOptions::eSendAll) << 3 << QStringList{"old"} << 1;
    QTest::newRow("partial") << int(CSimOptions::eSendPartial) << 2 << QStringList{"b", "old"} << 1;
    QTest::newRow("fail") << int(CSimOptions::eSendFail) << 0
                          << QStringList{"to me", "b", "c", "old"} << 0;
}

void SimLogicTest::sendOutbox()
{
    QFETCH(int, mode);
    QFETCH(int, sent);
    QFETCH(QStringList, leftInOutbox);
    Test::CSimHome home;
    CSimStore store;
    QString error;
    QVERIFY2(store.ensureDatabase(&error), qPrintable(error));
    {
        CTarvikStorage storage(QStringLiteral("test_writer"));
        QList<int> tids;
        QVERIFY(storage.saveTarviks({Test::queuedTarvik("to me", "+3725550001,+44 7700 900100", 10),
                                     Test::queuedTarvik("b", "+3725550002", 20),
                                     Test::queuedTarvik("c", "c@example.org", 30),
                                     Test::queuedTarvik("old", "+3725550003", 3600, 0)},
                                    CTarvikStorage::eFolderOutbox, tids));
    }

    const CSimStore::CSendResult result = store.sendOutbox(
        static_cast<CSimOptions::eSendMode>(mode), QStringLiteral("+447700900100"));
    QVERIFY(result.m_bOk);
    QCOMPARE(result.m_iQueued, 3);
    QCOMPARE(result.m_iSent, sent);
    QCOMPARE(result.m_iFailed, 3 - sent);
    QTEST(int(result.m_lstLoopback.size()), "loopback");

    QStringList outboxTitles;
    for (const CTarvik& tarvik : folder(CTarvikStorage::eFolderOutbox)) {
        outboxTitles.append(tarvik.title());
        QCOMPARE(tarvik.flag(), 0);  // what stays has failed
    }
    QCOMPARE(outboxTitles, leftInOutbox);
    const QList<CTarvik> sentFolder = folder(CTarvikStorage::eFolderSent);
    QCOMPARE(sentFolder.size(), sent);
    for (const CTarvik& tarvik : sentFolder) {
        QVERIFY(!leftInOutbox.contains(tarvik.title()));
        QCOMPARE(tarvik.note(), QStringLiteral("note of ") + tarvik.title());
        QCOMPARE(tarvik.latitude(), 59.4372);
        QVERIFY(!tarvik.guid().isEmpty());
        QCOMPARE(tarvik.flag(), 0);
    }
    for (const CTarvik& tarvik : result.m_lstLoopback) {
        QCOMPARE(tarvik.title(), QStringLiteral("to me"));
        QCOMPARE(tarvik.to(), QStringLiteral("+447700900100"));
        QCOMPARE(tarvik.flag(), 1);
        QCOMPARE(tarvik.id(), -1);
    }
    // Delivery stores them unread in the inbox.
    QCOMPARE(store.deliver(result.m_lstLoopback, &error), int(result.m_lstLoopback.size()));
    QCOMPARE(folder(CTarvikStorage::eFolderInbox).size(), result.m_lstLoopback.size());
}

void SimLogicTest::missingDatabaseIsNotCreated()
{
    Test::CSimHome home;
    CSimStore store;
    CTSettings settings;
    QString error;
    QVERIFY(!store.readSettings(settings, &error));
    QVERIFY2(error.contains(home.dbPath()), qPrintable(error));
    const CSimStore::CSendResult result =
        store.sendOutbox(CSimOptions::eSendAll, QStringLiteral("+447700900100"));
    QVERIFY(!result.m_bOk);
    QVERIFY(!result.m_strError.isEmpty());
    CIncomingScript script;
    error.clear();
    QCOMPARE(
        store.deliver({script.next(QStringLiteral("+1"), QDateTime::currentDateTimeUtc())}, &error),
        0);
    QVERIFY(!error.isEmpty());
    QVERIFY(!store.setRegistered(true, &error));
    // Only the client (or an explicit seed) creates the database.
    QVERIFY(!QFile::exists(home.dbPath()));
}

void SimLogicTest::corruptDatabaseIsLeftAlone()
{
    Test::CSimHome home;
    QVERIFY(QDir().mkpath(home.path() + QStringLiteral("/.tarvik")));
    QByteArray garbage(4096, '\0');
    for (int i = 0; i < garbage.size(); ++i) {
        garbage[i] = static_cast<char>((i * 37 + 11) % 251);
    }
    {
        QFile file(home.dbPath());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(garbage);
    }
    CSimStore store;
    CTSettings settings;
    QString error;
    QVERIFY(!store.readSettings(settings, &error));
    QVERIFY(!error.isEmpty());
    QVERIFY(!store.sendOutbox(CSimOptions::eSendAll, QStringLiteral("+1")).m_bOk);
    QVERIFY(!store.setRegistered(true, &error));
    QVERIFY(!store.ensureDatabase(&error));
    QFile file(home.dbPath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), garbage);
}

void SimLogicTest::demoFillsOnlyEmptyFolders()
{
    Test::CSimHome home;
    CSimStore store;
    QString error;
    QVERIFY2(store.ensureDatabase(&error), qPrintable(error));
    QVERIFY(store.registerAccount(QStringLiteral("+447700900100"), QStringLiteral("Demo"), &error));
    CTSettings settings;
    QVERIFY(store.readSettings(settings, &error));
    QCOMPARE(settings.regflag(), 1);
    QCOMPARE(settings.mynumber(), QStringLiteral("+447700900100"));
    QCOMPARE(settings.screenname(), QStringLiteral("Demo"));

    const int written = store.seedDemo(settings.mynumber(), settings.screenname(), &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    const QList<CTarvik> inbox = folder(CTarvikStorage::eFolderInbox);
    const QList<CTarvik> sent = folder(CTarvikStorage::eFolderSent);
    const QList<CTarvik> outbox = folder(CTarvikStorage::eFolderOutbox);
    QCOMPARE(written, int(inbox.size() + sent.size() + outbox.size()));
    QVERIFY(inbox.size() >= 3 && !sent.isEmpty() && !outbox.isEmpty());
    int unread = 0;
    for (const CTarvik& tarvik : inbox) {
        unread += tarvik.flag();
        QCOMPARE(tarvik.to(), settings.mynumber());
        QVERIFY(!tarvik.screenname().isEmpty());
    }
    QVERIFY(unread > 0 && unread < inbox.size());
    for (const CTarvik& tarvik : sent) {
        QCOMPARE(tarvik.from(), settings.mynumber());
        QCOMPARE(tarvik.screenname(), QStringLiteral("Demo"));
    }

    QCOMPARE(store.seedDemo(settings.mynumber(), settings.screenname(), &error), 0);
    QCOMPARE(folder(CTarvikStorage::eFolderInbox).size(), inbox.size());
}

QTEST_GUILESS_MAIN(SimLogicTest)
#include "tst_simlogic.moc"
