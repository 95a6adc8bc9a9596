// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDialog>

#include "ccontactentry.h"

class QListWidget;

namespace Dravo {

// Lists one contact's phone numbers and e-mail addresses to pick one from.
class CContactDetailDialog : public QDialog
{
    Q_OBJECT
public:
    explicit CContactDetailDialog(const CContactEntry& contact, QWidget* parent = nullptr);

    // The chosen phone number or e-mail address; empty when none is selected.
    QString selectedValue() const;
    QListWidget* listWidget() const { return m_pList; }
    void selectRow(int row);

private:
    QListWidget* m_pList;
};

}  // namespace Dravo
