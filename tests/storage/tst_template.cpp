// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The compiled-in template database: encoding, page size, tables, defaults, indexes,
// settings rows and key counters.
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QTest>

#include "ctarvikstorage.h"

using namespace Dravo;

class StorageTemplateTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QSqlDatabase m_db;
    QList<QStringList> rows(const QString& sql);

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void fileFormat();
    void folderTables_data();
    void folderTables();
    void settingsRows();
    void scheduleTable();
    void sequenceRows();
    void nothingElse();
};

QList<QStringList> StorageTemplateTest::rows(const QString& sql)
{
    QList<QStringList> result;
    QSqlQuery query(m_db);
    if (!query.exec(sql)) {
        qWarning() << sql << query.lastError().text();
        return result;
    }
    while (query.next()) {
        QStringList row;
        for (int i = 0; i < query.record().count(); ++i) {
            row << (query.value(i).isNull() ? QStringLiteral("<null>") : query.value(i).toString());
        }
        result << row;
    }
    return result;
}

void StorageTemplateTest::initTestCase()
{
    CTarvikStorage::initResources();
    QFile resource(CTarvikStorage::templateResource);
    QVERIFY(resource.open(QIODevice::ReadOnly));
    const QByteArray bytes = resource.readAll();
    QVERIFY(bytes.startsWith("SQLite format 3"));
    const QString path = m_dir.filePath(QStringLiteral("template.sqlite"));
    QFile copy(path);
    QVERIFY(copy.open(QIODevice::WriteOnly));
    QCOMPARE(copy.write(bytes), bytes.size());
    copy.close();
    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("template"));
    m_db.setDatabaseName(path);
    QVERIFY(m_db.open());
}

void StorageTemplateTest::cleanupTestCase()
{
    m_db.close();
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(QStringLiteral("template"));
}

void StorageTemplateTest::fileFormat()
{
    QCOMPARE(rows(QStringLiteral("pragma encoding")), QList<QStringList>{{"UTF-16le"}});
    QCOMPARE(rows(QStringLiteral("pragma page_size")), QList<QStringList>{{"1024"}});
    QCOMPARE(rows(QStringLiteral("pragma integrity_check")), QList<QStringList>{{"ok"}});
}

void StorageTemplateTest::folderTables_data()
{
    QTest::addColumn<QString>("table");
    for (const char* table : {"inbox", "outbox", "sent", "draft"}) {
        QTest::newRow(table) << QString::fromLatin1(table);
    }
}

void StorageTemplateTest::folderTables()
{
    QFETCH(QString, table);
    // name, type, notnull, default, pk
    const QList<QStringList> expected = {
        {"tid", "INTEGER", "1", "<null>", "1"},      {"tguid", "TEXT", "0", "<null>", "0"},
        {"tfrom", "TEXT", "0", "<null>", "0"},       {"tto", "TEXT", "0", "<null>", "0"},
        {"tutcdatetime", "INTEGER", "0", "0", "0"},  {"ttz", "INTEGER", "0", "0", "0"},
        {"ttitle", "TEXT", "0", "<null>", "0"},      {"tnote", "TEXT", "0", "<null>", "0"},
        {"tlatitude", "REAL", "0", "0", "0"},        {"tlongitude", "REAL", "0", "0", "0"},
        {"tscreenname", "TEXT", "0", "<null>", "0"}, {"taddress", "TEXT", "0", "<null>", "0"},
        {"ttype", "TEXT", "0", "<null>", "0"},       {"ttypedesc", "TEXT", "0", "<null>", "0"},
        {"timage", "TEXT", "0", "<null>", "0"},      {"tpriority", "INTEGER", "0", "0", "0"},
        {"tcolor", "TEXT", "0", "<null>", "0"},      {"treg", "TEXT", "0", "<null>", "0"},
        {"tcountry", "INTEGER", "0", "0", "0"},      {"tcarrier", "TEXT", "0", "<null>", "0"},
        {"tversion", "TEXT", "0", "<null>", "0"},    {"tflag", "INTEGER", "0", "0", "0"},
    };
    QCOMPARE(rows(QStringLiteral(
                      "select name, type, \"notnull\", dflt_value, pk from pragma_table_info('%1')")
                      .arg(table)),
             expected);
    const QString sql =
        rows(QStringLiteral("select sql from sqlite_master where name='%1'").arg(table))
            .value(0)
            .value(0);
    QVERIFY2(sql.contains(QStringLiteral("tid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL")),
             qPrintable(sql));
    const QString index = QStringLiteral("idx_%1_tutcdatetime").arg(table);
    QCOMPARE(rows(QStringLiteral("select name from pragma_index_list('%1')").arg(table)),
             QList<QStringList>{{index}});
    QCOMPARE(rows(QStringLiteral("select name, desc from pragma_index_xinfo('%1') where key=1")
                      .arg(index)),
             (QList<QStringList>{{"tutcdatetime", "1"}}));
    QCOMPARE(rows(QStringLiteral("select count(*) from %1").arg(table)), QList<QStringList>{{"0"}});
}

void StorageTemplateTest::settingsRows()
{
    QCOMPARE(rows(QStringLiteral("select name, type from pragma_table_info('settings')")),
             (QList<QStringList>{{"name", "TEXT"}, {"value", "TEXT"}}));
    QCOMPARE(rows(QStringLiteral("select name from pragma_index_list('settings')")),
             QList<QStringList>{});
    const QList<QStringList> expected = {
        {"imei", "<null>"},       {"screenname", "<null>"},
        {"mynumber", "<null>"},   {"version", "<null>"},
        {"imsi", "<null>"},       {"regflag", "0"},
        {"providelocation", "0"}, {"providelocationperiod", "0"},
        {"pollinginterval", "0"},
    };
    QCOMPARE(rows(QStringLiteral("select name, value from settings order by rowid")), expected);
    QCOMPARE(rows(QStringLiteral("select typeof(value) from settings where name='regflag'")),
             QList<QStringList>{{"text"}});
}

void StorageTemplateTest::scheduleTable()
{
    QCOMPARE(
        rows(QStringLiteral("select name, type from pragma_table_info('locationupdateschedule')")),
        (QList<QStringList>{{"day", "INTEGER"}, {"timeon", "TEXT"}, {"timeoff", "TEXT"}}));
    QCOMPARE(rows(QStringLiteral(
                 "select name, desc from pragma_index_xinfo('idx_locationupdateschedule') "
                 "where key=1 order by seqno")),
             (QList<QStringList>{{"day", "0"}, {"timeon", "0"}}));
    QCOMPARE(rows(QStringLiteral("select count(*) from locationupdateschedule")),
             QList<QStringList>{{"0"}});
}

void StorageTemplateTest::sequenceRows()
{
    QCOMPARE(rows(QStringLiteral("select name, seq from sqlite_sequence order by rowid")),
             (QList<QStringList>{{"inbox", "0"}, {"outbox", "0"}, {"sent", "0"}}));
}

void StorageTemplateTest::nothingElse()
{
    QCOMPARE(rows(QStringLiteral("select type, name from sqlite_master order by type, name")),
             (QList<QStringList>{{"index", "idx_draft_tutcdatetime"},
                                 {"index", "idx_inbox_tutcdatetime"},
                                 {"index", "idx_locationupdateschedule"},
                                 {"index", "idx_outbox_tutcdatetime"},
                                 {"index", "idx_sent_tutcdatetime"},
                                 {"table", "draft"},
                                 {"table", "inbox"},
                                 {"table", "locationupdateschedule"},
                                 {"table", "outbox"},
                                 {"table", "sent"},
                                 {"table", "settings"},
                                 {"table", "sqlite_sequence"}}));
}

QTEST_GUILESS_MAIN(StorageTemplateTest)
#include "tst_template.moc"
