// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A database row to a message: another program (the daemon, or a damaged file) may have
// written anything into any of the 22 columns: NULL, integers, reals, text that is not
// UTF-8, blobs. The row is either rejected or gives a message that can be sent.
#include "ctarvikstorage.h"
#include "fuzzinput.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>

#include <sqlite3.h>

#include <cmath>

using namespace Dravo;
using namespace Dravo::Fuzz;

namespace {

const int COLUMNS = 22;

QSqlDatabase* g_pDatabase = nullptr;

// One column value as an SQL literal, so that no binding can tidy it up on the way in.
QString literal(CFuzzInput& in)
{
    switch (in.take<uint8_t>() % 6) {
        case 0:
            return QStringLiteral("NULL");
        case 1:
            return QString::number(in.take<qint64>());
        case 2: {
            const double d = in.take<double>();
            if (std::isnan(d))
                return QStringLiteral("(9e999-9e999)");
            if (std::isinf(d))
                return d > 0 ? QStringLiteral("9e999") : QStringLiteral("-9e999");
            return QString::number(d, 'g', 17);
        }
        case 3:  // text with any bytes in it, valid UTF-8 or not
            return QStringLiteral("CAST(X'%1' AS TEXT)")
                .arg(QString::fromLatin1(in.takeBytes().toHex()));
        case 4:
            return QStringLiteral("X'%1'").arg(QString::fromLatin1(in.takeBytes().toHex()));
        default: {  // text that looks like a number
            const QByteArray bytes = in.takeBytes();
            QString text;
            for (char c : bytes)
                text += QLatin1Char("0123456789.,-+eE x"[uchar(c) % 18]);
            return QLatin1Char('\'') + text + QLatin1Char('\'');
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    silenceQtLog();
    static QCoreApplication app(*argc, *argv);
    static QSqlDatabase db =
        QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("fuzz"));
    db.setDatabaseName(QStringLiteral(":memory:"));
    if (!db.open()) {
        fprintf(stderr, "no in-memory database\n");
        abort();
    }
    // No column types: SQLite keeps every value as it was given.
    QStringList columns;
    for (int i = 0; i < COLUMNS; ++i)
        columns << QStringLiteral("c%1").arg(i);
    QSqlQuery create(db);
    if (!create.exec(QStringLiteral("CREATE TABLE t (%1)").arg(columns.join(QLatin1Char(','))))) {
        fprintf(stderr, "%s\n", qPrintable(create.lastError().text()));
        abort();
    }
    g_pDatabase = &db;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t iSize)
{
    CFuzzInput in(pData, iSize);
    QStringList values;
    for (int i = 0; i < COLUMNS; ++i)
        values << literal(in);

    QSqlQuery query(*g_pDatabase);
    FUZZ_CHECK(query.exec(QStringLiteral("DELETE FROM t")));
    FUZZ_CHECK(
        query.exec(QStringLiteral("INSERT INTO t VALUES (%1)").arg(values.join(QLatin1Char(',')))));
    FUZZ_CHECK(query.exec(QStringLiteral("SELECT * FROM t")));
    FUZZ_CHECK(query.next());

    CTarvik tarvik;
    tarvik.setColor(QStringLiteral("keep"));
    bool ok = false;
    const int tid = query.value(0).toInt(&ok);
    const bool bAccepted = CTarvikStorage::retrieveTarvikFromQuery(query, tarvik);
    // Only an unreadable message number rejects the row.
    FUZZ_CHECK(bAccepted == ok);
    if (!bAccepted)
        return 0;
    query.finish();
    FUZZ_CHECK(tarvik.id() == tid);
    FUZZ_CHECK(!tarvik.color().isEmpty());
    // Whatever was read can be turned into the document that goes to the service.
    FUZZ_CHECK(tarvik.toXml().startsWith(QLatin1String("<ping><from>")));

    // The folders read rows through SQLite directly: that reader makes the same message.
    sqlite3* pDb = *static_cast<sqlite3**>(g_pDatabase->driver()->handle().data());
    sqlite3_stmt* pStmt = nullptr;
    FUZZ_CHECK(sqlite3_prepare_v2(pDb, "SELECT * FROM t", -1, &pStmt, nullptr) == SQLITE_OK);
    FUZZ_CHECK(sqlite3_step(pStmt) == SQLITE_ROW);
    CTarvik native;
    native.setColor(QStringLiteral("keep"));
    const bool bNative = CTarvikStorage::retrieveTarvikFromStatement(pStmt, native);
    sqlite3_finalize(pStmt);
    FUZZ_CHECK(bNative);
    FUZZ_CHECK(native.id() == tarvik.id());
    FUZZ_CHECK(native.toXml() == tarvik.toXml());
    FUZZ_CHECK(native.guid() == tarvik.guid() && native.type() == tarvik.type() &&
               native.color() == tarvik.color() && native.flag() == tarvik.flag() &&
               native.priority() == tarvik.priority());
    return 0;
}
