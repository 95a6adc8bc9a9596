// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "casynctstorage.h"
#include "cform.h"
#include "ctarvik.h"
#include "ctwpushbutton.h"

namespace Dravo {

class CTarvikListView;
class CTWToolBar;

// A folder screen: the folder's message list beside a tool bar, the selected message,
// a title with the message count, and a refresh whenever the storage service changes
// the folder or the daemon reports traffic for it. CInboxForm, CSentForm and
// COutboxForm are its members; they differ only in the traits they pass.
class CFolderForm : public CForm
{
    Q_OBJECT
public:
    // What one folder screen does differently.
    struct CTraits
    {
        const char* pClassName;  // the log prefix, e.g. "CInboxForm"
        CAsyncTStorage::eFolderName folderName;
        const QString& strTitle;
        bool bOpenButtons;       // Open and Delete All (and double-click opens)
        bool bSendReceive;       // the Send/Receive button
        int iViewType;           // the message view's type for Open
        bool bMarkReadOnOpen;    // opening an unread message saves it read
        bool bDeleteOnlyFailed;  // Delete only for messages whose sending failed
    };

    QString title() const override;

    CTarvikListView* listView() const { return m_pListView; }
    const CTarvik& currentTarvik() const { return m_currentTarvik; }
    CAsyncTStorage::eFolderName folderName() const { return m_traits.folderName; }

    // Null when the screen has no such button.
    CTWPushButton* buttonDelete() const { return m_pBtnDelete; }
    CTWPushButton* buttonDeleteAll() const { return m_pBtnDeleteAll; }
    CTWPushButton* buttonOpen() const { return m_pBtnOpen; }
    CTWPushButton* buttonSendReceive() const { return m_pBtnSendReceive; }
    CTWPushButton* buttonBack() const { return m_pBtnBack; }

public Q_SLOTS:
    void refresh();
    void refreshCompleted();
    void itemClicked(const QModelIndex& index);
    void itemDoubleClicked(const QModelIndex& index);
    void onBtnDeleteClick();
    void onBtnDeleteAllClick();
    void onBtnSendReceiveClick();
    void onBtnOpenClick();
    void onBtnCloseClick();
    void tarvikRemoved(bool result, int tid, uint folderName);
    void allTarviksRemoved(bool result, uint folderName);
    void tarvikSaved(bool result, int tid, uint folderName);
    void tarviksSaved(bool result, QList<int> tids, uint folderName);

protected:
    CFolderForm(QWidget* parent, const CTraits& traits);

private:
    CTWPushButton* addButton(const QString& strText, Qt::Alignment alignment,
                             void (CFolderForm::*slot)());
    bool selectIndex(const QModelIndex& index, const char* pSlotName);
    bool isOwnFolder(uint folderName) const { return folderName == uint(m_traits.folderName); }
    void logCritical(const QString& strText) const;
    int rowCount() const;

    CTraits m_traits;
    CTarvikListView* m_pListView;
    CTWToolBar* m_pToolBar;
    CTarvik m_currentTarvik;
    CTWPushButton* m_pBtnDeleteAll;
    CTWPushButton* m_pBtnOpen;
    CTWPushButton* m_pBtnDelete;
    CTWPushButton* m_pBtnSendReceive;
    CTWPushButton* m_pBtnBack;
};

}  // namespace Dravo
