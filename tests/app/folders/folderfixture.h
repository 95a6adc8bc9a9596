// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include "casynctstorage.h"
#include "shellfixture.h"

namespace TarvikTest {

// A message with every text field set, at a fixed time.
inline Dravo::CTarvik makeTarvik(const QString& strTitle, int iFlag = 0)
{
    Dravo::CTarvik tarvik;
    tarvik.setFrom("+447700900111");
    tarvik.setTo("+447700900222");
    tarvik.setScreenname("Aino");
    tarvik.setTitle(strTitle);
    tarvik.setNote("Note of " + strTitle);
    tarvik.setDateTime(QDateTime(QDate(2026, 11, 20), QTime(9, 30), Qt::UTC));
    tarvik.setLatitude(60.169857);
    tarvik.setLongitude(24.938379);
    tarvik.setFlag(iFlag);
    return tarvik;
}

// Saves messages through the GUI's storage service and waits for the answer.
inline bool saveTarviks(const QList<Dravo::CTarvik>& tarviks,
                        Dravo::CAsyncTStorage::eFolderName folder)
{
    Dravo::CAsyncTStorage* pStorage = Dravo::CAsyncTStorage::getInstance(1);
    QSignalSpy spy(pStorage, &Dravo::CAsyncTStorage::signalTarviksSaved);
    return pStorage->saveTarviks(tarviks, folder) && spy.wait(5000) && spy.first().at(0).toBool();
}

// A second connection to the client's database, for what the storage service would
// never write and for holding locks.
class CRawDatabase
{
public:
    explicit CRawDatabase(const QString& strHome)
    {
        m_db = QSqlDatabase::addDatabase("QSQLITE", "raw");
        m_db.setDatabaseName(strHome + "/.tarvik/tarvikdb.sqlite");
        m_db.open();
    }
    ~CRawDatabase()
    {
        m_db.close();
        m_db = QSqlDatabase();
        QSqlDatabase::removeDatabase("raw");
    }
    bool exec(const QString& strSql)
    {
        QSqlQuery query(m_db);
        if (query.exec(strSql))
            return true;
        qWarning("raw sql failed: %s", qPrintable(query.lastError().text()));
        return false;
    }
    int count(const QString& strTable)
    {
        QSqlQuery query(m_db);
        return query.exec("SELECT COUNT(*) FROM " + strTable) && query.next()
                   ? query.value(0).toInt()
                   : -1;
    }

private:
    QSqlDatabase m_db;
};

}  // namespace TarvikTest
