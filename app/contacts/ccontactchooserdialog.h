// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAbstractListModel>
#include <QDialog>

#include "ccontactentry.h"

class QLabel;
class QLineEdit;
class QListView;
class QSortFilterProxyModel;

namespace Dravo {

// The contacts as a list model: one row per contact, shown by name with its first
// phone number or e-mail address below.
class CContactListModel : public QAbstractListModel
{
    Q_OBJECT
public:
    enum eRole
    {
        eSearchRole = Qt::UserRole + 1,
        eIndexRole
    };

    explicit CContactListModel(QObject* parent = nullptr);
    void setContacts(const CContactEntryList& contacts);
    const CContactEntryList& contacts() const { return m_lstContacts; }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    CContactEntryList m_lstContacts;
    QStringList m_lstSearch;  // lower-cased once, searched on every key press
};

// "Choose a contact": a search field over the contact list. Several contacts may
// be selected; selectedContacts() lists them in the order shown.
class CContactChooserDialog : public QDialog
{
    Q_OBJECT
public:
    explicit CContactChooserDialog(QWidget* parent = nullptr);

    void setContacts(const CContactEntryList& contacts);
    // The address book could not be read: say so instead of the list.
    void setUnavailable(const QString& reason);
    bool isLoaded() const { return m_bLoaded; }

    CContactEntryList selectedContacts() const;
    QLineEdit* searchField() const { return m_pSearch; }
    QListView* listView() const { return m_pList; }
    QLabel* statusLabel() const { return m_pStatus; }
    int visibleCount() const;
    // Selects the shown rows whose name is in names.
    void selectByName(const QStringList& names);

private:
    void onSearchChanged(const QString& text);
    void updateStatus();

    CContactListModel* m_pModel;
    QSortFilterProxyModel* m_pProxy;
    QLineEdit* m_pSearch;
    QListView* m_pList;
    QLabel* m_pStatus;
    bool m_bLoaded = false;
    bool m_bUnavailable = false;
};

}  // namespace Dravo
