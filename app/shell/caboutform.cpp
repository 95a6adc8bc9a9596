// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "caboutform.h"

#include <QBoxLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ctexts.h"
#include "ctwlabel.h"
#include "ctwtoolbar.h"

#ifndef TARVIK_CONTACT_EMAIL
#define TARVIK_CONTACT_EMAIL "support@tarvik.example.org"
#endif

namespace Dravo {

namespace {
CTWLabel* makeTextLabel(const QString& strText, QWidget* pParent)
{
    auto* pLabel = new CTWLabel(strText, pParent);
    pLabel->setWordWrap(true);
    pLabel->setTextFormat(Qt::PlainText);
    pLabel->setAlignment(Qt::AlignCenter);
    pLabel->setStyleSheet(QStringLiteral("color: white;"));
    return pLabel;
}
}  // namespace

CAboutForm::CAboutForm(const QString& strVersion, QWidget* parent)
    : CForm(parent), m_pBtnBack(nullptr), m_pLabelVersion(nullptr), m_pLabelContact(nullptr)
{
    qDebug("CAboutForm::CAboutForm started");
    QBoxLayout* pFormLayout = qobject_cast<QBoxLayout*>(layout());
    if (!pFormLayout)
        return;

    auto* pPanel = new QWidget(this);
    auto* pLogo = new CTWLabel(pPanel);
    pLogo->setArtPixmap(QStringLiteral(":/res/img/tarvik_logo_large.png"));
    pLogo->setAlignment(Qt::AlignCenter);
    m_pLabelVersion = makeTextLabel(versionLine(strVersion), pPanel);
    m_pLabelContact = makeTextLabel(CTexts::emailPrefix() + contactEmail(), pPanel);
    CTWLabel* pTagline = makeTextLabel(CTexts::tagline(), pPanel);

    auto* pPanelLayout = new QVBoxLayout(pPanel);
    pPanelLayout->setSpacing(10);
    pPanelLayout->setContentsMargins(10, 10, 10, 10);
    pPanelLayout->addStretch();
    pPanelLayout->addWidget(pLogo, 0, Qt::AlignTop);
    pPanelLayout->addStretch();
    pPanelLayout->addWidget(m_pLabelVersion, 0, Qt::AlignTop);
    pPanelLayout->addWidget(m_pLabelContact, 0, Qt::AlignTop);
    pPanelLayout->addStretch();
    pPanelLayout->addWidget(pTagline, 0, Qt::AlignBottom);

    auto* pToolBar = CTWToolBar::createSideBar(this);
    pToolBar->boxLayout()->addStretch();
    m_pBtnBack = new CTWPushButton(CTexts::back(), pToolBar);
    pToolBar->boxLayout()->addWidget(m_pBtnBack, 0, Qt::AlignBottom);
    connect(m_pBtnBack, &CTWPushButton::clicked, this, &CAboutForm::onBtnBackClick);

    setBody(pPanel, pToolBar);
}

QString CAboutForm::title() const
{
    return CTexts::aboutTarvik();
}

QString CAboutForm::contactEmail()
{
    return QStringLiteral(TARVIK_CONTACT_EMAIL);
}

QString CAboutForm::versionLine(const QString& strVersion)
{
    return CTexts::versionPrefix() + strVersion + CTexts::versionSuffix();
}

QString CAboutForm::versionText() const
{
    return m_pLabelVersion ? m_pLabelVersion->text() : QString();
}

QString CAboutForm::contactText() const
{
    return m_pLabelContact ? m_pLabelContact->text() : QString();
}

void CAboutForm::onBtnBackClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    Q_EMIT closeForm(true, this);
}

}  // namespace Dravo
