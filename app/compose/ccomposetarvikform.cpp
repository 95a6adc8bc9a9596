// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ccomposetarvikform.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QSpacerItem>
#include <limits>

#include "ccontactsmodule.h"
#include "cdevicemodeguard.h"
#include "clocationpopupform.h"
#include "ctexts.h"
#include "ctwlabel.h"
#include "ctwtoolbar.h"

namespace Dravo {

namespace {
const char* const kContactsPrefix = "CComposeTarvikForm::onBtnContactsClick";
const char* const kSendPrefix = "CComposeTarvikForm::onBtnSendClick";
// Inputs in the application's look: graphite fields, white text, cyan when focused.
const char* const kInputStyle =
    "QLineEdit, QTextEdit { background: #1a1d22; color: white; border: 1px solid #3a3f47;"
    " border-radius: 4px; padding: 4px; selection-background-color: #2aa8d8; }"
    "QLineEdit:focus, QTextEdit:focus { border-color: #2aa8d8; }";

CTWLabel* makeFieldLabel(const QString& strText, QWidget* pParent)
{
    auto* pLabel = new CTWLabel(strText, pParent);
    pLabel->setTextFormat(Qt::PlainText);
    pLabel->setStyleSheet(QStringLiteral("color: white;"));
    QFont font = pLabel->font();
    font.setBold(true);
    pLabel->setFont(font);
    return pLabel;
}

}  // namespace

CComposeTarvikForm::CComposeTarvikForm(QWidget* parent, int composeType, const QString& strTo,
                                       const QString& strSubject, const QString& strMessage,
                                       double dLatitude, double dLongitude)
    : CForm(parent),
      m_composeType(composeType),
      m_pLineEditTo(nullptr),
      m_pLineEditSubject(nullptr),
      m_pTextEditMessage(nullptr),
      m_pBtnBack(nullptr),
      m_pBtnContacts(nullptr),
      m_pBtnSend(nullptr),
      m_bGuardRunning(false)
{
    qDebug("CComposeTarvikForm::CComposeTarvikForm started composeType = %d", composeType);
    setAccessibleName(title());
    if (m_composeType == eComposeForward) {
        m_tarvik.setLatitude(dLatitude);
        m_tarvik.setLongitude(dLongitude);
    }

    auto* pPanel = new QWidget(this);
    pPanel->setStyleSheet(QLatin1String(kInputStyle));
    auto* pGrid = new QGridLayout(pPanel);
    pGrid->setHorizontalSpacing(10);
    pGrid->setVerticalSpacing(0);
    pGrid->setContentsMargins(10, 10, 10, 10);

    // Qt's default cap of 32767 characters would cut long texts short, so the cap is
    // lifted before the texts go in.
    m_pLineEditTo = new CLineEdit(pPanel, CLineEdit::eLineEditPlain);
    m_pLineEditTo->setMaxLength(std::numeric_limits<int>::max());
    m_pLineEditTo->setText(strTo);
    m_pLineEditTo->setCursorPosition(0);
    m_pLineEditTo->setAccessibleName(CTexts::toLabel());
    m_pLineEditSubject = new CLineEdit(pPanel, CLineEdit::eLineEditPlain);
    m_pLineEditSubject->setMaxLength(std::numeric_limits<int>::max());
    m_pLineEditSubject->setText(strSubject);
    m_pLineEditSubject->setCursorPosition(0);
    m_pLineEditSubject->setAccessibleName(CTexts::subjectLabel());
    // The body is plain text: a note from the network or the user is never markup.
    m_pTextEditMessage = new CTextEdit(pPanel);
    m_pTextEditMessage->setAcceptRichText(false);
    m_pTextEditMessage->setPlainText(strMessage);
    m_pTextEditMessage->setAccessibleName(CTexts::messageLabel());

    pGrid->addWidget(makeFieldLabel(CTexts::toLabel(), pPanel), 0, 0);
    pGrid->addWidget(m_pLineEditTo, 0, 1);
    pGrid->addWidget(makeFieldLabel(CTexts::subjectLabel(), pPanel), 1, 0);
    pGrid->addWidget(m_pLineEditSubject, 1, 1);
    pGrid->addItem(new QSpacerItem(0, 5, QSizePolicy::Fixed, QSizePolicy::Fixed), 2, 0);
    pGrid->addWidget(m_pTextEditMessage, 4, 0, 1, 2);
    pGrid->setRowStretch(4, 1);

    CTWToolBar* pToolBar = CTWToolBar::createSideBar(this);
    pToolBar->boxLayout()->addStretch();
    m_pBtnBack = pToolBar->addButton(CTexts::back(), Qt::AlignBottom);
    m_pBtnContacts = pToolBar->addButton(CTexts::contacts(), Qt::AlignBottom);
    m_pBtnSend = pToolBar->addButton(CTexts::send(), Qt::AlignBottom);
    connect(m_pBtnBack, &CTWPushButton::clicked, this, &CComposeTarvikForm::onBtnCloseClick);
    connect(m_pBtnContacts, &CTWPushButton::clicked, this, &CComposeTarvikForm::onBtnContactsClick);
    connect(m_pBtnSend, &CTWPushButton::clicked, this, &CComposeTarvikForm::onBtnSendClick);

    setBody(pPanel, pToolBar, true);
}

QString CComposeTarvikForm::title() const
{
    return CTexts::appName() + QStringLiteral(" - ") + CTexts::sendATarvik();
}

QString CComposeTarvikForm::appendRecipient(const QString& strRecipients, const QString& strAddress)
{
    if (strAddress.isEmpty())
        return strRecipients;
    QString strResult = strRecipients;
    if (!strResult.isEmpty() && !strResult.endsWith(QLatin1Char(',')))
        strResult += QLatin1Char(',');
    return strResult + strAddress;
}

QString CComposeTarvikForm::chooseContact(QWidget* pDialogParent)
{
    IContactsModule* pModule = CContactsModule::instance()->module();
    if (!pModule) {
        qWarning("%s", qPrintable(QLatin1String(kContactsPrefix) +
                                  QStringLiteral(" address book module not available: ") +
                                  CContactsModule::instance()->errorString()));
        return QString();
    }
    return pModule->choose(pDialogParent, QLatin1String(kContactsPrefix));
}

void CComposeTarvikForm::onBtnCloseClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    Q_EMIT closeForm(true, this);
}

void CComposeTarvikForm::onBtnContactsClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    // The chooser runs its own modal loop; the form may be gone when it returns.
    QPointer<CComposeTarvikForm> pSelf(this);
    const QString strAddress = chooseContact(this);
    if (!pSelf)
        return;
    if (!strAddress.isEmpty())
        m_pLineEditTo->setText(appendRecipient(m_pLineEditTo->text(), strAddress));
    m_pLineEditTo->end(false);
}

void CComposeTarvikForm::onBtnSendClick()
{
    if (m_pLineEditTo->text().isEmpty())
        return;
    if (buttonsLocked() || m_bGuardRunning)
        return;
    lockButtons();
    m_tarvik.setTo(m_pLineEditTo->text());
    m_tarvik.setTitle(m_pLineEditSubject->text());
    m_tarvik.setNote(m_pTextEditMessage->toPlainText());

    // The guard waits for the mode service and the user in a local event loop.
    m_bGuardRunning = true;
    QPointer<CComposeTarvikForm> pSelf(this);
    const bool bMayProceed = CDeviceModeGuard::check(QLatin1String(kSendPrefix), this);
    if (!pSelf)
        return;
    m_bGuardRunning = false;
    if (!bMayProceed)
        return;

    Q_EMIT showForm(new CLocationPopupForm(parentWidget(), m_tarvik, this,
                                           m_composeType == eComposeForward ? 1 : 0));
}

}  // namespace Dravo
