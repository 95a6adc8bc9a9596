// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "casynctstorage.h"
#include "ctwlistview.h"

namespace Dravo {

class CTarvikListModel;
class CTarvikItemDelegate;

// The message list of one folder: its own model and delegate, busy while the folder is
// read, "No tarviks" when it is empty.
class CTarvikListView : public CTWListView
{
    Q_OBJECT
public:
    CTarvikListView(QWidget* parent, CAsyncTStorage::eFolderName folderName);

    CAsyncTStorage::eFolderName folderName() const { return m_folderName; }
    CTarvikListModel* tarvikModel() const;

public Q_SLOTS:
    void refresh();
    void onFetchingStarted();
    void onFetchingComplete();

Q_SIGNALS:
    void refreshCompleted();

private:
    CAsyncTStorage::eFolderName m_folderName;
};

}  // namespace Dravo
