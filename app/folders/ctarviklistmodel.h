// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cabstractlistmodel.h"
#include "casynctstorage.h"
#include "ctarvik.h"

namespace Dravo {

// The messages of one folder, filled from the GUI's storage service. Only answers to the
// model's own requests are taken: every model, the notifier and the popups ask the same
// service, and its answers reach everyone who listens.
class CTarvikListModel : public CAbstractListModel<CTarvik>
{
    Q_OBJECT
public:
    CTarvikListModel(QObject* parent, CAsyncTStorage::eFolderName folderName);

    CAsyncTStorage::eFolderName folderName() const { return m_folderName; }

    // Empties the model and asks the storage service for the whole folder; a service that
    // has not opened its database yet is asked again once it has.
    void refresh();

    // Adds the accessible text of an entry (who and what) to the roles of the base.
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

public Q_SLOTS:
    void tarviksGotten(bool result, QList<Dravo::CTarvik> tarviks, uint folderName);

protected:
    QString itemToText(const CTarvik& tarvik) const override;

private:
    void onStorageInitialized();

    CAsyncTStorage::eFolderName m_folderName;
    // Marks the model's requests; only the answer to the latest one fills the model.
    CTarvikStorage::CUserData m_tag;
    int m_iPending;
    QMetaObject::Connection m_refreshWhenReady;
};

}  // namespace Dravo
