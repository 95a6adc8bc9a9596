// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctextpopupform.h"

#include <QVBoxLayout>

#include "cprogressanimation.h"

namespace Dravo {

namespace {
const int POPUP_FONT_PIXELS = 22;
}  // namespace

CTextPopupForm::CTextPopupForm(QWidget* parent, const QString& strText, bool bWithAnimation)
    : CPopupForm<CTWPopup>(parent), m_pLabel(nullptr), m_pProgress(nullptr), m_bClosing(false)
{
    auto* pLayout = new QVBoxLayout(m_pPopup);
    pLayout->setSpacing(10);
    pLayout->setContentsMargins(20, 20, 20, 20);

    m_pLabel = new CTWLabel(strText, m_pPopup);
    m_pLabel->setWordWrap(true);
    m_pLabel->setTextFormat(Qt::PlainText);
    m_pLabel->setAlignment(Qt::AlignCenter);
    m_pLabel->setStyleSheet(QStringLiteral("color: white;"));
    QFont font = m_pLabel->font();
    font.setPixelSize(POPUP_FONT_PIXELS);
    m_pLabel->setFont(font);
    pLayout->addStretch(1);
    pLayout->addWidget(m_pLabel);

    if (bWithAnimation) {
        m_pProgress = new CTWWidget(m_pPopup);
        m_pProgress->animation()->load(progressAnimationDescriptor());
        const QRect frame = m_pProgress->animation()->frameRect();
        m_pProgress->setFixedSize(frame.isValid() ? frame.size() : QSize(32, 32));
        m_pProgress->setBusy(true);
        pLayout->addWidget(m_pProgress, 0, Qt::AlignHCenter);
    }
    pLayout->addStretch(1);

    connect(m_pPopup, &CTWPopup::onMouseReleased, this, &CTextPopupForm::onPopupMouseReleased);
}

QString CTextPopupForm::text() const
{
    return m_pLabel->text();
}

void CTextPopupForm::setText(const QString& strText)
{
    m_pLabel->setText(strText);
}

void CTextPopupForm::onPopupMouseReleased()
{
    // The close travels queued; a second tap before it lands must not ask again.
    if (m_bClosing)
        return;
    m_bClosing = true;
    if (m_pProgress)
        m_pProgress->setBusy(false);
    Q_EMIT closeForm(true, this);
}

}  // namespace Dravo
