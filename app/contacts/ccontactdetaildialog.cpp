// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ccontactdetaildialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

#include "ctexts.h"

namespace Dravo {

namespace {

constexpr int kValueRole = Qt::UserRole + 1;

}  // namespace

CContactDetailDialog::CContactDetailDialog(const CContactEntry& contact, QWidget* parent)
    : QDialog(parent), m_pList(new QListWidget(this))
{
    setObjectName(QStringLiteral("contactDetailDialog"));
    setWindowTitle(contact.name());
    resize(parent ? QSize(480, 300).boundedTo(parent->window()->size()) : QSize(480, 300));

    auto* prompt = new QLabel(CTexts::chooseAnAddress(), this);
    prompt->setWordWrap(true);

    m_pList->setObjectName(QStringLiteral("contactDetails"));
    for (const CContactEntry::Attribute& attribute : contact.addressAttributes()) {
        const QString label =
            attribute.first == QLatin1String("TEL") ? CTexts::phoneLabel() : CTexts::emailLabel();
        auto* item = new QListWidgetItem(label + QStringLiteral(": ") + attribute.second, m_pList);
        item->setData(kValueRole, attribute.second);
    }
    connect(m_pList, &QListWidget::itemActivated, this, [this]() { accept(); });

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(prompt);
    layout->addWidget(m_pList, 1);
    layout->addWidget(buttons);
}

QString CContactDetailDialog::selectedValue() const
{
    const QList<QListWidgetItem*> items = m_pList->selectedItems();
    return items.isEmpty() ? QString() : items.first()->data(kValueRole).toString();
}

void CContactDetailDialog::selectRow(int row)
{
    m_pList->clearSelection();
    if (QListWidgetItem* item = m_pList->item(row)) {
        item->setSelected(true);
        m_pList->setCurrentItem(item);
    }
}

}  // namespace Dravo
