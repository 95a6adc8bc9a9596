// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cform.h"

#include <QVBoxLayout>

namespace Dravo {

CForm::CForm(QWidget* parent) : QWidget(parent), m_bButtonsLocked(false)
{
    m_timerUnlockButtons.setSingleShot(true);
    m_timerUnlockButtons.setInterval(UNLOCK_INTERVAL);
    connect(&m_timerUnlockButtons, &QTimer::timeout, this, &CForm::onTimerUnlockButtonsTimeout);

    QVBoxLayout* pLayout = new QVBoxLayout(this);
    pLayout->setSpacing(0);
    pLayout->setContentsMargins(0, 0, 0, 0);

    // Holds the keyboard focus so that no input field has it when the form appears.
    QWidget* pFocusHolder = new QWidget(this);
    pFocusHolder->setMaximumSize(0, 0);
    pFocusHolder->setAutoFillBackground(false);
    pFocusHolder->setFocusPolicy(Qt::StrongFocus);
    pLayout->addWidget(pFocusHolder);
    pFocusHolder->setFocus(Qt::OtherFocusReason);
}

bool CForm::showsFormBelow() const
{
    return false;
}

void CForm::lockButtons()
{
    m_bButtonsLocked = true;
    m_timerUnlockButtons.start();
}

void CForm::onTimerUnlockButtonsTimeout()
{
    m_bButtonsLocked = false;
}

}  // namespace Dravo
