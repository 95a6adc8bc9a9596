// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Message, settings and schedule records: defaults, XML form, debug dumps and how a
// database row becomes a message.
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>
#include <QXmlStreamReader>

#include <sqlite3.h>

#include "casynctstorage.h"
#include "clocationrequest.h"
#include "ctarvik.h"
#include "ctarvikstorage.h"
#include "ctsettings.h"
#include "storagefixture.h"

using namespace Dravo;

class StorageRecordsTest : public QObject
{
    Q_OBJECT

private:
    QSqlDatabase m_db;
    // Runs `select` on a row inserted with the given SQL literals for the 22 columns.
    bool buildFromRow(const QString& values, CTarvik& tarvik);

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void toXml_data();
    void toXml();
    void fromRow_data();
    void fromRow();
    void coordinatesFollowLocale();
    void xmlParsesBack();
};

void StorageRecordsTest::initTestCase()
{
    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("records"));
    m_db.setDatabaseName(QStringLiteral(":memory:"));
    QVERIFY(m_db.open());
    // Untyped columns, so every value arrives exactly as another program wrote it.
    QSqlQuery query(m_db);
    QVERIFY(query.exec(QStringLiteral(
        "create table t (tid, tguid, tfrom, tto, tutcdatetime, ttz, ttitle, tnote, tlatitude, "
        "tlongitude, tscreenname, taddress, ttype, ttypedesc, timage, tpriority, tcolor, treg, "
        "tcountry, tcarrier, tversion, tflag)")));
}

void StorageRecordsTest::cleanupTestCase()
{
    m_db.close();
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(QStringLiteral("records"));
}

bool StorageRecordsTest::buildFromRow(const QString& values, CTarvik& tarvik)
{
    QSqlQuery query(m_db);
    if (!query.exec(QStringLiteral("delete from t")) ||
        !query.exec(QStringLiteral("insert into t values (%1)").arg(values))) {
        qWarning() << "fixture insert failed" << query.lastError().text();
        return false;
    }
    // Single reads go through a Qt query, folder reads through a native statement: both
    // must make the same message of the same row.
    CTarvik viaNative = tarvik;
    sqlite3* handle = *static_cast<sqlite3* const*>(m_db.driver()->handle().constData());
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(handle, "select * from t", -1, &stmt, nullptr);
    const bool nativeOk = sqlite3_step(stmt) == SQLITE_ROW &&
                          CTarvikStorage::retrieveTarvikFromStatement(stmt, viaNative);
    sqlite3_finalize(stmt);

    QSqlQuery select(m_db);
    if (!select.exec(QStringLiteral("select * from t")) || !select.next()) {
        return false;
    }
    const bool ok = CTarvikStorage::retrieveTarvikFromQuery(select, tarvik);
    if (ok != nativeOk || (ok && (Test::fields(tarvik) != Test::fields(viaNative) ||
                                  tarvik.id() != viaNative.id()))) {
        QTest::qFail(qPrintable(QStringLiteral("native read differs: ") +
                                Test::fields(viaNative).join(QLatin1Char('|'))),
                     __FILE__, __LINE__);
    }
    return ok;
}

void StorageRecordsTest::toXml_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("from");
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<QString>("expected");

    const QString head = QStringLiteral(
        "<ping><from>%1</from><reg>356938035643809</reg><country>248</country>"
        "<carrier>Elisa</carrier><to>+3725550009, carol@example.org</to>"
        "<date>2009-10-11</date><time>07:05:09</time><tz>120</tz>"
        "<title>%2</title><note>At the corner</note><address>Raekoja plats 1, Tallinn</address>");
    const QString tail = QStringLiteral(
        "<coordinates><latitude>%1</latitude><longitude>%2</longitude></coordinates>"
        "<version>1.0.5</version><screenname>Alice</screenname></ping>");

    QTest::newRow("escaped title, raw from")
        << QStringLiteral("a<b&\"c\"") << QStringLiteral("x&y") << 0.0 << 0.0
        << head.arg(QStringLiteral("x&y"), QStringLiteral("a&lt;b&amp;&quot;c&quot;")) +
               tail.arg(QStringLiteral("0"), QStringLiteral("0"));
    QTest::newRow("entities are not escaped twice")
        << QStringLiteral("&lt;'>") << QStringLiteral("me") << 1.5 << -2.25
        << head.arg(QStringLiteral("me"), QStringLiteral("&amp;lt;&apos;&gt;")) +
               tail.arg(QStringLiteral("1.5"), QStringLiteral("-2.25"));
    QTest::newRow("six significant digits")
        << QStringLiteral("t") << QStringLiteral("me") << 37.77493 << -122.41942
        << head.arg(QStringLiteral("me"), QStringLiteral("t")) +
               tail.arg(QStringLiteral("37.7749"), QStringLiteral("-122.419"));
}

void StorageRecordsTest::toXml()
{
    QFETCH(QString, title);
    QFETCH(QString, from);
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QFETCH(QString, expected);

    // Every field set: those that are not part of the document must not leak into it.
    CTarvik tarvik = Test::makeFullTarvik();
    tarvik.setGuid(QStringLiteral("GUID"));
    tarvik.setTitle(title);
    tarvik.setFrom(from);
    tarvik.setDateTime(QDateTime(QDate(2009, 10, 11), QTime(7, 5, 9, 450), Qt::UTC));
    tarvik.setLatitude(latitude);
    tarvik.setLongitude(longitude);
    QCOMPARE(tarvik.toXml(), expected);
}

void StorageRecordsTest::fromRow_data()
{
    QTest::addColumn<QString>("values");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<int>("tz");
    QTest::addColumn<int>("flag");
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<double>("latitude");
    QTest::addColumn<QString>("colour");  // the message had "green" before

    const QString row = QStringLiteral(
        "%1, 'g', 'f', 't', %2, %3, 'ti', 'no', %4, 2.0, 'Mari', 'addr', 'T', 'desc', 'img', 2, "
        "%5, 'reg', 372, 'Elisa', '1.0.5', %6");
    const auto values = [&](const char* tid, const char* time, const char* tz, const char* lat,
                            const char* colour = "'blue'", const char* flag = "1") {
        return row.arg(tid, time, tz, lat, colour, flag);
    };
    QTest::newRow("well formed") << values("7", "1255244709", "3", "59.437") << true << 3 << 1
                                 << qint64(1255244709) << 59.437 << "blue";
    QTest::newRow("tid is text: rejected")
        << values("'seven'", "1", "3", "1.0") << false << 0 << 0 << qint64(-1) << 0.0 << "";
    QTest::newRow("ttz is text: accepted with tz 0")
        << values("7", "1", "'UTC+2'", "1.0") << true << 0 << 1 << qint64(1) << 1.0 << "blue";
    QTest::newRow("time is text: null date-time")
        << values("7", "'yesterday'", "1", "1.0") << true << 1 << 1 << qint64(-1) << 1.0 << "blue";
    QTest::newRow("latitude is garbage")
        << values("7", "1", "1", "'north'") << true << 1 << 1 << qint64(1) << 0.0 << "blue";
    QTest::newRow("flag is text") << values("7", "1", "1", "1.0", "'blue'", "'unread'") << true << 1
                                  << 0 << qint64(1) << 1.0 << "blue";
    QTest::newRow("empty colour kept")
        << values("7", "1", "1", "1.0", "''") << true << 1 << 1 << qint64(1) << 1.0 << "green";
    QTest::newRow("NULL everywhere but tid")
        << QStringLiteral("7") + QStringLiteral(", NULL").repeated(21) << true << 0 << 0
        << qint64(-1) << 0.0 << "green";
}

void StorageRecordsTest::fromRow()
{
    QFETCH(QString, values);
    QFETCH(bool, accepted);
    QFETCH(int, tz);
    QFETCH(int, flag);
    QFETCH(qint64, seconds);
    QFETCH(double, latitude);
    QFETCH(QString, colour);

    CTarvik tarvik;
    tarvik.setColor(QStringLiteral("green"));
    QCOMPARE(buildFromRow(values, tarvik), accepted);
    if (!accepted) {
        return;
    }
    QCOMPARE(tarvik.id(), 7);
    QCOMPARE(tarvik.tz(), tz);
    QCOMPARE(tarvik.flag(), flag);
    QCOMPARE(tarvik.latitude(), latitude);
    QCOMPARE(tarvik.color(), colour);
    if (seconds < 0) {
        QVERIFY(tarvik.dateTime().isNull());
    } else {
        QCOMPARE(tarvik.dateTime().toSecsSinceEpoch(), seconds);
        QCOMPARE(tarvik.dateTime().timeSpec(), Qt::UTC);
    }
}

void StorageRecordsTest::coordinatesFollowLocale()
{
    // A comma-decimal locale: text written with a dot (as SQLite prints REAL) and text
    // written with the locale's comma are both understood.
    const QLocale previous;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    CTarvik tarvik;
    const QString row = QStringLiteral(
        "1, 'g', 'f', 't', 1, 1, 'ti', 'no', %1, %2, 's', 'a', 'T', 'd', 'i', 0, '', 'r', 0, "
        "'c', 'v', 0");
    const bool dotted =
        buildFromRow(row.arg(QStringLiteral("'58.3806'"), QStringLiteral("26.72")), tarvik);
    const double dottedLat = tarvik.latitude();
    const bool comma =
        buildFromRow(row.arg(QStringLiteral("'1,5'"), QStringLiteral("-3.25")), tarvik);
    QLocale::setDefault(previous);
    QVERIFY(dotted && comma);
    QCOMPARE(dottedLat, 58.3806);
    QCOMPARE(tarvik.latitude(), 1.5);
    QCOMPARE(tarvik.longitude(), -3.25);
}

void StorageRecordsTest::xmlParsesBack()
{
    // Hostile text in every escaped field: markup, entities, quotes, line breaks and control
    // characters that XML cannot carry (left out, so the document still parses).
    const QString hostile =
        QStringLiteral("<b>&amp;\"q\" 'a' </ping><x/>\r\n\tend") + QChar(1) + QChar(0x1f);
    const QString expected = QStringLiteral("<b>&amp;\"q\" 'a' </ping><x/>\r\n\tend");
    CTarvik tarvik;
    tarvik.setFrom(QStringLiteral("+3725550001"));
    tarvik.setTo(QStringLiteral("to ") + hostile);
    tarvik.setTitle(QStringLiteral("title ") + hostile);
    tarvik.setNote(QStringLiteral("note ") + hostile);
    tarvik.setAddress(QStringLiteral("address ") + hostile);
    tarvik.setScreenname(QStringLiteral("screen ") + hostile);
    tarvik.setDateTime(QDateTime(QDate(2020, 2, 29), QTime(23, 59, 58), Qt::UTC));

    QXmlStreamReader xml(tarvik.toXml());
    QMap<QString, QString> values;
    QVERIFY(xml.readNextStartElement());
    QCOMPARE(xml.name().toString(), QStringLiteral("ping"));
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("coordinates")) {
            xml.skipCurrentElement();
            continue;
        }
        const QString name = xml.name().toString();
        values.insert(name, xml.readElementText());
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    QCOMPARE(values.value("from"), tarvik.from());
    QCOMPARE(values.value("to"), QStringLiteral("to ") + expected);
    QCOMPARE(values.value("title"), QStringLiteral("title ") + expected);
    QCOMPARE(values.value("note"), QStringLiteral("note ") + expected);
    QCOMPARE(values.value("address"), QStringLiteral("address ") + expected);
    QCOMPARE(values.value("screenname"), QStringLiteral("screen ") + expected);
    QCOMPARE(values.value("date"), QStringLiteral("2020-02-29"));
    QCOMPARE(values.value("time"), QStringLiteral("23:59:58"));
}

QTEST_GUILESS_MAIN(StorageRecordsTest)
#include "tst_records.moc"
