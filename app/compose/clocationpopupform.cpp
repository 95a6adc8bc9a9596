// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "clocationpopupform.h"

#include <QDateTime>

#include "casynctstorage.h"
#include "cconnectionmanager.h"
#include "clocationengine.h"
#include "clocationprovider.h"
#include "ctexts.h"
#include "dbusobject.h"

namespace Dravo {

namespace {
CLocationEngine*& locationEngine()
{
    static CLocationEngine* s_pEngine = nullptr;
    return s_pEngine;
}
}  // namespace

void CLocationPopupForm::setLocationEngine(CLocationEngine* pEngine)
{
    locationEngine() = pEngine;
}

CLocationPopupForm::CLocationPopupForm(QWidget* parent, const CTarvik& tarvik, CForm* pComposeForm,
                                       int bUseStoredLocation)
    : CTextPopupForm(parent, bUseStoredLocation ? CTexts::sending() : CTexts::requestingLocation(),
                     true),
      m_tarvik(tarvik),
      m_pComposeForm(pComposeForm),
      m_pLocationProvider(nullptr),
      m_bBusy(false),
      m_bSent(false),
      m_bFailed(false),
      m_bUseStoredLocation(bUseStoredLocation != 0),
      m_nDisconnects(0)
{
    qDebug("CLocationPopupForm::CLocationPopupForm started");
    setAccessibleName(text());
    m_pLabel->setAccessibleName(text());

    // A tap closes through the same gate as the timer and the daemon.
    disconnect(m_pPopup, &CTWPopup::onMouseReleased, this, &CTextPopupForm::onPopupMouseReleased);
    connect(m_pPopup, &CTWPopup::onMouseReleased, this, &CLocationPopupForm::closeLocationPopupForm,
            Qt::QueuedConnection);

    CAsyncTStorage* pStorage = CAsyncTStorage::getInstance(1);
    connect(pStorage, &CAsyncTStorage::signalSettingsGotten, this,
            &CLocationPopupForm::settingsGotten);
    connect(pStorage, &CAsyncTStorage::signalTarviksGotten, this,
            &CLocationPopupForm::tarviksGotten);
    connect(pStorage, &CAsyncTStorage::signalTarviksSaved, this, &CLocationPopupForm::tarviksSaved);

    m_timer.setSingleShot(true);
    // A coarse timer may fire up to 5 % early; the daemon is given the full time.
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(CLOSE_TIMEOUT);
    connect(&m_timer, &QTimer::timeout, this, &CLocationPopupForm::onCloseTimeout,
            Qt::QueuedConnection);

    CConnectionManager* pManager = CConnectionManager::instance();
    connect(pManager, &CConnectionManager::connected, this,
            &CLocationPopupForm::internetConnectionConnected);
    connect(pManager, &CConnectionManager::disconnected, this,
            &CLocationPopupForm::internetConnectionDisconnected);
    if (!pManager->requestConnection()) {
        qDebug("CLocationPopupForm::CLocationPopupForm: connection request refused");
        disconnectConnectionManager();
        fail(CTexts::sendingFailed());
    }
}

CLocationPopupForm::~CLocationPopupForm()
{
    stopLocationProvider();
}

void CLocationPopupForm::disconnectConnectionManager()
{
    disconnect(CConnectionManager::instance(), nullptr, this, nullptr);
}

void CLocationPopupForm::stopLocationProvider()
{
    if (!m_pLocationProvider)
        return;
    disconnect(m_pLocationProvider, nullptr, this, nullptr);
    m_pLocationProvider->cancel();
    m_pLocationProvider->deleteLater();
    m_pLocationProvider = nullptr;
}

void CLocationPopupForm::internetConnectionConnected()
{
    qDebug("CLocationPopupForm::internetConnectionConnected");
    disconnectConnectionManager();
    if (m_bFailed)
        return;
    if (m_bUseStoredLocation) {
        m_bBusy = true;
        requestSettings();
        return;
    }
    CLocation::registerMetaType();
    m_pLocationProvider = new CLocationProvider(this, locationEngine());
    connect(m_pLocationProvider, &CLocationProvider::onLocation, this,
            &CLocationPopupForm::onLocation, Qt::QueuedConnection);
    m_pLocationProvider->requestLocation();
}

void CLocationPopupForm::onLocation(CLocation location)
{
    m_location = location;
    stopLocationProvider();
    if (m_bFailed || m_bSent)
        return;
    if (!location.isValid()) {
        qDebug("CLocationPopupForm::onLocation: invalid location gotten");
        fail(CTexts::unableToDetermineLocation());
        return;
    }
    qDebug("CLocationPopupForm::onLocation: valid location gotten lat=%f, lon=%f",
           location.latitude(), location.longitude());
    m_tarvik.setLatitude(location.latitude());
    m_tarvik.setLongitude(location.longitude());
    m_bBusy = true;
    requestSettings();
}

void CLocationPopupForm::requestSettings()
{
    if (!CAsyncTStorage::getInstance(1)->getSettings(&m_tag)) {
        qDebug("CLocationPopupForm::settingsGotten: failed to get settings from db");
        fail(CTexts::sendingFailed());
    }
}

void CLocationPopupForm::settingsGotten(bool result, CTSettings settings,
                                        CTarvikStorage::CUserData* userData)
{
    if (userData != &m_tag)
        return;
    if (!result) {
        qDebug("CLocationPopupForm::settingsGotten: failed to get settings from db");
        fail(CTexts::sendingFailed());
        return;
    }
    m_tarvik.setFlag(1);
    m_tarvik.setFrom(settings.mynumber());
    m_tarvik.setReg(settings.imei());
    m_tarvik.setScreenname(settings.screenname());
    m_tarvik.setVersion(settings.version());
    m_tarvik.setDateTime(QDateTime::currentDateTimeUtc());
    if (!CAsyncTStorage::getInstance(1)->getTarviks(CAsyncTStorage::eFolderOutbox, -1, 0, &m_tag)) {
        qDebug("CLocationPopupForm::tarviksGotten: failed to get tarviks from outbox");
        fail(CTexts::sendingFailed());
    }
}

void CLocationPopupForm::tarviksGotten(bool result, QList<CTarvik> tarviks, uint folderName,
                                       CTarvikStorage::CUserData* userData)
{
    if (userData != &m_tag)
        return;
    if (!result || folderName != CAsyncTStorage::eFolderOutbox) {
        qDebug("CLocationPopupForm::tarviksGotten: failed to get tarviks from outbox");
        fail(CTexts::sendingFailed());
        return;
    }
    // Earlier messages whose sending failed go out again with the new one.
    tarviks.prepend(m_tarvik);
    for (CTarvik& tarvik : tarviks)
        tarvik.setFlag(1);
    if (!CAsyncTStorage::getInstance(1)->saveTarviks(tarviks, CAsyncTStorage::eFolderOutbox,
                                                     &m_tag)) {
        qDebug("CLocationPopupForm::tarvikSaved: failed to save tarvik to outbox");
        fail(CTexts::sendingFailed());
    }
}

void CLocationPopupForm::tarviksSaved(bool result, QList<int> tids, uint folder,
                                      CTarvikStorage::CUserData* userData)
{
    Q_UNUSED(tids);
    if (userData != &m_tag)
        return;
    if (!result || folder != CAsyncTStorage::eFolderOutbox) {
        qDebug("CLocationPopupForm::tarvikSaved: failed to save tarvik to outbox");
        fail(CTexts::sendingFailed());
        return;
    }
    disconnect(CAsyncTStorage::getInstance(1), nullptr, this, nullptr);
    setText(CTexts::sending());
    m_pLabel->setAccessibleName(text());
    m_bBusy = false;
    m_bSent = true;
    m_timer.start();
    Tarvik::DBusObject* pDBus = Tarvik::DBusObject::instance();
    connect(pDBus, &Tarvik::DBusObject::MessagesPartiallySent, this,
            &CLocationPopupForm::closeLocationPopupForm, Qt::QueuedConnection);
    connect(pDBus, &Tarvik::DBusObject::MessagesSendFailed, this,
            &CLocationPopupForm::closeLocationPopupForm, Qt::QueuedConnection);
    connect(pDBus, &Tarvik::DBusObject::MessagesSent, this,
            &CLocationPopupForm::closeLocationPopupForm, Qt::QueuedConnection);
    connect(pDBus, &Tarvik::DBusObject::MessagesReceived, this,
            &CLocationPopupForm::closeLocationPopupForm, Qt::QueuedConnection);
    pDBus->EmitSendReceiveRequest();
}

void CLocationPopupForm::fail(const QString& strText)
{
    m_bFailed = true;
    disconnect(CAsyncTStorage::getInstance(1), nullptr, this, nullptr);
    setText(strText);
    m_pLabel->setAccessibleName(strText);
    m_bBusy = false;
    if (m_pProgress) {
        m_pProgress->setBusy(false);
        // Without the animation the text sits in the middle of the panel.
        m_pProgress->hide();
    }
}

void CLocationPopupForm::onCloseTimeout()
{
    if (m_bBusy)
        return;
    qDebug("CLocationPopupForm::onCloseTimeout no answer from the daemon within %d ms",
           m_timer.interval());
    closeLocationPopupForm();
}

void CLocationPopupForm::closeLocationPopupForm()
{
    if (m_bBusy)
        return;
    m_bBusy = true;
    m_timer.stop();
    stopLocationProvider();
    disconnectConnectionManager();
    disconnect(Tarvik::DBusObject::instance(), nullptr, this, nullptr);
    if (m_pProgress)
        m_pProgress->setBusy(false);
    if (m_bSent) {
        qDebug(
            "CLocationPopupForm::closeLocationPopupForm close both popup and compose tarvik "
            "form");
        Q_EMIT closeForm(true, this);
        if (m_pComposeForm)
            Q_EMIT closeForm(true, m_pComposeForm.data());
    } else {
        qDebug("CLocationPopupForm::closeLocationPopupForm close popup only");
        Q_EMIT closeForm(true, this);
    }
}

void CLocationPopupForm::internetConnectionDisconnected()
{
    ++m_nDisconnects;
    qDebug("%s", qPrintable(QStringLiteral("CLocationPopupForm::internetConnectionDisconnected ") +
                            QString::number(m_nDisconnects)));
    if (m_nDisconnects >= 2) {
        disconnectConnectionManager();
        m_bBusy = false;
        closeLocationPopupForm();
    }
}

}  // namespace Dravo
