// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cform.h"

#include <QApplication>
#include <QResizeEvent>
#include <QScrollArea>
#include <QVBoxLayout>

#include "ctwtoolbar.h"

namespace Dravo {

CForm::CForm(QWidget* parent) : QWidget(parent), m_bButtonsLocked(false)
{
    m_timerUnlockButtons.setSingleShot(true);
    m_timerUnlockButtons.setInterval(UNLOCK_INTERVAL);
    connect(&m_timerUnlockButtons, &QTimer::timeout, this, &CForm::onTimerUnlockButtonsTimeout);

    QVBoxLayout* pLayout = new QVBoxLayout(this);
    pLayout->setSpacing(0);
    pLayout->setContentsMargins(0, 0, 0, 0);

    // Holds the keyboard focus so that no input field has it when the form appears.
    QWidget* pFocusHolder = new QWidget(this);
    pFocusHolder->setMaximumSize(0, 0);
    pFocusHolder->setAutoFillBackground(false);
    pFocusHolder->setFocusPolicy(Qt::StrongFocus);
    pLayout->addWidget(pFocusHolder);
    pFocusHolder->setFocus(Qt::OtherFocusReason);
}

CForm::~CForm()
{
    // Focus moves while the widgets go: no call may reach this form once it is only a QWidget.
    disconnect(m_focusConnection);
}

bool CForm::isPortrait(const QSize& size)
{
    return size.width() < PORTRAIT_WIDTH || size.height() > size.width();
}

void CForm::setBody(QWidget* pContent, CTWToolBar* pToolBar, bool bScrolls)
{
    m_pToolBar = pToolBar;
    if (bScrolls) {
        m_pScrollArea = new QScrollArea(this);
        m_pScrollArea->setFrameShape(QFrame::NoFrame);
        m_pScrollArea->setWidgetResizable(true);
        m_pScrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        m_pScrollArea->setAutoFillBackground(false);
        m_pScrollArea->viewport()->setAutoFillBackground(false);
        pContent->setAutoFillBackground(false);
        m_pScrollArea->setWidget(pContent);
        pContent = m_pScrollArea;
        m_focusConnection = connect(qApp, &QApplication::focusChanged, this, &CForm::revealFocus);
    }
    m_pBody = new QBoxLayout(QBoxLayout::LeftToRight);
    m_pBody->setSpacing(0);
    m_pBody->setContentsMargins(0, 0, 0, 0);
    m_pBody->addWidget(pContent, 1);
    m_pBody->addWidget(pToolBar, 0);
    if (auto* pLayout = qobject_cast<QBoxLayout*>(layout()))
        pLayout->addLayout(m_pBody, 1);
    // A form is made for the stack it goes on: it starts in the stack's orientation, so
    // that a landscape minimum width never widens a portrait window.
    m_bPortrait = false;
    if (parentWidget() && isPortrait(parentWidget()->size()))
        setPortrait(true);
}

void CForm::orientationChanged(bool) {}

void CForm::setPortrait(bool bPortrait)
{
    m_bPortrait = bPortrait;
    if (m_pBody) {
        m_pBody->setDirection(bPortrait ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
        m_pToolBar->setWrapping(bPortrait);
        // Now, not on the next pass of the event loop: no frame shows the old arrangement.
        layout()->activate();
    }
    orientationChanged(bPortrait);
}

void CForm::revealFocus()
{
    QWidget* pFocus = QApplication::focusWidget();
    if (m_pScrollArea && pFocus && m_pScrollArea->widget()->isAncestorOf(pFocus))
        m_pScrollArea->ensureWidgetVisible(pFocus, 0, REVEAL_MARGIN);
}

void CForm::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    // A keyboard that opened (or closed) resized the window: once the layout has followed,
    // the field being typed in comes back into view.
    if (m_pScrollArea)
        QTimer::singleShot(0, this, &CForm::revealFocus);
    const bool bPortrait = isPortrait(event->size());
    if (bPortrait != m_bPortrait)
        setPortrait(bPortrait);
}

bool CForm::showsFormBelow() const
{
    return false;
}

void CForm::lockButtons()
{
    m_bButtonsLocked = true;
    m_timerUnlockButtons.start();
}

void CForm::onTimerUnlockButtonsTimeout()
{
    m_bButtonsLocked = false;
}

}  // namespace Dravo
