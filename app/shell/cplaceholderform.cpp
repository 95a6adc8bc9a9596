// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cplaceholderform.h"

#include <QBoxLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ctexts.h"
#include "ctitle.h"
#include "ctwlabel.h"
#include "ctwtoolbar.h"

namespace Dravo {

CPlaceholderForm::CPlaceholderForm(QWidget* parent, const QString& strTitle, const QString& strText)
    : CForm(parent), m_strTitle(strTitle), m_strText(strText), m_pBtnBack(nullptr)
{
    QBoxLayout* pFormLayout = qobject_cast<QBoxLayout*>(layout());
    if (!pFormLayout)
        return;

    auto* pTitle = new CTitle(this);
    pTitle->setText(strTitle);

    auto* pLabel = new CTWLabel(strText, this);
    pLabel->setWordWrap(true);
    pLabel->setTextFormat(Qt::PlainText);
    pLabel->setAlignment(Qt::AlignCenter);
    pLabel->setStyleSheet(QStringLiteral("color: white;"));

    auto* pToolBar = CTWToolBar::createSideBar(this);
    pToolBar->boxLayout()->addStretch(1);
    m_pBtnBack = new CTWPushButton(CTexts::back(), pToolBar);
    pToolBar->boxLayout()->addWidget(m_pBtnBack, 0, Qt::AlignBottom);
    connect(m_pBtnBack, &CTWPushButton::clicked, this, &CPlaceholderForm::onBtnBackClick);

    auto* pPanel = new QWidget(this);
    auto* pPanelLayout = new QVBoxLayout(pPanel);
    pPanelLayout->setSpacing(0);
    pPanelLayout->setContentsMargins(0, 0, 0, 0);
    pPanelLayout->addWidget(pTitle);
    pPanelLayout->addWidget(pLabel, 1);

    setBody(pPanel, pToolBar);
}

void CPlaceholderForm::onBtnBackClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    Q_EMIT closeForm(true, this);
}

}  // namespace Dravo
