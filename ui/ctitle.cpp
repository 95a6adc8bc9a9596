// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctitle.h"

#include <QHBoxLayout>

namespace Dravo {

CTitle::CTitle(QWidget* parent) : CTWWidget(parent), m_pLabel(nullptr)
{
    setSkin(CSkin(QStringLiteral(":/res_ui/img/title_bg.png")));
    setContentsMargins(0, 10, 0, 10);
    QHBoxLayout* pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    m_pLabel = new CTWLabel(this);
    m_pLabel->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    m_pLabel->setTextFormat(Qt::RichText);
    pLayout->addWidget(m_pLabel);
    const int iHeight = fontMetrics().height() + 20;
    setMinimumHeight(iHeight);
    setMaximumHeight(iHeight);
}

void CTitle::setText(const QString& strTitle)
{
    if (!m_pLabel)
        return;
    m_pLabel->setText(
        QStringLiteral("<font color='%1'><b>%2</b></font>").arg(QStringLiteral("white"), strTitle));
}

}  // namespace Dravo
