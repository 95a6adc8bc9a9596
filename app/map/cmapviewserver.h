// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QImage>
#include <QList>
#include <QPointer>
#include <QTimer>

class QLocalSocket;
class QQuickWidget;

namespace Dravo {

class CMapPageView;

// The map view helper's side of the socket: runs the client's commands on the view and
// sends back the page's callbacks and its picture each time it has changed. The helper
// quits when the client closes the socket or goes away.
class CMapViewServer : public QObject
{
    Q_OBJECT
public:
    CMapViewServer(CMapPageView* pView, QLocalSocket* pSocket);

private:
    void onReadyRead();
    void handle(quint8 type, const QByteArray& arguments);
    // The page renders into the view's focus proxy, made with the first page.
    void attachRenderer();
    void onRendered();
    void sendFrame();
    // A page callback goes out after the next picture, so that the client shows what the
    // callback announces (the tiles, the route) when it hears of it.
    void queueEvent(quint8 type, const QString& strText = QString());
    void flushEvents();

    CMapPageView* m_pView;
    QLocalSocket* m_pSocket;
    QPointer<QQuickWidget> m_pRenderer;
    bool m_bGrabbing;
    QImage m_lastFrame;
    QTimer m_timerFrame;
    QTimer m_timerEvents;
    QList<QPair<quint8, QString>> m_lstEvents;
};

}  // namespace Dravo
