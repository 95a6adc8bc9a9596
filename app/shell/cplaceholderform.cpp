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

    auto* pToolBar = new CTWToolBar(QBoxLayout::TopToBottom, this);
    pToolBar->setSkin(CSkin(QStringLiteral(":/res_ui/img/toolbar.png")));
    pToolBar->boxLayout()->setSpacing(10);
    pToolBar->boxLayout()->setContentsMargins(10, 10, 10, 10);
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

    auto* pRow = new QHBoxLayout();
    pRow->setSpacing(0);
    pRow->setContentsMargins(0, 0, 0, 0);
    pRow->addWidget(pPanel, 1);
    pRow->addWidget(pToolBar, 0);
    pFormLayout->addLayout(pRow, 1);
}

void CPlaceholderForm::onBtnBackClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    Q_EMIT closeForm(true, this);
}

}  // namespace Dravo
