// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cregisterpopupform.h"

#include <QVBoxLayout>

#include "casynctstorage.h"
#include "cconnectionmanager.h"
#include "cprogressanimation.h"
#include "ctexts.h"
#include "dbusobject.h"

namespace Dravo {

namespace {
const int POPUP_FONT_PIXELS = 20;
}  // namespace

CRegisterPopupForm::CRegisterPopupForm(QWidget* parent, CForm* pRegisterForm,
                                       const QString& strPhoneNumber, const QString& strScreenName)
    : CPopupForm<CTWPopup>(parent),
      m_pLabel(nullptr),
      m_pProgress(nullptr),
      m_bCanClose(false),
      m_pRegisterForm(pRegisterForm),
      m_nDisconnects(0),
      m_bClosing(false),
      m_bSaving(false)
{
    qDebug("CRegisterPopupForm::CRegisterPopupForm started");
    // The waiting text runs to three lines: the panel takes its largest size.
    setPanelMinimumSize(QSize(MAX_WIDTH, MAX_HEIGHT - 30));
    auto* pLayout = new QVBoxLayout(m_pPopup);
    pLayout->setSpacing(10);
    pLayout->setContentsMargins(20, 20, 20, 20);
    m_pLabel = new CTWLabel(CTexts::registrationWait(), m_pPopup);
    m_pLabel->setWordWrap(true);
    m_pLabel->setTextFormat(Qt::PlainText);
    m_pLabel->setAlignment(Qt::AlignCenter);
    m_pLabel->setStyleSheet(QStringLiteral("color: white;"));
    m_pLabel->setAccessibleName(m_pLabel->text());
    QFont font = m_pLabel->font();
    font.setPixelSize(POPUP_FONT_PIXELS);
    m_pLabel->setFont(font);
    m_pProgress = new CTWWidget(m_pPopup);
    m_pProgress->animation()->load(progressAnimationDescriptor());
    const QRect frame = m_pProgress->animation()->frameRect();
    m_pProgress->setFixedSize(frame.isValid() ? frame.size() : QSize(32, 32));
    pLayout->addStretch(1);
    pLayout->addWidget(m_pLabel);
    pLayout->addWidget(m_pProgress, 0, Qt::AlignHCenter);
    pLayout->addStretch(1);
    setAccessibleName(m_pLabel->text());
    m_pProgress->setBusy(true);

    connect(m_pPopup, &CTWPopup::onMouseReleased, this, &CRegisterPopupForm::closePopupForm,
            Qt::QueuedConnection);

    m_settings.setScreenname(strScreenName);
    m_settings.setMynumber(strPhoneNumber);
    m_settings.setRegflag(0);
    m_bCanClose = true;

    CConnectionManager* pManager = CConnectionManager::instance();
    connect(pManager, &CConnectionManager::connected, this,
            &CRegisterPopupForm::internetConnectionConnected);
    connect(pManager, &CConnectionManager::disconnected, this,
            &CRegisterPopupForm::internetConnectionDisconnected);
    if (!pManager->requestConnection()) {
        qDebug("CRegisterPopupForm::CRegisterPopupForm: connection request refused");
        disconnectConnectionManager();
        showError(CTexts::registrationFailed());
    }
}

void CRegisterPopupForm::disconnectConnectionManager()
{
    disconnect(CConnectionManager::instance(), nullptr, this, nullptr);
}

void CRegisterPopupForm::internetConnectionConnected()
{
    qDebug("CRegisterPopupForm::internetConnectionConnected");
    disconnectConnectionManager();
    m_bCanClose = false;
    CAsyncTStorage* pStorage = CAsyncTStorage::getInstance(1);
    connect(pStorage, &CAsyncTStorage::signalSettingsSaved, this,
            &CRegisterPopupForm::settingsSaved);
    m_bSaving = true;
    if (!pStorage->saveSettings(m_settings, SAVE_MASK))
        settingsSaved(false, SAVE_MASK);
}

void CRegisterPopupForm::settingsSaved(bool result, uint mask, CTarvikStorage::CUserData* userData)
{
    // Answers for other screens carry their own tag.
    if (!m_bSaving || userData)
        return;
    m_bSaving = false;
    disconnect(CAsyncTStorage::getInstance(1), nullptr, this, nullptr);
    if (!result) {
        qDebug("CRegisterPopupForm::settingsSaved: failed to save settings to db with mask=%d",
               int(mask));
        showError(CTexts::registrationFailed());
        return;
    }
    qDebug("CRegisterPopupForm::settingsSaved");
    Tarvik::DBusObject* pDBus = Tarvik::DBusObject::instance();
    connect(pDBus, &Tarvik::DBusObject::RegistrationSucceed, this,
            &CRegisterPopupForm::registrationSucceed);
    connect(pDBus, &Tarvik::DBusObject::RegistrationFailed, this,
            &CRegisterPopupForm::registrationFailed);
    pDBus->EmitRegistrationRequest();
}

void CRegisterPopupForm::showError(const QString& strText)
{
    m_bCanClose = true;
    m_pLabel->setText(strText);
    m_pLabel->setAccessibleName(strText);
    m_pProgress->setBusy(false);
    // Without the animation the text sits in the middle of the panel.
    m_pProgress->hide();
}

void CRegisterPopupForm::registrationSucceed()
{
    qDebug("CRegisterPopupForm::registrationSucceed");
    if (m_bClosing)
        return;
    m_bClosing = true;
    disconnect(Tarvik::DBusObject::instance(), nullptr, this, nullptr);
    m_pProgress->setBusy(false);
    Q_EMIT closeForm(true, this);
    if (m_pRegisterForm)
        Q_EMIT closeForm(true, m_pRegisterForm.data());
}

void CRegisterPopupForm::registrationFailed()
{
    qDebug("CRegisterPopupForm::registrationFailed");
    disconnect(Tarvik::DBusObject::instance(), nullptr, this, nullptr);
    showError(CTexts::registrationFailed());
}

void CRegisterPopupForm::closePopupForm()
{
    if (!m_bCanClose || m_bClosing)
        return;
    m_bClosing = true;
    disconnectConnectionManager();
    disconnect(CAsyncTStorage::getInstance(1), nullptr, this, nullptr);
    disconnect(Tarvik::DBusObject::instance(), nullptr, this, nullptr);
    m_pProgress->setBusy(false);
    qDebug("CRegisterPopupForm::closePopupForm");
    Q_EMIT closeForm(true, this);
}

void CRegisterPopupForm::internetConnectionDisconnected()
{
    ++m_nDisconnects;
    qDebug("%s", qPrintable(QStringLiteral("CRegisterPopupForm::internetConnectionDisconnected") +
                            QString::number(m_nDisconnects)));
    if (m_nDisconnects >= 2) {
        disconnectConnectionManager();
        m_bCanClose = true;
        closePopupForm();
    }
}

}  // namespace Dravo
