// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "csendreceivepopupform.h"

#include "casynctstorage.h"
#include "cconnectionmanager.h"
#include "ctexts.h"
#include "dbusobject.h"

namespace Dravo {

CSendReceivePopupForm::CSendReceivePopupForm(QWidget* parent)
    : CTextPopupForm(parent, CTexts::sendingReceivingTarviks(), true),
      m_bBusy(false),
      m_bRequested(false),
      m_nDisconnects(0)
{
    qDebug("CSendReceivePopupForm::CSendReceivePopupForm started");
    setAccessibleName(text());
    m_pLabel->setAccessibleName(text());

    disconnect(m_pPopup, &CTWPopup::onMouseReleased, this, &CTextPopupForm::onPopupMouseReleased);
    connect(m_pPopup, &CTWPopup::onMouseReleased, this, &CSendReceivePopupForm::closePopupForm,
            Qt::QueuedConnection);

    m_timer.setSingleShot(true);
    // A coarse timer may fire up to 5 % early; the daemon is given the full time.
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(CLOSE_TIMEOUT);
    connect(&m_timer, &QTimer::timeout, this, &CSendReceivePopupForm::onCloseTimeout);

    CConnectionManager* pManager = CConnectionManager::instance();
    connect(pManager, &CConnectionManager::connected, this,
            &CSendReceivePopupForm::internetConnectionConnected);
    connect(pManager, &CConnectionManager::disconnected, this,
            &CSendReceivePopupForm::internetConnectionDisconnected);
    if (!pManager->requestConnection()) {
        disconnectConnectionManager();
        fail("CSendReceivePopupForm::CSendReceivePopupForm: connection request refused");
    }
}

void CSendReceivePopupForm::disconnectConnectionManager()
{
    disconnect(CConnectionManager::instance(), nullptr, this, nullptr);
}

void CSendReceivePopupForm::internetConnectionConnected()
{
    qDebug("CSendReceivePopupForm::internetConnectionConnected");
    disconnectConnectionManager();
    m_bBusy = true;
    CAsyncTStorage* pStorage = CAsyncTStorage::getInstance(1);
    connect(pStorage, &CAsyncTStorage::signalTarviksGotten, this,
            &CSendReceivePopupForm::tarviksGotten);
    if (!pStorage->getTarviks(CAsyncTStorage::eFolderOutbox, -1, 0, &m_tag))
        fail("CSendReceivePopupForm::tarviksGotten: failed to get tarviks from outbox");
}

void CSendReceivePopupForm::tarviksGotten(bool result, QList<CTarvik> tarviks, uint folderName,
                                          CTarvikStorage::CUserData* userData)
{
    if (userData != &m_tag)
        return;
    if (!result || folderName != CAsyncTStorage::eFolderOutbox) {
        fail("CSendReceivePopupForm::tarviksGotten: failed to get tarviks from outbox");
        return;
    }
    CAsyncTStorage* pStorage = CAsyncTStorage::getInstance(1);
    disconnect(pStorage, &CAsyncTStorage::signalTarviksGotten, this,
               &CSendReceivePopupForm::tarviksGotten);
    if (tarviks.isEmpty()) {
        requestSendReceive(false);
        return;
    }
    for (CTarvik& tarvik : tarviks)
        tarvik.setFlag(1);
    connect(pStorage, &CAsyncTStorage::signalTarviksSaved, this,
            &CSendReceivePopupForm::tarviksSaved);
    if (!pStorage->saveTarviks(tarviks, CAsyncTStorage::eFolderOutbox, &m_tag))
        fail("CSendReceivePopupForm::tarviksSaved: failed to save tarvik to outbox");
}

void CSendReceivePopupForm::tarviksSaved(bool result, QList<int> tids, uint folderName,
                                         CTarvikStorage::CUserData* userData)
{
    Q_UNUSED(tids);
    if (userData != &m_tag)
        return;
    if (!result || folderName != CAsyncTStorage::eFolderOutbox) {
        fail("CSendReceivePopupForm::tarviksSaved: failed to save tarvik to outbox");
        return;
    }
    disconnect(CAsyncTStorage::getInstance(1), &CAsyncTStorage::signalTarviksSaved, this,
               &CSendReceivePopupForm::tarviksSaved);
    requestSendReceive(true);
}

void CSendReceivePopupForm::requestSendReceive(bool bSomethingToSend)
{
    Tarvik::DBusObject* pDBus = Tarvik::DBusObject::instance();
    connect(pDBus, &Tarvik::DBusObject::MessagesReceived, this,
            &CSendReceivePopupForm::closePopupForm, Qt::QueuedConnection);
    if (bSomethingToSend) {
        connect(pDBus, &Tarvik::DBusObject::MessagesPartiallySent, this,
                &CSendReceivePopupForm::closePopupForm, Qt::QueuedConnection);
        connect(pDBus, &Tarvik::DBusObject::MessagesSendFailed, this,
                &CSendReceivePopupForm::closePopupForm, Qt::QueuedConnection);
        connect(pDBus, &Tarvik::DBusObject::MessagesSent, this,
                &CSendReceivePopupForm::closePopupForm, Qt::QueuedConnection);
    }
    m_timer.start();
    m_bBusy = false;
    m_bRequested = true;
    pDBus->EmitSendReceiveRequest();
}

// The outbox could not be read or marked: say so; a tap closes the popup.
void CSendReceivePopupForm::fail(const char* pLogLine)
{
    qDebug("%s", pLogLine);
    disconnect(CAsyncTStorage::getInstance(1), nullptr, this, nullptr);
    m_bBusy = false;
    setText(CTexts::sendingFailed());
    m_pLabel->setAccessibleName(text());
    if (m_pProgress) {
        m_pProgress->setBusy(false);
        // Without the animation the text sits in the middle of the panel.
        m_pProgress->hide();
    }
}

void CSendReceivePopupForm::onCloseTimeout()
{
    if (m_bBusy)
        return;
    qDebug("CSendReceivePopupForm::onCloseTimeout no answer from the daemon within %d ms",
           m_timer.interval());
    closePopupForm();
}

void CSendReceivePopupForm::closePopupForm()
{
    if (m_bBusy)
        return;
    m_bBusy = true;
    m_timer.stop();
    disconnectConnectionManager();
    disconnect(CAsyncTStorage::getInstance(1), nullptr, this, nullptr);
    disconnect(Tarvik::DBusObject::instance(), nullptr, this, nullptr);
    if (m_pProgress)
        m_pProgress->setBusy(false);
    qDebug("CSendReceivePopupForm::closePopupForm");
    Q_EMIT closeForm(true, this);
}

void CSendReceivePopupForm::internetConnectionDisconnected()
{
    ++m_nDisconnects;
    qDebug("%s",
           qPrintable(QStringLiteral("CSendReceivePopupForm::internetConnectionDisconnected ") +
                      QString::number(m_nDisconnects)));
    if (m_nDisconnects >= 2) {
        disconnectConnectionManager();
        m_bBusy = false;
        closePopupForm();
    }
}

}  // namespace Dravo
