// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cmapfakeform.h"

#include <QBoxLayout>
#include <QTimer>
#include <QtDebug>

#include "cconnectionmanager.h"
#include "cmapform.h"
#include "cprogressanimation.h"
#include "ctexts.h"
#include "ctwlabel.h"
#include "ctwpushbutton.h"
#include "ctwtoolbar.h"
#include "ctwwidget.h"

namespace Dravo {

CMapFakeForm::CMapFakeForm(QWidget* parent, const CTarvik& tarvik, int eType)
    : CForm(parent),
      m_tarvik(tarvik),
      m_eType(eType),
      m_iDisconnects(0),
      m_pProgress(nullptr),
      m_pBtnClose(nullptr)
{
    qDebug("CMapFakeForm::CMapFakeForm started eType = %d", eType);

    auto* pLabel = new CTWLabel(CTexts::waitingForConnection(), this);
    pLabel->setTextFormat(Qt::PlainText);
    pLabel->setWordWrap(true);
    pLabel->setAlignment(Qt::AlignCenter);
    pLabel->setStyleSheet(QStringLiteral("color: white;"));
    QFont font = pLabel->font();
    font.setPixelSize(22);
    pLabel->setFont(font);

    m_pProgress = new CTWWidget(this);
    m_pProgress->animation()->load(progressAnimationDescriptor());
    const QRect frame = m_pProgress->animation()->frameRect();
    m_pProgress->setFixedSize(frame.isValid() ? frame.size() : QSize(32, 32));
    m_pProgress->setBusy(true);

    auto* pToolBar = CTWToolBar::createSideBar(this);
    pToolBar->boxLayout()->addStretch(1);
    m_pBtnClose = new CTWPushButton(CTexts::back(), pToolBar);
    m_pBtnClose->setAccessibleName(CTexts::back());
    pToolBar->boxLayout()->addWidget(m_pBtnClose, 0, Qt::AlignBottom);
    connect(m_pBtnClose, &CTWPushButton::clicked, this, &CMapFakeForm::onBtnCloseClick);

    auto* pContent = new QWidget(this);
    auto* pPanel = new QVBoxLayout(pContent);
    pPanel->addStretch(1);
    pPanel->addWidget(pLabel);
    pPanel->addSpacing(16);
    pPanel->addWidget(m_pProgress, 0, Qt::AlignHCenter);
    pPanel->addStretch(1);
    setBody(pContent, pToolBar);

    CConnectionManager* pManager = CConnectionManager::instance();
    connect(pManager, &CConnectionManager::connected, this,
            &CMapFakeForm::internetConnectionConnected);
    connect(pManager, &CConnectionManager::disconnected, this,
            &CMapFakeForm::internetConnectionDisconnected);
    pManager->requestConnection();
}

QString CMapFakeForm::title() const
{
    return CTexts::appName() + QStringLiteral(" - ") +
           (m_eType == CMapForm::eTypePosition ? CTexts::map() : CTexts::route());
}

void CMapFakeForm::disconnectFromManager()
{
    disconnect(CConnectionManager::instance(), nullptr, this, nullptr);
}

void CMapFakeForm::onBtnCloseClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    disconnectFromManager();
    emit closeForm(true, this);
}

void CMapFakeForm::internetConnectionConnected()
{
    qDebug("CMapFakeForm::internetConnectionConnected");
    disconnectFromManager();
    QTimer::singleShot(0, this, &CMapFakeForm::showMapForm);
}

void CMapFakeForm::showMapForm()
{
    m_pProgress->setBusy(false);
    emit showForm(new CMapForm(parentWidget(), m_tarvik, m_eType));
}

void CMapFakeForm::internetConnectionDisconnected()
{
    ++m_iDisconnects;
    qDebug().noquote() << "CMapFakeForm::internetConnectionDisconnected " +
                              QString::number(m_iDisconnects);
    if (m_iDisconnects >= 2) {
        disconnectFromManager();
        m_pProgress->setBusy(false);
        emit closeForm(true, this);
    }
}

}  // namespace Dravo
