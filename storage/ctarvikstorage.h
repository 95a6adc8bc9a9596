// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QMutex>
#include <QObject>
#include <QString>

#include "cfoldernames.h"
#include "clocationrequest.h"
#include "ctarvik.h"
#include "ctsettings.h"

class QSqlDatabase;
class QSqlQuery;
struct sqlite3;
struct sqlite3_stmt;

namespace Dravo {

// One process-wide lock around every statement of every storage instance.
extern QMutex localMutex;

// Synchronous access to the message database through one named Qt SQL connection.
// Every operation returns true on success and logs its failures. The *Request slots
// run an operation and answer with the matching signal, so the object can be driven
// from another thread by queued signals (see CAsyncTStorage).
class CTarvikStorage : public QObject, public CFolderNames
{
    Q_OBJECT
public:
    // Tag of an asynchronous request; travels untouched with the request and its answer.
    class CUserData
    {
    public:
        virtual ~CUserData();
    };

    static const QString softwareVersion;   // "1.0.5"
    static const QString driverName;        // "QSQLITE"
    static const QString fileName;          // "tarvikdb.sqlite"
    static const QString templateResource;  // ":/res_storage/tarvikdb.sqlite"
    // SQLite waits this long for a lock held by another connection (the daemon).
    static const int busyTimeoutMs = 3000;

    // "$HOME/.tarvik/", read at each call so tests can point HOME elsewhere.
    static QString dataDirectory();
    static QString databasePath();
    // Registers the compiled-in template database; safe to call more than once.
    static void initResources();

    CTarvikStorage();
    explicit CTarvikStorage(const QString& connectionName, QObject* parent = nullptr);
    ~CTarvikStorage() override;

    QString connectionName() const { return m_strConnectionName; }
    bool isOpen() const;

    void openDatabase();
    bool createDatabase();
    bool recreateDatabase();
    void closeDatabase();

    bool getTarvik(int tid, eFolderName folder, CTarvik& tarvik);
    bool getTarviks(eFolderName folder, QList<CTarvik>& tarviks, int limit = -1, int offset = 0);
    bool saveTarvik(const CTarvik& tarvik, eFolderName folder, int& tid);
    bool saveTarviks(const QList<CTarvik>& tarviks, eFolderName folder, QList<int>& tids);
    bool removeTarvik(int tid, eFolderName folder);
    bool removeTarviks(const QList<int>& tids, eFolderName folder);
    bool removeAllTarviks(eFolderName folder);
    bool getSettings(CTSettings& settings);
    bool saveSettings(const CTSettings& settings, uint mask);
    bool getLocationRequest(CLocationRequest& request);
    bool saveLocationRequest(const CLocationRequest& request, uint mask);

    // Fills `tarvik` from a row of the 22 message columns; false rejects the row.
    static bool retrieveTarvikFromQuery(const QSqlQuery& query, CTarvik& tarvik);
    // The same from the current row of a native statement (the folder reads use it).
    static bool retrieveTarvikFromStatement(sqlite3_stmt* stmt, CTarvik& tarvik);

public Q_SLOTS:
    void getTarvikRequest(int tid, eFolderName folderName,
                          CTarvikStorage::CUserData* userData = nullptr);
    void saveTarvikRequest(Dravo::CTarvik tarvik, eFolderName folderName,
                           CTarvikStorage::CUserData* userData = nullptr);
    void removeTarvikRequest(int tid, eFolderName folderName,
                             CTarvikStorage::CUserData* userData = nullptr);
    void getTarviksRequest(eFolderName folderName, int limit = -1, int offset = 0,
                           CTarvikStorage::CUserData* userData = nullptr);
    void saveTarviksRequest(QList<Dravo::CTarvik> tarviks, eFolderName folderName,
                            CTarvikStorage::CUserData* userData = nullptr);
    void removeTarviksRequest(QList<int> tids, eFolderName folderName,
                              CTarvikStorage::CUserData* userData = nullptr);
    void removeAllTarviksRequest(eFolderName folderName,
                                 CTarvikStorage::CUserData* userData = nullptr);
    void getSettingsRequest(CTarvikStorage::CUserData* userData = nullptr);
    void saveSettingsRequest(Dravo::CTSettings settings, uint mask,
                             CTarvikStorage::CUserData* userData = nullptr);
    void getLocationRequestRequest(CTarvikStorage::CUserData* userData = nullptr);
    void saveLocationRequestRequest(Dravo::CLocationRequest locationrequest, uint mask,
                                    CTarvikStorage::CUserData* userData = nullptr);

Q_SIGNALS:
    void signalTarvikGotten(bool result, Dravo::CTarvik tarvik, uint folderName,
                            CTarvikStorage::CUserData* userData);
    void signalTarvikSaved(bool result, int tid, uint folderName,
                           CTarvikStorage::CUserData* userData);
    void signalTarvikRemoved(bool result, int tid, uint folderName,
                             CTarvikStorage::CUserData* userData);
    void signalTarviksGotten(bool result, QList<Dravo::CTarvik> tarviks, uint folderName,
                             CTarvikStorage::CUserData* userData);
    void signalTarviksSaved(bool result, QList<int> tids, uint folderName,
                            CTarvikStorage::CUserData* userData);
    void signalTarviksRemoved(bool result, QList<int> tids, uint folderName,
                              CTarvikStorage::CUserData* userData);
    void signalAllTarviksRemoved(bool result, uint folderName, CTarvikStorage::CUserData* userData);
    void signalSettingsGotten(bool result, Dravo::CTSettings settings,
                              CTarvikStorage::CUserData* userData);
    void signalSettingsSaved(bool result, uint mask, CTarvikStorage::CUserData* userData);
    void signalLocationRequestGotten(bool result, Dravo::CLocationRequest locationrequest,
                                     CTarvikStorage::CUserData* userData);
    void signalLocationRequestSaved(bool result, uint mask, CTarvikStorage::CUserData* userData);

private:
    class CFileLock;
    void openLocked();
    bool recreateLocked();
    bool buildDatabase(bool replace);
    bool writeVersionAndImei(const QString& path);
    bool checkOpen(const char* operation) const;
    bool checkFolder(int folder, const char* operation) const;
    bool saveTarvikLocked(const CTarvik& tarvik, eFolderName folder, int& tid);
    bool removeTarvikLocked(int tid, eFolderName folder);
    bool retrieveTarviksFromQuery(const QString& table, int limit, int offset,
                                  QList<CTarvik>& tarviks);
    sqlite3* nativeHandle() const;
    void storeImei(QSqlDatabase& db);

    QString m_strConnectionName;
    QSqlDatabase* m_pDatabase;
};

}  // namespace Dravo

Q_DECLARE_METATYPE(Dravo::CTarvikStorage::CUserData*)
