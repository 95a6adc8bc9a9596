// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "casynctstorage.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDebug>
#include <QMetaType>
#include <QMutexLocker>
#include <cstdlib>
#include <mutex>

namespace Dravo {

QMap<QString, QSharedPointer<CAsyncTStorage>>& CAsyncTStorage::storages()
{
    static QMap<QString, QSharedPointer<CAsyncTStorage>> m_mStorages;
    return m_mStorages;
}

QString CAsyncTStorage::instanceName(int number)
{
    switch (number) {
        case 0:
            return QStringLiteral("async_tarvikdb_demon");
        case 1:
            return QStringLiteral("async_tarvikdb_ui");
        default:
            return QStringLiteral("async_tarvikdb_custom_%1").arg(number);
    }
}

CAsyncTStorage* CAsyncTStorage::getInstance(int number)
{
    const QString name = instanceName(number);
    auto& map = storages();
    auto it = map.find(name);
    if (it == map.end()) {
        qDebug().noquote() << "CAsyncTStorage::getInstance(): new instance: " + name;
        it = map.insert(name, QSharedPointer<CAsyncTStorage>(new CAsyncTStorage(name)));
    }
    return it.value().data();
}

void CAsyncTStorage::registerMetaTypes()
{
    qRegisterMetaType<CAsyncTStorage::eFolderName>("eFolderName");
    qRegisterMetaType<CTarvik>("CTarvik");
    qRegisterMetaType<QList<int>>("QList<int>");
    qRegisterMetaType<QList<CTarvik>>("QList<CTarvik>");
    qRegisterMetaType<CTSettings>("CTSettings");
    qRegisterMetaType<CTarvikStorage::CUserData>("CTarvikStorage::CUserData");
    qRegisterMetaType<CTarvikStorage::CUserData*>("CTarvikStorage::CUserData*");
    qRegisterMetaType<CLocationRequest>("CLocationRequest");
}

CAsyncTStorage::CAsyncTStorage(const QString& name)
    : QThread(nullptr), m_bQuitting(false), m_bInitialized(0), m_strName(name), m_pStorage(nullptr)
{
    if (QCoreApplication* app = QCoreApplication::instance()) {
        connect(app, &QCoreApplication::aboutToQuit, this, &CAsyncTStorage::onAppQuit);
        // Before static destruction, every worker has closed its connection.
        static bool postRoutineAdded = false;
        if (!postRoutineAdded) {
            qAddPostRoutine(&CAsyncTStorage::waitForAllWorkers);
            postRoutineAdded = true;
        }
    }
}

CAsyncTStorage::~CAsyncTStorage()
{
    if (isRunning()) {
        quit();
        wait();
    }
}

void CAsyncTStorage::waitForAllWorkers()
{
    for (const auto& storage : storages()) {
        if (!storage->isRunning()) {
            continue;
        }
        if (!storage->m_bQuitting) {
            storage->onAppQuit();
        }
        if (!storage->wait(QDeadlineTimer(drainTimeoutMs))) {
            qWarning().noquote()
                << QStringLiteral(
                       "CAsyncTStorage::waitForAllWorkers %1 still busy after %2 ms: "
                       "dropping the requests it has not started")
                       .arg(storage->m_strName)
                       .arg(drainTimeoutMs);
            storage->quit();
            storage->wait();
        }
    }
}

void CAsyncTStorage::start()
{
    CTarvikStorage::initResources();
    QThread::start(QThread::InheritPriority);
}

bool CAsyncTStorage::accepts(const char* operation) const
{
    if (m_bQuitting) {
        qWarning().noquote() << QStringLiteral(
                                    "CAsyncTStorage::%1 refused: the application is quitting")
                                    .arg(QLatin1String(operation));
        return false;
    }
    return isInitialized();
}

void CAsyncTStorage::onAppQuit()
{
    Q_EMIT beforeDestroy();
    m_bQuitting = true;
    // Requests accepted so far are queued on the worker in order; the loop ends when the
    // worker reaches this call, so none of them is dropped.
    QMutexLocker locker(&m_storageMutex);
    if (m_pStorage) {
        QMetaObject::invokeMethod(
            m_pStorage, [this] { exit(0); }, Qt::QueuedConnection);
    } else {
        quit();
    }
}

void CAsyncTStorage::run()
{
    qDebug().noquote() << "CAsyncTStorage::run() " + m_strName;
    CTarvikStorage* storage = new CTarvikStorage(m_strName);
    registerMetaTypes();
    // A program ended by exit() while the event loop runs (Qt does so when the display
    // server goes away) never reaches the post routine, and static destruction would pull
    // Qt SQL's connection table from under a running worker. Registered after that table
    // exists, this handler runs before it is destroyed.
    static std::once_flag s_exitHandler;
    std::call_once(s_exitHandler, [] { std::atexit(&CAsyncTStorage::waitForAllWorkers); });

    const Qt::ConnectionType q = Qt::QueuedConnection;
    QList<QMetaObject::Connection> connections = {
        connect(this, &CAsyncTStorage::signalGetTarvikRequest, storage,
                &CTarvikStorage::getTarvikRequest, q),
        connect(this, &CAsyncTStorage::signalSaveTarvikRequest, storage,
                &CTarvikStorage::saveTarvikRequest, q),
        connect(this, &CAsyncTStorage::signalRemoveTarvikRequest, storage,
                &CTarvikStorage::removeTarvikRequest, q),
        connect(this, &CAsyncTStorage::signalGetTarviksRequest, storage,
                &CTarvikStorage::getTarviksRequest, q),
        connect(this, &CAsyncTStorage::signalSaveTarviksRequest, storage,
                &CTarvikStorage::saveTarviksRequest, q),
        connect(this, &CAsyncTStorage::signalRemoveTarviksRequest, storage,
                &CTarvikStorage::removeTarviksRequest, q),
        connect(this, &CAsyncTStorage::signalRemoveAllTarviksRequest, storage,
                &CTarvikStorage::removeAllTarviksRequest, q),
        connect(this, &CAsyncTStorage::signalGetSettingsRequest, storage,
                &CTarvikStorage::getSettingsRequest, q),
        connect(this, &CAsyncTStorage::signalSaveSettingsRequest, storage,
                &CTarvikStorage::saveSettingsRequest, q),
        connect(this, &CAsyncTStorage::signalGetLocationRequestRequest, storage,
                &CTarvikStorage::getLocationRequestRequest, q),
        connect(this, &CAsyncTStorage::signalSaveLocationRequestRequest, storage,
                &CTarvikStorage::saveLocationRequestRequest, q),
        connect(storage, &CTarvikStorage::signalTarvikGotten, this,
                &CAsyncTStorage::signalTarvikGotten, q),
        connect(storage, &CTarvikStorage::signalTarvikSaved, this,
                &CAsyncTStorage::signalTarvikSaved, q),
        connect(storage, &CTarvikStorage::signalTarvikRemoved, this,
                &CAsyncTStorage::signalTarvikRemoved, q),
        connect(storage, &CTarvikStorage::signalTarviksGotten, this,
                &CAsyncTStorage::signalTarviksGotten, q),
        connect(storage, &CTarvikStorage::signalTarviksSaved, this,
                &CAsyncTStorage::signalTarviksSaved, q),
        connect(storage, &CTarvikStorage::signalTarviksRemoved, this,
                &CAsyncTStorage::signalTarviksRemoved, q),
        connect(storage, &CTarvikStorage::signalAllTarviksRemoved, this,
                &CAsyncTStorage::signalAllTarviksRemoved, q),
        connect(storage, &CTarvikStorage::signalSettingsGotten, this,
                &CAsyncTStorage::signalSettingsGotten, q),
        connect(storage, &CTarvikStorage::signalSettingsSaved, this,
                &CAsyncTStorage::signalSettingsSaved, q),
        connect(storage, &CTarvikStorage::signalLocationRequestGotten, this,
                &CAsyncTStorage::signalLocationRequestGotten, q),
        connect(storage, &CTarvikStorage::signalLocationRequestSaved, this,
                &CAsyncTStorage::signalLocationRequestSaved, q),
    };
    for (const QMetaObject::Connection& connection : connections) {
        const bool result = bool(connection);
        Q_ASSERT_X(result == true, "CAsyncTStorage::run", "result == true");
        if (!result) {
            qFatal("CAsyncTStorage::run result == true");
        }
    }

    {
        QMutexLocker locker(&m_storageMutex);
        m_pStorage = storage;
    }
    m_bInitialized.storeRelease(1);
    Q_EMIT signalInitialized();
    exec();

    m_bInitialized.storeRelease(0);
    {
        QMutexLocker locker(&m_storageMutex);
        m_pStorage = nullptr;
    }
    qDebug().noquote() << "CAsyncTStorage::run() finished " + m_strName;
    for (const QMetaObject::Connection& connection : connections) {
        const bool result = disconnect(connection);
        Q_ASSERT_X(result == true, "CAsyncTStorage::run", "result == true");
    }
    delete storage;
}

bool CAsyncTStorage::getTarvik(int tid, eFolderName folderName, CTarvikStorage::CUserData* userData)
{
    if (!accepts("getTarvik")) {
        return false;
    }
    Q_EMIT signalGetTarvikRequest(tid, folderName, userData);
    return true;
}

bool CAsyncTStorage::saveTarvik(const CTarvik& tarvik, eFolderName folderName,
                                CTarvikStorage::CUserData* userData)
{
    if (!accepts("saveTarvik")) {
        return false;
    }
    Q_EMIT signalSaveTarvikRequest(tarvik, folderName, userData);
    return true;
}

bool CAsyncTStorage::removeTarvik(int tid, eFolderName folderName,
                                  CTarvikStorage::CUserData* userData)
{
    if (!accepts("removeTarvik")) {
        return false;
    }
    Q_EMIT signalRemoveTarvikRequest(tid, folderName, userData);
    return true;
}

bool CAsyncTStorage::getTarviks(eFolderName folderName, int limit, int offset,
                                CTarvikStorage::CUserData* userData)
{
    if (!accepts("getTarviks")) {
        return false;
    }
    Q_EMIT signalGetTarviksRequest(folderName, limit, offset, userData);
    return true;
}

bool CAsyncTStorage::saveTarviks(const QList<CTarvik>& tarviks, eFolderName folderName,
                                 CTarvikStorage::CUserData* userData)
{
    if (!accepts("saveTarviks")) {
        return false;
    }
    Q_EMIT signalSaveTarviksRequest(tarviks, folderName, userData);
    return true;
}

bool CAsyncTStorage::removeTarviks(const QList<int>& tids, eFolderName folderName,
                                   CTarvikStorage::CUserData* userData)
{
    if (!accepts("removeTarviks")) {
        return false;
    }
    Q_EMIT signalRemoveTarviksRequest(tids, folderName, userData);
    return true;
}

bool CAsyncTStorage::removeAllTarviks(eFolderName folderName, CTarvikStorage::CUserData* userData)
{
    if (!accepts("removeAllTarviks")) {
        return false;
    }
    Q_EMIT signalRemoveAllTarviksRequest(folderName, userData);
    return true;
}

bool CAsyncTStorage::getSettings(CTarvikStorage::CUserData* userData)
{
    if (!accepts("getSettings")) {
        return false;
    }
    Q_EMIT signalGetSettingsRequest(userData);
    return true;
}

bool CAsyncTStorage::saveSettings(const CTSettings& settings, uint mask,
                                  CTarvikStorage::CUserData* userData)
{
    if (!accepts("saveSettings")) {
        return false;
    }
    Q_EMIT signalSaveSettingsRequest(settings, mask, userData);
    return true;
}

bool CAsyncTStorage::getLocationRequest(CTarvikStorage::CUserData* userData)
{
    if (!accepts("getLocationRequest")) {
        return false;
    }
    Q_EMIT signalGetLocationRequestRequest(userData);
    return true;
}

bool CAsyncTStorage::saveLocationRequest(const CLocationRequest& locationrequest, uint mask,
                                         CTarvikStorage::CUserData* userData)
{
    if (!accepts("saveLocationRequest")) {
        return false;
    }
    Q_EMIT signalSaveLocationRequestRequest(locationrequest, mask, userData);
    return true;
}

}  // namespace Dravo
