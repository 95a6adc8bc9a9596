// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cmainformstack.h"

#include <QApplication>
#include <QTimer>

#include "casynctstorage.h"
#include "cformfactory.h"
#include "cmainmenuform.h"
#include "ctextpopupform.h"
#include "ctexts.h"
#include "dbusobject.h"

namespace Dravo {

namespace {
CAsyncTStorage* uiStorage()
{
    return CAsyncTStorage::getInstance(1);
}
const int OPEN_INBOX_POPUP_DELAY = 500;
}  // namespace

CMainFormStack::CMainFormStack(QWidget* parent)
    : CFormStack(parent), m_bFirst(false), m_bNewMessagesPopupOpen(false)
{
    setBrush(QBrush(Qt::black));

    Tarvik::DBusObject* pBus = Tarvik::DBusObject::instance();
    connect(pBus, &Tarvik::DBusObject::TopApplication, this, &CMainFormStack::dbusTopApplication);
    connect(pBus, &Tarvik::DBusObject::MessagesReceived, this,
            &CMainFormStack::dbusMessagesReceived);
    connect(pBus, &Tarvik::DBusObject::OpenInboxRequest, this,
            &CMainFormStack::dbusMessagesReceivedOpenInbox);
    connect(pBus, &Tarvik::DBusObject::MessagesPartiallySent, this,
            &CMainFormStack::dbusMessagesPartiallySent);
    connect(pBus, &Tarvik::DBusObject::MessagesSendFailed, this,
            &CMainFormStack::dbusMessagesSendFailed);
    connect(pBus, &Tarvik::DBusObject::MessagesSent, this, &CMainFormStack::dbusMessagesSent);
    CAsyncTStorage* pStorage = uiStorage();
    connect(pStorage, &CAsyncTStorage::signalInitialized, this,
            &CMainFormStack::storageInitialized);
    connect(pStorage, &CAsyncTStorage::signalSettingsGotten, this, &CMainFormStack::settingsGotten);
    if (QCoreApplication* pApp = QCoreApplication::instance())
        connect(pApp, &QCoreApplication::aboutToQuit, this, &CMainFormStack::onAppQuit);

    showForm(new CMainMenuForm(this));
}

bool CMainFormStack::isRegistered(const CTSettings& settings)
{
    return settings.regflag() == 1 && !settings.mynumber().isEmpty();
}

void CMainFormStack::dbusTopApplication()
{
    qDebug("CMainFormStack::dbusTopApplication");
}

void CMainFormStack::dbusMessagesReceived()
{
    qDebug("CMainFormStack::dbusMessagesReceived");
    openNewMessagesReceivedPopup();
}

void CMainFormStack::openNewMessagesReceivedPopup()
{
    qDebug("CMainFormStack::openNewMessagesReceivedPopup");
    if (m_bNewMessagesPopupOpen)
        return;
    qDebug("CMainFormStack::openNewMessagesReceivedPopup show alert");
    auto* pPopup = new CTextPopupForm(nullptr, CTexts::newTarviksReceived());
    connect(pPopup, &CForm::closeForm, this, &CMainFormStack::onNewMessagesReceivedPopupClosed);
    m_bNewMessagesPopupOpen = true;
    m_pNewMessagesPopup = pPopup;
    showForm(pPopup);
}

void CMainFormStack::onNewMessagesReceivedPopupClosed(bool, CForm*)
{
    qDebug("CMainFormStack::onNewMessagesReceivedPopupClosed");
    m_bNewMessagesPopupOpen = false;
}

void CMainFormStack::dbusMessagesReceivedOpenInbox()
{
    qDebug("CMainFormStack::dbusMessagesReceivedOpenInbox");
    showForm(CFormFactory::createInboxForm(this));
    QTimer::singleShot(OPEN_INBOX_POPUP_DELAY, this, &CMainFormStack::openNewMessagesReceivedPopup);
}

void CMainFormStack::dbusMessagesPartiallySent()
{
    qDebug("CMainFormStack::dbusMessagesPartiallySent");
}

void CMainFormStack::dbusMessagesSendFailed()
{
    qDebug("CMainFormStack::dbusMessagesSendFailed");
}

void CMainFormStack::dbusMessagesSent()
{
    qDebug("CMainFormStack::dbusMessagesSent");
}

void CMainFormStack::storageInitialized()
{
    qDebug("CMainFormStack::storageInitialized");
    if (!uiStorage()->getSettings())
        qCritical("CMainFormStack::storageInitialized: settings request refused");
}

void CMainFormStack::settingsGotten(bool result, CTSettings settings,
                                    CTarvikStorage::CUserData* userData)
{
    // Answers are broadcast: one that carries a tag belongs to another screen.
    if (userData)
        return;
    // The settings are read once per run; later answers are for other screens.
    disconnect(uiStorage(), &CAsyncTStorage::signalSettingsGotten, this,
               &CMainFormStack::settingsGotten);
    if (!result) {
        qCritical("CMainFormStack::settingsGotten: failed to get settings from storage");
        return;
    }
    qDebug("CMainFormStack::settingsGotten");
    if (!isRegistered(settings)) {
        const bool bFresh = settings.regflag() == 0 && settings.mynumber().isEmpty();
        showForm(CFormFactory::createRegisterForm(this, CFormFactory::eRegisterNew,
                                                  bFresh ? QString() : settings.mynumber(),
                                                  bFresh ? QString() : settings.screenname()));
        // A notification that came while the settings were being read keeps its popup on top.
        if (m_bNewMessagesPopupOpen && m_pNewMessagesPopup) {
            removeWidget(m_pNewMessagesPopup);
            showForm(m_pNewMessagesPopup);
        }
    }
    Q_EMIT signalShowMainWindow();
}

void CMainFormStack::onAppQuit()
{
    Tarvik::DBusObject::instance()->EmitApplicationClosed();
}

}  // namespace Dravo
