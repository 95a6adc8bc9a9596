// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctwwebview.h"

#include <QMouseEvent>
#include <QPainter>

namespace Dravo {

bool CTWWebView::CKineticScrollEventFilter::eventFilter(QObject*, QEvent* pEvent)
{
    switch (pEvent->type()) {
        case QEvent::MouseButtonPress:
            if (static_cast<QMouseEvent*>(pEvent)->button() == Qt::LeftButton)
                m_bPressed = true;
            return false;
        case QEvent::MouseButtonRelease:
            if (static_cast<QMouseEvent*>(pEvent)->button() == Qt::LeftButton)
                m_bPressed = false;
            return false;
        case QEvent::MouseMove:
            return m_bPressed;
        default:
            return false;
    }
}

bool CTWWebView::CBlockAllUserActionsEventFilter::eventFilter(QObject*, QEvent* pEvent)
{
    switch (pEvent->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::TabletMove:
        case QEvent::TabletPress:
        case QEvent::TabletRelease:
        case QEvent::Wheel:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TouchCancel:
        case QEvent::Gesture:
        case QEvent::GestureOverride:
        case QEvent::NativeGesture:
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::DragLeave:
        case QEvent::Drop:
            return true;
        default:
            return false;
    }
}

CTWWebView::CTWWebView(QWidget* parent, int iFilterType)
    : QWidget(parent),
      m_bBusy(false),
      m_animation(CAnimation::PROGRESS_ANIMATION),
      m_pFilter(nullptr)
{
    setAutoFillBackground(false);
    connect(&m_animation, &CAnimation::frameChanged, this, &CTWWebView::onAnimationFrameChanged);
    connect(this, &CTWWebView::loadStarted, this, &CTWWebView::onLoadStarted);
    connect(this, &CTWWebView::loadFinished, this, &CTWWebView::onLoadFinished);
    if (iFilterType == eFilterKineticScroll)
        m_pFilter = new CKineticScrollEventFilter(this);
    else if (iFilterType == eFilterBlockAllUserActions)
        m_pFilter = new CBlockAllUserActionsEventFilter(this);
    if (m_pFilter)
        installEventFilter(m_pFilter);
}

void CTWWebView::setBusy(bool bBusy)
{
    if (bBusy == m_bBusy)
        return;
    m_bBusy = bBusy;
    if (m_bBusy)
        m_animation.start();
    else
        m_animation.stop();
    update();
}

void CTWWebView::setFrame(const QImage& frame)
{
    m_frame = frame;
    if (!m_bBusy)
        update();
}

void CTWWebView::setFailureText(const QString& strText)
{
    m_strFailure = strText;
    m_frame = QImage();
    update();
}

void CTWWebView::onAnimationFrameChanged()
{
    update();
}

void CTWWebView::onLoadStarted()
{
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setBusy(true);
}

void CTWWebView::onLoadFinished(bool ok)
{
    setAttribute(Qt::WA_OpaquePaintEvent, ok);
    setBusy(false);
}

bool CTWWebView::isRefusedWhileBusy(QEvent::Type type)
{
    switch (type) {
        case QEvent::ContextMenu:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::TabletMove:
        case QEvent::TabletPress:
        case QEvent::TabletRelease:
            return true;
        default:
            return false;
    }
}

bool CTWWebView::event(QEvent* pEvent)
{
    if (m_bBusy && isRefusedWhileBusy(pEvent->type()))
        return false;
    return QWidget::event(pEvent);
}

void CTWWebView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    if (m_bBusy) {
        const QRect frame = m_animation.frameRect();
        if (frame.isValid())
            m_animation.draw(
                &painter, QPoint((width() - frame.width()) / 2, (height() - frame.height()) / 2));
        return;
    }
    if (!m_strFailure.isEmpty()) {
        painter.setPen(Qt::white);
        painter.drawText(rect().adjusted(20, 20, -20, -20), Qt::AlignCenter | Qt::TextWordWrap,
                         m_strFailure);
        return;
    }
    if (!m_frame.isNull())
        painter.drawImage(QPoint(0, 0), m_frame);
}

}  // namespace Dravo
