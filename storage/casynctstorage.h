// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QMap>
#include <QMutex>
#include <QSharedPointer>
#include <QThread>

#include "cfoldernames.h"
#include "ctarvikstorage.h"

namespace Dravo {

// Runs a CTarvikStorage on its own worker thread so the GUI never waits for SQLite.
// Instances are named and shared: getInstance(1) is the GUI's. A request method emits
// a queued request signal; the worker runs the operation and its answer signal comes
// back on the thread this object lives in. Answers are broadcast to every listener,
// which filters by folder and by its own user-data pointer.
//
// At quit, onAppQuit() refuses further requests and asks the worker's loop to end once it
// has run every request accepted before. A post routine of the application object then
// waits for every worker (at most drainTimeoutMs each, logged when exceeded), so each
// database connection is closed before static destruction and the process exits cleanly.
class CAsyncTStorage : public QThread, public CFolderNames
{
    Q_OBJECT
public:
    // How long quitting waits for a worker to finish the requests queued before quit.
    static const int drainTimeoutMs = 20000;

    static CAsyncTStorage* getInstance(int number);
    static QString instanceName(int number);

    ~CAsyncTStorage() override;

    // Makes the template database resource available, then starts the worker.
    void start();
    bool isInitialized() const { return m_bInitialized.loadAcquire() != 0; }
    bool isQuitting() const { return m_bQuitting; }
    QString name() const { return m_strName; }

    bool getTarvik(int tid, eFolderName folderName, CTarvikStorage::CUserData* userData = nullptr);
    bool saveTarvik(const CTarvik& tarvik, eFolderName folderName,
                    CTarvikStorage::CUserData* userData = nullptr);
    bool removeTarvik(int tid, eFolderName folderName,
                      CTarvikStorage::CUserData* userData = nullptr);
    bool getTarviks(eFolderName folderName, int limit = -1, int offset = 0,
                    CTarvikStorage::CUserData* userData = nullptr);
    bool saveTarviks(const QList<CTarvik>& tarviks, eFolderName folderName,
                     CTarvikStorage::CUserData* userData = nullptr);
    bool removeTarviks(const QList<int>& tids, eFolderName folderName,
                       CTarvikStorage::CUserData* userData = nullptr);
    bool removeAllTarviks(eFolderName folderName, CTarvikStorage::CUserData* userData = nullptr);
    bool getSettings(CTarvikStorage::CUserData* userData = nullptr);
    bool saveSettings(const CTSettings& settings, uint mask,
                      CTarvikStorage::CUserData* userData = nullptr);
    bool getLocationRequest(CTarvikStorage::CUserData* userData = nullptr);
    bool saveLocationRequest(const CLocationRequest& locationrequest, uint mask,
                             CTarvikStorage::CUserData* userData = nullptr);

    // Registers the queued types under the names the signals use.
    static void registerMetaTypes();

public Q_SLOTS:
    void onAppQuit();

Q_SIGNALS:
    void signalTarvikGotten(bool result, Dravo::CTarvik tarvik, uint folderName,
                            CTarvikStorage::CUserData* userData = nullptr);
    void signalTarvikSaved(bool result, int tid, uint folderName,
                           CTarvikStorage::CUserData* userData = nullptr);
    void signalTarvikRemoved(bool result, int tid, uint folderName,
                             CTarvikStorage::CUserData* userData = nullptr);
    void signalTarviksGotten(bool result, QList<Dravo::CTarvik> tarviks, uint folderName,
                             CTarvikStorage::CUserData* userData = nullptr);
    void signalTarviksSaved(bool result, QList<int> tids, uint folderName,
                            CTarvikStorage::CUserData* userData = nullptr);
    void signalTarviksRemoved(bool result, QList<int> tids, uint folderName,
                              CTarvikStorage::CUserData* userData = nullptr);
    void signalAllTarviksRemoved(bool result, uint folderName,
                                 CTarvikStorage::CUserData* userData = nullptr);
    void signalSettingsGotten(bool result, Dravo::CTSettings settings,
                              CTarvikStorage::CUserData* userData = nullptr);
    void signalSettingsSaved(bool result, uint mask, CTarvikStorage::CUserData* userData = nullptr);
    void signalLocationRequestGotten(bool result, Dravo::CLocationRequest locationrequest,
                                     CTarvikStorage::CUserData* userData = nullptr);
    void signalLocationRequestSaved(bool result, uint mask,
                                    CTarvikStorage::CUserData* userData = nullptr);
    void beforeDestroy();
    void signalInitialized();
    void signalGetTarvikRequest(int tid, eFolderName folderName,
                                CTarvikStorage::CUserData* userData = nullptr);
    void signalSaveTarvikRequest(Dravo::CTarvik tarvik, eFolderName folderName,
                                 CTarvikStorage::CUserData* userData = nullptr);
    void signalRemoveTarvikRequest(int tid, eFolderName folderName,
                                   CTarvikStorage::CUserData* userData = nullptr);
    void signalGetTarviksRequest(eFolderName folderName, int limit = -1, int offset = 0,
                                 CTarvikStorage::CUserData* userData = nullptr);
    void signalSaveTarviksRequest(QList<Dravo::CTarvik> tarviks, eFolderName folderName,
                                  CTarvikStorage::CUserData* userData = nullptr);
    void signalRemoveTarviksRequest(QList<int> tids, eFolderName folderName,
                                    CTarvikStorage::CUserData* userData = nullptr);
    void signalRemoveAllTarviksRequest(eFolderName folderName,
                                       CTarvikStorage::CUserData* userData = nullptr);
    void signalGetSettingsRequest(CTarvikStorage::CUserData* userData = nullptr);
    void signalSaveSettingsRequest(Dravo::CTSettings settings, uint mask,
                                   CTarvikStorage::CUserData* userData = nullptr);
    void signalGetLocationRequestRequest(CTarvikStorage::CUserData* userData = nullptr);
    void signalSaveLocationRequestRequest(Dravo::CLocationRequest locationrequest, uint mask,
                                          CTarvikStorage::CUserData* userData = nullptr);

protected:
    void run() override;

private:
    explicit CAsyncTStorage(const QString& name);
    static QMap<QString, QSharedPointer<CAsyncTStorage>>& storages();
    static void waitForAllWorkers();

    bool accepts(const char* operation) const;

    bool m_bQuitting;
    QAtomicInt m_bInitialized;
    QString m_strName;
    QMutex m_storageMutex;
    CTarvikStorage* m_pStorage;  // the worker's storage while its loop runs
};

}  // namespace Dravo
