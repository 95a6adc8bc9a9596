// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The compiled-in template database: its file format, and its schema and rows against a
// database built afresh from the SQL source, so a template that is stale or built wrongly
// shows up.
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QTest>

#include "ctarvikstorage.h"

using namespace Dravo;

namespace {

// Every row of `sql`, each row's values joined; NULL is told apart from empty text.
QStringList rows(const QSqlDatabase& db, const QString& sql)
{
    QStringList result;
    QSqlQuery query(db);
    if (!query.exec(sql)) {
        return {QStringLiteral("failed: ") + sql + QLatin1Char(' ') + query.lastError().text()};
    }
    while (query.next()) {
        QStringList row;
        for (int i = 0; i < query.record().count(); ++i) {
            row << (query.value(i).isNull() ? QStringLiteral("<null>") : query.value(i).toString());
        }
        result << row.join(QLatin1Char('|'));
    }
    return result;
}

}  // namespace

class StorageTemplateTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QSqlDatabase m_template;
    QSqlDatabase m_source;

private Q_SLOTS:
    void initTestCase();
    void fileFormat();
    void matchesTheSqlSource();
};

void StorageTemplateTest::initTestCase()
{
    CTarvikStorage::initResources();
    const QString path = m_dir.filePath(QStringLiteral("template.sqlite"));
    QVERIFY(QFile::copy(CTarvikStorage::templateResource, path));
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    m_template = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("template"));
    m_template.setDatabaseName(path);
    QVERIFY(m_template.open());

    QFile sql(QStringLiteral(TARVIK_SOURCE_DIR "/res_storage/tarvikdb.sql"));
    QVERIFY(sql.open(QIODevice::ReadOnly | QIODevice::Text));
    m_source = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("source"));
    m_source.setDatabaseName(QStringLiteral(":memory:"));
    QVERIFY(m_source.open());
    QString code;
    for (const QString& line : QString::fromUtf8(sql.readAll()).split(QLatin1Char('\n'))) {
        if (!line.trimmed().startsWith(QLatin1String("--"))) {
            code += line + QLatin1Char('\n');
        }
    }
    for (const QString& statement : code.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        if (statement.trimmed().isEmpty()) {
            continue;
        }
        QSqlQuery query(m_source);
        QVERIFY2(query.exec(statement.trimmed()), qPrintable(query.lastError().text()));
    }
}

void StorageTemplateTest::fileFormat()
{
    QCOMPARE(rows(m_template, QStringLiteral("pragma encoding")), QStringList{"UTF-16le"});
    QCOMPARE(rows(m_template, QStringLiteral("pragma page_size")), QStringList{"1024"});
}

void StorageTemplateTest::matchesTheSqlSource()
{
    const QString schema =
        QStringLiteral("select type, name, tbl_name, sql from sqlite_master order by name");
    const QStringList objects = rows(m_source, schema);
    QCOMPARE(rows(m_template, schema), objects);
    QVERIFY(objects.size() > 10);
    for (const QString& object : objects) {
        const QStringList parts = object.split(QLatin1Char('|'));
        if (parts.at(0) != QLatin1String("table")) {
            continue;
        }
        const QString content = QStringLiteral("select * from %1 order by rowid").arg(parts.at(1));
        QCOMPARE(rows(m_template, content), rows(m_source, content));
    }
    // The settings rows every database must have, since settings are only ever updated.
    QCOMPARE(rows(m_template, QStringLiteral("select count(*) from settings")), QStringList{"9"});
}

QTEST_GUILESS_MAIN(StorageTemplateTest)
#include "tst_template.moc"
