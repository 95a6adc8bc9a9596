// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cregisterform.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QPointer>
#include <QVBoxLayout>

#include "cdevicemodeguard.h"
#include "cregisterpopupform.h"
#include "ctexts.h"
#include "ctwlabel.h"
#include "ctwtoolbar.h"

namespace Dravo {

namespace {
// The registration form runs the same guard as the compose form and logs its lines.
const char* const kGuardPrefix = "CComposeTarvikForm::onBtnSendClick";
// Inputs in the application's look: graphite fields, white text, cyan when focused.
const char* const kInputStyle =
    "QLineEdit, QTextEdit { background: #1a1d22; color: white; border: 1px solid #3a3f47;"
    " border-radius: 4px; padding: 4px; selection-background-color: #2aa8d8; }"
    "QLineEdit:focus, QTextEdit:focus { border-color: #2aa8d8; }";

CTWLabel* makeLabel(const QString& strText, QWidget* pParent)
{
    auto* pLabel = new CTWLabel(strText, pParent);
    pLabel->setTextFormat(Qt::PlainText);
    pLabel->setStyleSheet(QStringLiteral("color: white;"));
    return pLabel;
}
}  // namespace

CRegisterForm::CRegisterForm(QWidget* parent, int registerType, const QString& strPhoneNumber,
                             const QString& strScreenName)
    : CForm(parent),
      m_registerType(registerType),
      m_pLineEditPhone(nullptr),
      m_pLineEditScreenName(nullptr),
      m_pReserved(nullptr),
      m_pBtnContinue(nullptr),
      m_pBtnBack(nullptr),
      m_bGuardRunning(false)
{
    qDebug("CRegisterForm::CRegisterForm started registerType = %d", registerType);
    setAccessibleName(title());
    QFont boldFont = font();
    boldFont.setBold(true);

    auto* pContent = new QWidget(this);
    pContent->setStyleSheet(QLatin1String(kInputStyle));
    CTWLabel* pTop = makeLabel(registerType != eRegisterNew ? CTexts::reregistrationPrompt()
                                                            : CTexts::registrationPrompt(),
                               pContent);
    pTop->setWordWrap(true);
    pTop->setAlignment(Qt::AlignCenter);
    auto* pLogo = new CTWLabel(pContent);
    pLogo->setArtPixmap(QStringLiteral(":/res/img/tarvik_logo.png"));
    pLogo->setAlignment(Qt::AlignCenter);
    pLogo->setAccessibleName(CTexts::appName());
    CTWLabel* pNote = makeLabel(CTexts::internationalFormatHint(), pContent);
    pNote->setWordWrap(true);
    pNote->setAlignment(Qt::AlignCenter);
    pNote->setOpenExternalLinks(true);

    CTWLabel* pPhoneLabel = makeLabel(CTexts::phoneNumberQuestion(), pContent);
    pPhoneLabel->setFont(boldFont);
    m_pLineEditPhone = new CLineEdit(strPhoneNumber, pContent, CLineEdit::eLineEditPhone);
    m_pLineEditPhone->setAccessibleName(CTexts::phoneNumberQuestion());
    pPhoneLabel->setBuddy(m_pLineEditPhone);
    CTWLabel* pNameLabel = makeLabel(CTexts::screenNameQuestion(), pContent);
    pNameLabel->setFont(boldFont);
    m_pLineEditScreenName = new CLineEdit(strScreenName, pContent, CLineEdit::eLineEditPlain);
    m_pLineEditScreenName->setMaxLength(SCREEN_NAME_MAX_LENGTH);
    m_pLineEditScreenName->setAccessibleName(CTexts::screenNameQuestion());
    pNameLabel->setBuddy(m_pLineEditScreenName);

    auto* pGrid = new QGridLayout();
    pGrid->setSpacing(5);
    pGrid->setContentsMargins(0, 0, 0, 0);
    pGrid->addWidget(pPhoneLabel, 0, 0, 1, 2);
    pGrid->addWidget(m_pLineEditPhone, 1, 0, 1, 2);
    pGrid->addWidget(pNameLabel, 2, 0, 1, 2);
    pGrid->addWidget(m_pLineEditScreenName, 3, 0, 1, 2);

    auto* pContentLayout = new QVBoxLayout(pContent);
    pContentLayout->setSpacing(5);
    pContentLayout->setContentsMargins(10, 10, 10, 10);
    pContentLayout->addWidget(pLogo, 0, Qt::AlignTop);
    pContentLayout->addWidget(pTop, 0, Qt::AlignTop);
    pContentLayout->addStretch();
    pContentLayout->addLayout(pGrid);
    pContentLayout->addStretch();
    pContentLayout->addWidget(pNote, 0, Qt::AlignBottom);

    CTWToolBar* pToolBar = CTWToolBar::createSideBar(this);
    pToolBar->boxLayout()->addStretch();
    m_pBtnContinue = pToolBar->addButton(CTexts::continueText(), Qt::AlignBottom);
    connect(m_pBtnContinue, &CTWPushButton::clicked, this, &CRegisterForm::onBtnContinueClick);
    if (registerType == eRegisterAgain) {
        m_pBtnBack = pToolBar->addButton(CTexts::back(), Qt::AlignBottom);
        connect(m_pBtnBack, &CTWPushButton::clicked, this, &CRegisterForm::onBtnBackClick);
    }

    setBody(pContent, pToolBar, true);
}

QString CRegisterForm::title() const
{
    return m_registerType != eRegisterNew
               ? CTexts::appName() + QStringLiteral(" - ") + CTexts::settings()
               : CTexts::appName();
}

void CRegisterForm::onBtnBackClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    Q_EMIT closeForm(true, this);
}

void CRegisterForm::onBtnContinueClick()
{
    if (buttonsLocked() || m_bGuardRunning)
        return;
    lockButtons();
    const QString strPhone = m_pLineEditPhone->text();
    if (strPhone.isEmpty())
        return;
    const QString strName = m_pLineEditScreenName->text();
    if (strName.isEmpty())
        return;

    // The guard waits for the mode service and the user in a local event loop.
    m_bGuardRunning = true;
    QPointer<CRegisterForm> pSelf(this);
    const bool bMayProceed = CDeviceModeGuard::check(QLatin1String(kGuardPrefix), this);
    if (!pSelf)
        return;
    m_bGuardRunning = false;
    if (!bMayProceed)
        return;
    Q_EMIT showForm(new CRegisterPopupForm(parentWidget(), this, strPhone, strName));
}

}  // namespace Dravo
