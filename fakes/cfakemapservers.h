// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QHash>
#include <QImage>
#include <QList>
#include <QPointer>
#include <QTcpServer>

class QTcpSocket;

namespace TarvikTest {

// A small HTTP/1.1 server on 127.0.0.1 for the map tests: one answer per request, then
// the connection is closed. Subclasses answer by path.
class CFakeHttpServer : public QTcpServer
{
    Q_OBJECT
public:
    struct Response
    {
        int iStatus = 200;
        QByteArray contentType;
        QByteArray body;
        QByteArray cacheControl;
        bool bHang = false;  // never answer
    };

    explicit CFakeHttpServer(QObject* parent = nullptr);
    bool start();
    QString baseUrl() const;
    int requestCount() const { return m_iRequests; }
    QList<QByteArray> paths() const { return m_lstPaths; }
    QByteArray lastUserAgent() const { return m_lastUserAgent; }
    void resetCounts();

protected:
    virtual Response respond(const QByteArray& path) = 0;

private:
    void onNewConnection();
    void onReadyRead(QTcpSocket* pSocket);

    QHash<QTcpSocket*, QByteArray> m_pending;
    QList<QPointer<QTcpSocket>> m_lstHanging;
    QList<QByteArray> m_lstPaths;
    QByteArray m_lastUserAgent;
    int m_iRequests = 0;
};

// Raster tiles at /{z}/{x}/{y}.png drawn as a street map: beige land, white streets.
class CFakeTileServer : public CFakeHttpServer
{
    Q_OBJECT
public:
    enum eMode
    {
        eServe,
        eNotFound,
        eHang
    };
    using CFakeHttpServer::CFakeHttpServer;
    void setMode(eMode mode) { m_eMode = mode; }
    QString tileUrl() const { return baseUrl() + QStringLiteral("/{z}/{x}/{y}.png"); }
    static QImage drawTile(int z, int x, int y);

    // Colours the tests look for.
    static QColor landColour() { return QColor(0xee, 0xe8, 0xd5); }
    static QColor streetColour() { return QColor(0xff, 0xff, 0xff); }

protected:
    Response respond(const QByteArray& path) override;

private:
    eMode m_eMode = eServe;
    QHash<QByteArray, QByteArray> m_cache;
};

// An OSRM-compatible route service at /route/v1/driving/...: answers with a fixed route
// (a JSON file), an HTTP error, broken JSON, or not at all. CORS headers as real servers
// send them.
class CFakeRouteServer : public CFakeHttpServer
{
    Q_OBJECT
public:
    enum eMode
    {
        eServe,
        eHttpError,
        eGarbage,
        eHang
    };
    using CFakeHttpServer::CFakeHttpServer;
    void setMode(eMode mode) { m_eMode = mode; }
    bool loadRoute(const QString& strPath);
    int routeRequests() const;

protected:
    Response respond(const QByteArray& path) override;

private:
    eMode m_eMode = eServe;
    QByteArray m_route;
};

}  // namespace TarvikTest
