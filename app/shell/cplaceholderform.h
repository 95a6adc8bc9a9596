// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cform.h"
#include "ctwpushbutton.h"

namespace Dravo {

// Stands in for a screen that this build does not have yet: its title, one line that
// says what would be here, and a Back button.
class CPlaceholderForm : public CForm
{
    Q_OBJECT
public:
    CPlaceholderForm(QWidget* parent, const QString& strTitle, const QString& strText);

    QString title() const override { return m_strTitle; }
    QString text() const { return m_strText; }

public Q_SLOTS:
    void onBtnBackClick();

private:
    QString m_strTitle;
    QString m_strText;
    CTWPushButton* m_pBtnBack;
};

}  // namespace Dravo
