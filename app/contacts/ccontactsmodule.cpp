// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ccontactsmodule.h"

#include "cplugindirectory.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QPluginLoader>
#include <QThread>
#include <QtDebug>

namespace Dravo {

namespace {
const char* const kPluginName = "tarvikcontacts";

QString findPlugin()
{
    for (const QString& dir : CContactsModule::searchPaths()) {
        const QString path =
            QDir(dir).filePath(QStringLiteral("lib%1.so").arg(QLatin1String(kPluginName)));
        if (QFileInfo::exists(path)) {
            return path;
        }
    }
    return QString();
}
}  // namespace

CContactsModule* CContactsModule::instance()
{
    static CContactsModule* s_pInstance = new CContactsModule();
    return s_pInstance;
}

QStringList CContactsModule::searchPaths()
{
    return {pluginDirectory()};
}

bool CContactsModule::loadLibrary(QString* error) const
{
    if (m_strPath.isEmpty()) {
        *error = QStringLiteral("plugin %1 not found in %2")
                     .arg(QLatin1String(kPluginName), searchPaths().join(QStringLiteral(", ")));
        return false;
    }
    // Maps the plugin and its dependencies; QPluginLoader later finds it loaded.
    QLibrary library(m_strPath);
    if (!library.load()) {
        *error = library.errorString();
        return false;
    }
    return true;
}

void CContactsModule::loadInBackground()
{
    if (m_bLoading || m_bDone) {
        return;
    }
    m_bLoading = true;
    m_strPath = findPlugin();
    QThread* thread = QThread::create([this] {
        QString error;
        const bool ok = loadLibrary(&error);
        QMetaObject::invokeMethod(this, [this, ok, error] {
            if (!ok) {
                m_strError = error;
            }
            finishLoading(true);
        });
    });
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    m_pLoader = thread;
    // The process must not exit while the plugin is being mapped: its initialisers
    // would run against a program that is tearing itself down.
    if (QCoreApplication* app = QCoreApplication::instance()) {
        connect(app, &QCoreApplication::aboutToQuit, this, &CContactsModule::waitForLoader);
    }
    thread->start(QThread::LowPriority);
}

void CContactsModule::waitForLoader()
{
    if (m_pLoader && !m_pLoader->wait(10000)) {
        qWarning("CContactsModule: the contacts plugin is still loading at exit");
    }
}

IContactsModule* CContactsModule::module()
{
    if (!m_bDone) {
        if (m_strPath.isEmpty()) {
            m_strPath = findPlugin();
        }
        finishLoading(false);
    }
    return m_pInstance ? qobject_cast<IContactsModule*>(m_pInstance) : nullptr;
}

void CContactsModule::finishLoading(bool initialize)
{
    if (m_bDone) {
        return;
    }
    m_bDone = true;
    m_bLoading = false;
    if (m_strError.isEmpty() && !m_strPath.isEmpty()) {
        QPluginLoader loader(m_strPath);
        m_pInstance = loader.instance();
        if (!m_pInstance || !qobject_cast<IContactsModule*>(m_pInstance)) {
            m_strError = loader.errorString();
            m_pInstance = nullptr;
        }
    } else if (m_strError.isEmpty()) {
        QString error;
        loadLibrary(&error);
        m_strError = error;
    }
    if (!m_pInstance) {
        qCritical().noquote() << "CContactsModule: cannot load the contacts plugin: " + m_strError;
        if (initialize) {
            qCritical("main: osso abook initialization failed!");
        }
        Q_EMIT loaded(false);
        return;
    }
    if (initialize) {
        qobject_cast<IContactsModule*>(m_pInstance)->initialize();
    }
    Q_EMIT loaded(true);
}

}  // namespace Dravo
