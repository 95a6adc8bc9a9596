// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cmaplocationpopupform.h"

#include <QtDebug>

#include "clocationprovider.h"
#include "ctexts.h"

namespace Dravo {

CMapLocationPopupForm::CMapLocationPopupForm(QWidget* parent, CLocationEngine* pEngine)
    : CTextPopupForm(parent, CTexts::requestingLocation(), true),
      m_pProvider(new CLocationProvider(this, pEngine)),
      m_bClosed(false),
      m_bFailed(false)
{
    qDebug("CMapLocationPopupForm::CMapLocationPopupForm started");
    disconnect(m_pPopup, &CTWPopup::onMouseReleased, this, &CTextPopupForm::onPopupMouseReleased);
    connect(m_pPopup, &CTWPopup::onMouseReleased, this, &CMapLocationPopupForm::onPopupTapped);
    connect(m_pProvider, &CLocationProvider::onLocation, this, &CMapLocationPopupForm::onLocation);
    m_pProvider->requestLocation();
}

void CMapLocationPopupForm::stopRequest()
{
    m_pProvider->cancel();
    disconnect(m_pProvider, nullptr, this, nullptr);
}

void CMapLocationPopupForm::onLocation(const CLocation& location)
{
    m_location = location;
    stopRequest();
    if (location.isValid()) {
        qDebug("CMapLocationPopupForm::onLocation: valid location gotten lat=%f, lon=%f",
               location.latitude(), location.longitude());
        closeLocationPopupForm();
        emit signalLocationGotten(location.latitude(), location.longitude());
        return;
    }
    qDebug("CMapLocationPopupForm::onLocation: invalid location gotten");
    m_bFailed = true;
    setText(CTexts::unableToDetermineLocation());
    if (m_pProgress) {
        m_pProgress->setBusy(false);
        m_pProgress->hide();
    }
}

void CMapLocationPopupForm::onPopupTapped()
{
    // Only the failure text can be tapped away; the wait for a position cannot.
    if (!m_bFailed)
        return;
    onPopupMouseReleased();
}

void CMapLocationPopupForm::closeLocationPopupForm()
{
    if (m_bClosed)
        return;
    m_bClosed = true;
    qDebug("CMapLocationPopupForm::closeLocationPopupForm");
    stopRequest();
    m_bClosing = true;
    emit closeForm(true, this);
}

}  // namespace Dravo
