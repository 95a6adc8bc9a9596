// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cmapviewserver.h"

#include <QCoreApplication>
#include <QLocalSocket>
#include <QQuickWidget>
#include <QQuickWindow>
#include <QWebEngineProfile>

#include "cmappageview.h"
#include "cmapviewprotocol.h"

namespace Dravo {

using namespace MapViewProtocol;

namespace {
// Renders come in bursts (a pan draws several times); one picture is taken after them.
const int kFrameDelayMs = 10;
// A callback waits at most this long for a new picture.
const int kEventDelayMs = 150;
}  // namespace

CMapViewServer::CMapViewServer(CMapPageView* pView, QLocalSocket* pSocket)
    : m_pView(pView), m_pSocket(pSocket), m_bGrabbing(false)
{
    m_timerFrame.setSingleShot(true);
    m_timerFrame.setInterval(kFrameDelayMs);
    connect(&m_timerFrame, &QTimer::timeout, this, &CMapViewServer::sendFrame);
    m_timerEvents.setSingleShot(true);
    m_timerEvents.setInterval(kEventDelayMs);
    connect(&m_timerEvents, &QTimer::timeout, this, &CMapViewServer::flushEvents);

    connect(m_pSocket, &QLocalSocket::readyRead, this, &CMapViewServer::onReadyRead);
    connect(m_pSocket, &QLocalSocket::disconnected, qApp, &QCoreApplication::quit,
            Qt::QueuedConnection);
    connect(m_pView, &QWebEngineView::loadStarted, this, &CMapViewServer::attachRenderer);
    connect(m_pView, &QWebEngineView::loadFinished, this, [this](bool ok) {
        attachRenderer();
        send(m_pSocket, eLoadFinished, [ok](QDataStream& out) { out << ok; });
        m_timerFrame.start();
    });
    CMapPageBridge* pBridge = m_pView->bridge();
    connect(pBridge, &CMapPageBridge::routeError, this,
            [this](const QString& strText) { queueEvent(eRouteError, strText); });
    connect(pBridge, &CMapPageBridge::routeLoaded, this, [this] { queueEvent(eRouteLoaded); });
    connect(pBridge, &CMapPageBridge::mapTilesLoaded, this, [this] { queueEvent(eTilesLoaded); });
    onReadyRead();
}

void CMapViewServer::onReadyRead()
{
    quint8 type = 0;
    QByteArray arguments;
    while (receive(m_pSocket, &type, &arguments))
        handle(type, arguments);
}

void CMapViewServer::handle(quint8 type, const QByteArray& arguments)
{
    QDataStream in(arguments);
    in.setVersion(kStreamVersion);
    switch (type) {
        case eLoad: {
            bool bRoute = false;
            QString strConfig;
            QString strUserAgent;
            QSize size;
            in >> bRoute >> strConfig >> strUserAgent >> size;
            m_pView->page()->profile()->setHttpUserAgent(strUserAgent);
            m_pView->resize(size);
            m_pView->loadPage(bRoute, strConfig);
            break;
        }
        case eResize: {
            QSize size;
            in >> size;
            m_pView->resize(size);
            break;
        }
        case eRunScript: {
            QString strScript;
            in >> strScript;
            m_pView->runScript(strScript);
            break;
        }
        case eEvaluate: {
            quint32 iId = 0;
            QString strScript;
            in >> iId >> strScript;
            QPointer<QLocalSocket> pSocket = m_pSocket;
            m_pView->runScript(strScript, [pSocket, iId](const QVariant& value) {
                if (pSocket)
                    send(pSocket, eResult, [&](QDataStream& out) { out << iId << value; });
            });
            break;
        }
        default:
            qWarning("CMapViewServer: unknown message %d", int(type));
            break;
    }
}

void CMapViewServer::attachRenderer()
{
    auto* pRenderer = qobject_cast<QQuickWidget*>(m_pView->focusProxy());
    if (!pRenderer || pRenderer == m_pRenderer)
        return;
    m_pRenderer = pRenderer;
    // Emitted on this thread: a QQuickWidget renders on the GUI thread. Taking a picture
    // renders too; that render is not a change.
    connect(pRenderer->quickWindow(), &QQuickWindow::afterRendering, this,
            &CMapViewServer::onRendered, Qt::DirectConnection);
}

void CMapViewServer::onRendered()
{
    if (!m_bGrabbing && !m_timerFrame.isActive())
        m_timerFrame.start();
}

void CMapViewServer::sendFrame()
{
    if (m_pRenderer) {
        m_bGrabbing = true;
        const QImage frame = m_pRenderer->grabFramebuffer();
        m_bGrabbing = false;
        if (!frame.isNull() && frame != m_lastFrame) {
            m_lastFrame = frame;
            send(m_pSocket, eFrame, [&](QDataStream& out) { writeFrame(out, frame); });
        }
    }
    flushEvents();
}

void CMapViewServer::queueEvent(quint8 type, const QString& strText)
{
    m_lstEvents.append({type, strText});
    if (!m_timerEvents.isActive())
        m_timerEvents.start();
}

void CMapViewServer::flushEvents()
{
    m_timerEvents.stop();
    const QList<QPair<quint8, QString>> lstEvents = m_lstEvents;
    m_lstEvents.clear();
    for (const auto& event : lstEvents) {
        send(m_pSocket, eMessage(event.first), [&](QDataStream& out) {
            if (event.first == eRouteError)
                out << event.second;
        });
    }
}

}  // namespace Dravo
