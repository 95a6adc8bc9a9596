// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cform.h"
#include "ctwstackedwidget.h"

namespace Dravo {

// The stack of forms: only the top form is current. It owns the forms it holds.
class CFormStack : public CTWStackedWidget
{
    Q_OBJECT
public:
    explicit CFormStack(QWidget* parent = nullptr);

    CForm* currentForm() const;
    // The current form's title; empty when there is no current form.
    QString currentTitle() const;

signals:
    // The current form's title may have changed.
    void onTitleUpdate();

public slots:
    void closeForm(bool destroy, Dravo::CForm* pForm = nullptr);
    void showForm(Dravo::CForm* pForm);
    void updateTitle(Dravo::CForm* pForm);

private:
    void applyBelowFormRule();
};

}  // namespace Dravo
