// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cformstack.h"

namespace Dravo {

CFormStack::CFormStack(QWidget* parent) : CTWStackedWidget(parent) {}

CForm* CFormStack::currentForm() const
{
    return qobject_cast<CForm*>(currentWidget());
}

QString CFormStack::currentTitle() const
{
    const CForm* pForm = currentForm();
    return pForm ? pForm->title() : QString();
}

void CFormStack::showForm(CForm* pForm)
{
    if (!pForm)
        return;
    // Queued: a form asks to be closed from inside its own handlers; the stack acts afterwards.
    connect(pForm, &CForm::closeForm, this, &CFormStack::closeForm,
            Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection));
    connect(pForm, &CForm::showForm, this, &CFormStack::showForm, Qt::UniqueConnection);
    connect(pForm, &CForm::updateTitle, this, &CFormStack::updateTitle, Qt::UniqueConnection);
    setCurrentIndex(addWidget(pForm));
    applyBelowFormRule();
    updateTitle(pForm);
}

void CFormStack::closeForm(bool destroy, CForm* pForm)
{
    if (!pForm) {
        pForm = currentForm();
        if (!pForm)
            return;
    } else if (indexOf(pForm) < 0) {
        // A second request for a form already closed (and maybe deleted): the pointer is
        // only compared, never used.
        qWarning("CFormStack::closeForm form is not in the stack");
        return;
    }
    removeWidget(pForm);
    if (destroy)
        delete pForm;
    applyBelowFormRule();
    updateTitle(currentForm());
}

void CFormStack::updateTitle(CForm* pForm)
{
    if (pForm && pForm == currentWidget())
        emit onTitleUpdate();
}

void CFormStack::applyBelowFormRule()
{
    const CForm* pCurrent = currentForm();
    if (!pCurrent || !pCurrent->showsFormBelow())
        return;
    const int iIndex = indexOf(const_cast<CForm*>(pCurrent));
    if (iIndex > 0)
        widget(iIndex - 1)->setVisible(true);
}

}  // namespace Dravo
