// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctarviklistmodel.h"

namespace Dravo {

CTarvikListModel::CTarvikListModel(QObject* parent, CAsyncTStorage::eFolderName folderName)
    : CAbstractListModel<CTarvik>(parent, parent), m_folderName(folderName), m_iPending(0)
{
    CAsyncTStorage* pStorage = CAsyncTStorage::getInstance(1);
    connect(pStorage, &CAsyncTStorage::signalTarviksGotten, this,
            [this](bool result, const QList<CTarvik>& tarviks, uint folderName,
                   CTarvikStorage::CUserData* pUserData) {
                if (pUserData != &m_tag || m_iPending <= 0)
                    return;
                // The worker answers in order: earlier answers are stale, the last one
                // fills the model.
                if (--m_iPending == 0)
                    tarviksGotten(result, tarviks, folderName);
            });
}

void CTarvikListModel::refresh()
{
    removeAllItems();
    const bool bAsked = CAsyncTStorage::getInstance(1)->getTarviks(m_folderName, -1, 0, &m_tag);
    if (bAsked)
        ++m_iPending;
    Q_EMIT fetchingStarted();
    // No answer will come from a storage that is not open: do not stay busy.
    if (!bAsked) {
        CAsyncTStorage* pStorage = CAsyncTStorage::getInstance(1);
        if (pStorage->isQuitting()) {
            qCritical("CTarvikListModel::refresh failed: storage is not ready");
        } else if (!m_refreshWhenReady) {
            // A folder shown at start-up (the bus starts the client to open its inbox)
            // comes before the database is open: it is filled once it is.
            qDebug(
                "CTarvikListModel::refresh: the storage is still opening; asking again "
                "once it is open");
            m_refreshWhenReady =
                connect(pStorage, &CAsyncTStorage::signalInitialized, this,
                        &CTarvikListModel::onStorageInitialized, Qt::QueuedConnection);
            if (pStorage->isInitialized()) {
                QMetaObject::invokeMethod(this, &CTarvikListModel::onStorageInitialized,
                                          Qt::QueuedConnection);
            }
        }
        Q_EMIT fetchingComplete();
    }
}

void CTarvikListModel::onStorageInitialized()
{
    if (!m_refreshWhenReady) {
        return;
    }
    disconnect(m_refreshWhenReady);
    m_refreshWhenReady = QMetaObject::Connection();
    refresh();
}

void CTarvikListModel::tarviksGotten(bool result, QList<CTarvik> tarviks, uint folderName)
{
    if (folderName != uint(m_folderName))
        return;
    if (result)
        appendItems(tarviks);
    else
        qCritical("CTarvikListModel::tarviksGotten failed");
    Q_EMIT fetchingComplete();
}

QVariant CTarvikListModel::data(const QModelIndex& index, int role) const
{
    if (role != Qt::AccessibleTextRole)
        return CAbstractListModel<CTarvik>::data(index, role);
    if (!index.isValid() || index.row() < 0 || index.row() >= itemCount())
        return QVariant();
    const CTarvik& tarvik = itemAt(index.row());
    const QString strWho =
        m_folderName == CAsyncTStorage::eFolderInbox ? tarvik.screenname() : tarvik.to();
    return strWho + QStringLiteral(", ") + tarvik.title();
}

QString CTarvikListModel::itemToText(const CTarvik& tarvik) const
{
    return tarvik.title();
}

}  // namespace Dravo
