// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ccontactchooserdialog.h"

#include <QDialogButtonBox>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QScroller>
#include <QSortFilterProxyModel>
#include <QVBoxLayout>
#include <algorithm>

#include "ctexts.h"

namespace Dravo {

CContactListModel::CContactListModel(QObject* parent) : QAbstractListModel(parent) {}

void CContactListModel::setContacts(const CContactEntryList& contacts)
{
    beginResetModel();
    m_lstContacts = contacts;
    m_lstSearch.clear();
    m_lstSearch.reserve(contacts.size());
    for (const CContactEntry& contact : contacts) {
        m_lstSearch.append(contact.searchText().toCaseFolded());
    }
    endResetModel();
}

int CContactListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_lstContacts.size());
}

QVariant CContactListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_lstContacts.size()) {
        return QVariant();
    }
    const CContactEntry& contact = m_lstContacts.at(index.row());
    switch (role) {
        case Qt::DisplayRole: {
            const QList<CContactEntry::Attribute> addresses = contact.addressAttributes();
            return addresses.isEmpty()
                       ? contact.name()
                       : contact.name() + QLatin1Char('\n') + addresses.first().second;
        }
        case Qt::ToolTipRole:
            return contact.name();
        case eSearchRole:
            return m_lstSearch.at(index.row());
        case eIndexRole:
            return index.row();
        default:
            return QVariant();
    }
}

CContactChooserDialog::CContactChooserDialog(QWidget* parent)
    : QDialog(parent),
      m_pModel(new CContactListModel(this)),
      m_pProxy(new QSortFilterProxyModel(this)),
      m_pSearch(new QLineEdit(this)),
      m_pList(new QListView(this)),
      m_pStatus(new QLabel(this))
{
    setObjectName(QStringLiteral("contactChooserDialog"));
    setWindowTitle(CTexts::chooseAContact());
    // No wider or taller than the window it belongs to (a phone's screen).
    resize(parent ? QSize(480, 400).boundedTo(parent->window()->size()) : QSize(480, 400));

    m_pProxy->setSourceModel(m_pModel);
    m_pProxy->setFilterRole(CContactListModel::eSearchRole);
    m_pProxy->setFilterCaseSensitivity(Qt::CaseSensitive);  // the search text is case-folded
    m_pProxy->setSortCaseSensitivity(Qt::CaseInsensitive);
    m_pProxy->setSortLocaleAware(true);
    m_pProxy->setDynamicSortFilter(false);

    m_pSearch->setObjectName(QStringLiteral("contactSearch"));
    m_pSearch->setPlaceholderText(CTexts::searchContacts());
    m_pSearch->setClearButtonEnabled(true);
    connect(m_pSearch, &QLineEdit::textChanged, this, &CContactChooserDialog::onSearchChanged);

    m_pList->setObjectName(QStringLiteral("contactList"));
    m_pList->setModel(m_pProxy);
    m_pList->setUniformItemSizes(true);  // keeps thousands of rows cheap to lay out
    m_pList->setAlternatingRowColors(true);
    m_pList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_pList->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_pList->setVisible(false);
    // A finger flicks through the address book.
    m_pList->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    QScroller::grabGesture(m_pList->viewport(), QScroller::TouchGesture);
    connect(m_pList, &QListView::activated, this, [this]() { accept(); });

    m_pStatus->setObjectName(QStringLiteral("contactStatus"));
    m_pStatus->setAlignment(Qt::AlignCenter);
    m_pStatus->setWordWrap(true);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_pSearch);
    layout->addWidget(m_pList, 1);
    layout->addWidget(m_pStatus, 1);
    layout->addWidget(buttons);
    updateStatus();
}

void CContactChooserDialog::setContacts(const CContactEntryList& contacts)
{
    // A newer read replaces the list while it is shown: the selection and the current
    // row follow the contacts' uids.
    const auto uidAt = [this](const QModelIndex& index) {
        return m_pModel->contacts().at(index.data(CContactListModel::eIndexRole).toInt()).uid();
    };
    QStringList selected;
    for (const QModelIndex& index : m_pList->selectionModel()->selectedRows()) {
        selected.append(uidAt(index));
    }
    const QString current =
        m_pList->currentIndex().isValid() ? uidAt(m_pList->currentIndex()) : QString();
    m_bLoaded = true;
    m_bUnavailable = false;
    m_pModel->setContacts(contacts);
    m_pProxy->sort(0);
    QItemSelectionModel* selection = m_pList->selectionModel();
    for (int row = 0; row < m_pProxy->rowCount(); ++row) {
        const QModelIndex index = m_pProxy->index(row, 0);
        if (uidAt(index) == current) {
            selection->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
        }
        if (selected.contains(uidAt(index))) {
            selection->select(index, QItemSelectionModel::Select);
        }
    }
    onSearchChanged(m_pSearch->text());
}

void CContactChooserDialog::setUnavailable(const QString& reason)
{
    m_bLoaded = true;
    m_bUnavailable = true;
    m_pModel->setContacts(CContactEntryList());
    m_pStatus->setToolTip(reason);
    updateStatus();
}

void CContactChooserDialog::onSearchChanged(const QString& text)
{
    m_pProxy->setFilterFixedString(text.trimmed().toCaseFolded());
    if (m_pProxy->rowCount() > 0 && !m_pList->currentIndex().isValid()) {
        m_pList->setCurrentIndex(m_pProxy->index(0, 0));
    }
    updateStatus();
}

void CContactChooserDialog::updateStatus()
{
    QString status;
    if (m_bUnavailable) {
        status = CTexts::addressBookUnavailable();
    } else if (!m_bLoaded) {
        status = CTexts::loadingContacts();
    } else if (m_pProxy->rowCount() == 0) {
        status = CTexts::noContacts();
    }
    m_pStatus->setText(status);
    m_pStatus->setVisible(!status.isEmpty());
    m_pList->setVisible(status.isEmpty());
    m_pSearch->setEnabled(m_bLoaded && !m_bUnavailable);
}

CContactEntryList CContactChooserDialog::selectedContacts() const
{
    QModelIndexList rows = m_pList->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end(),
              [](const QModelIndex& a, const QModelIndex& b) { return a.row() < b.row(); });
    CContactEntryList result;
    for (const QModelIndex& row : rows) {
        result.append(m_pModel->contacts().at(row.data(CContactListModel::eIndexRole).toInt()));
    }
    return result;
}

int CContactChooserDialog::visibleCount() const
{
    return m_pProxy->rowCount();
}

void CContactChooserDialog::selectByName(const QStringList& names)
{
    QItemSelectionModel* selection = m_pList->selectionModel();
    selection->clearSelection();
    for (int row = 0; row < m_pProxy->rowCount(); ++row) {
        const QModelIndex index = m_pProxy->index(row, 0);
        const int source = index.data(CContactListModel::eIndexRole).toInt();
        if (names.contains(m_pModel->contacts().at(source).name())) {
            selection->select(index, QItemSelectionModel::Select);
        }
    }
}

}  // namespace Dravo
