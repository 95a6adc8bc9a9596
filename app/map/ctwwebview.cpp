// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctwwebview.h"

#include <QChildEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QWebEnginePage>

namespace Dravo {

namespace {
// Covers the page while the view is busy; the rendering child would otherwise paint over
// anything the view itself draws.
class CBusyCover : public QWidget
{
public:
    explicit CBusyCover(CTWWebView* pView) : QWidget(pView), m_pView(pView)
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        m_pView->paintBusy(&painter, rect());
    }

private:
    CTWWebView* m_pView;
};
}  // namespace

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

CTWWebView::CTWWebView(QWidget* parent, int iFilterType, QWebEnginePage* pPage)
    : QWebEngineView(parent),
      m_bBusy(false),
      m_animation(CAnimation::PROGRESS_ANIMATION),
      m_pFilter(nullptr),
      m_pCover(nullptr)
{
    if (pPage) {
        pPage->setParent(this);
        setPage(pPage);
    }
    page()->setBackgroundColor(Qt::black);
    setAutoFillBackground(false);
    m_pCover = new CBusyCover(this);
    connect(&m_animation, &CAnimation::frameChanged, this, &CTWWebView::onAnimationFrameChanged);
    connect(this, &QWebEngineView::loadStarted, this, &CTWWebView::onLoadStarted);
    connect(this, &QWebEngineView::loadFinished, this, &CTWWebView::onLoadFinished);
    // The blank page is the page's black background rather than a load of its own: a
    // load finishes asynchronously, and its late loadFinished() would be taken for the
    // page that the owner sets next.

    if (iFilterType == eFilterKineticScroll)
        m_pFilter = new CKineticScrollEventFilter(this);
    else if (iFilterType == eFilterBlockAllUserActions) {
        m_pFilter = new CBlockAllUserActionsEventFilter(this);
        setAcceptDrops(false);
    }
    attachToInputWidget();
}

void CTWWebView::setBusy(bool bBusy)
{
    if (bBusy == m_bBusy)
        return;
    m_bBusy = bBusy;
    if (m_bBusy) {
        m_animation.start();
        m_pCover->setGeometry(rect());
        m_pCover->raise();
        m_pCover->show();
    } else {
        m_animation.stop();
        m_pCover->hide();
    }
}

void CTWWebView::paintBusy(QPainter* pPainter, const QRect& area) const
{
    pPainter->fillRect(area, Qt::black);
    const QRect frame = m_animation.frameRect();
    if (!frame.isValid())
        return;
    m_animation.draw(
        pPainter, QPoint((area.width() - frame.width()) / 2, (area.height() - frame.height()) / 2));
}

void CTWWebView::onAnimationFrameChanged()
{
    // Only the cover shows the animation; repainting the view would make the page render
    // again for every frame.
    m_pCover->update();
}

void CTWWebView::onLoadStarted()
{
    attachToInputWidget();
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setBusy(true);
}

void CTWWebView::onLoadFinished(bool ok)
{
    attachToInputWidget();
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
    if (pEvent->type() == QEvent::ChildAdded) {
        // The rendering child becomes the focus proxy once it is set up.
        QTimer::singleShot(0, this, &CTWWebView::attachToInputWidget);
    }
    return QWebEngineView::event(pEvent);
}

bool CTWWebView::eventFilter(QObject* pObject, QEvent* pEvent)
{
    // Installed last on the input widget, so it runs before the user-actions filter.
    if (pObject == m_pInputWidget && m_bBusy && isRefusedWhileBusy(pEvent->type()))
        return true;
    return QWebEngineView::eventFilter(pObject, pEvent);
}

void CTWWebView::paintEvent(QPaintEvent* pEvent)
{
    if (m_bBusy) {
        if (m_animation.frameRect().isValid()) {
            QPainter painter(this);
            paintBusy(&painter, rect());
        }
        return;
    }
    QWebEngineView::paintEvent(pEvent);
}

void CTWWebView::resizeEvent(QResizeEvent* pEvent)
{
    QWebEngineView::resizeEvent(pEvent);
    m_pCover->setGeometry(rect());
}

void CTWWebView::attachToInputWidget()
{
    QWidget* pProxy = focusProxy();
    if (!pProxy || pProxy == m_pInputWidget)
        return;
    if (m_pInputWidget) {
        if (m_pFilter)
            m_pInputWidget->removeEventFilter(m_pFilter);
        m_pInputWidget->removeEventFilter(this);
    }
    m_pInputWidget = pProxy;
    if (m_pFilter)
        pProxy->installEventFilter(m_pFilter);
    pProxy->installEventFilter(this);
    if (m_pCover->isVisible())
        m_pCover->raise();
}

}  // namespace Dravo
