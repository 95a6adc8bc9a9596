// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cfakemapservers.h"

#include <QBuffer>
#include <QFile>
#include <QPainter>
#include <QTcpSocket>

namespace TarvikTest {

CFakeHttpServer::CFakeHttpServer(QObject* parent) : QTcpServer(parent)
{
    connect(this, &QTcpServer::newConnection, this, &CFakeHttpServer::onNewConnection);
}

bool CFakeHttpServer::start()
{
    return listen(QHostAddress::LocalHost, 0);
}

QString CFakeHttpServer::baseUrl() const
{
    return QStringLiteral("http://127.0.0.1:%1").arg(serverPort());
}

void CFakeHttpServer::resetCounts()
{
    m_iRequests = 0;
    m_lstPaths.clear();
}

void CFakeHttpServer::onNewConnection()
{
    while (QTcpSocket* pSocket = nextPendingConnection()) {
        connect(pSocket, &QTcpSocket::readyRead, this, [this, pSocket] { onReadyRead(pSocket); });
        connect(pSocket, &QTcpSocket::disconnected, pSocket, &QObject::deleteLater);
        connect(pSocket, &QObject::destroyed, this, [this, pSocket] { m_pending.remove(pSocket); });
    }
}

void CFakeHttpServer::onReadyRead(QTcpSocket* pSocket)
{
    QByteArray& buffer = m_pending[pSocket];
    buffer += pSocket->readAll();
    const int iEnd = buffer.indexOf("\r\n\r\n");
    if (iEnd < 0)
        return;
    const QList<QByteArray> lines = buffer.left(iEnd).split('\n');
    buffer.clear();
    const QList<QByteArray> request = lines.value(0).trimmed().split(' ');
    const QByteArray method = request.value(0);
    const QByteArray path = request.value(1);
    for (const QByteArray& line : lines) {
        if (line.toLower().startsWith("user-agent:"))
            m_lastUserAgent = line.mid(11).trimmed();
    }

    Response response;
    if (method == "OPTIONS") {
        response.iStatus = 204;
    } else {
        ++m_iRequests;
        m_lstPaths << path;
        response = respond(path);
    }
    if (response.bHang) {
        m_lstHanging << pSocket;
        return;
    }
    QByteArray reply = "HTTP/1.1 " + QByteArray::number(response.iStatus) +
                       (response.iStatus < 300 ? " OK\r\n" : " Error\r\n");
    if (!response.contentType.isEmpty())
        reply += "Content-Type: " + response.contentType + "\r\n";
    reply += "Content-Length: " + QByteArray::number(response.body.size()) + "\r\n";
    if (!response.cacheControl.isEmpty())
        reply += "Cache-Control: " + response.cacheControl + "\r\n";
    reply +=
        "Access-Control-Allow-Origin: *\r\n"
        "Access-Control-Allow-Methods: GET, OPTIONS\r\n"
        "Access-Control-Allow-Headers: *\r\n"
        "Connection: close\r\n\r\n";
    reply += response.body;
    pSocket->write(reply);
    pSocket->disconnectFromHost();
}

QImage CFakeTileServer::drawTile(int z, int x, int y)
{
    // Land crossed by a grid of streets, shifted from tile to tile.
    QImage image(256, 256, QImage::Format_RGB32);
    image.fill(landColour());
    QPainter painter(&image);
    painter.setPen(QPen(streetColour(), 9));
    for (int i = (x * 7 + y * 13 + z) % 32; i < 256; i += 64) {
        painter.drawLine(i, 0, i, 256);
        painter.drawLine(0, i, 256, i);
    }
    painter.end();
    return image;
}

CFakeHttpServer::Response CFakeTileServer::respond(const QByteArray& path)
{
    Response response;
    if (m_eMode == eHang) {
        response.bHang = true;
        return response;
    }
    const int iQuery = path.indexOf('?');
    const QList<QByteArray> parts = (iQuery < 0 ? path : path.left(iQuery)).split('/');
    if (m_eMode == eNotFound || parts.size() != 4 || !parts[3].endsWith(".png")) {
        response.iStatus = 404;
        return response;
    }
    auto it = m_cache.find(path);
    if (it == m_cache.end()) {
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        drawTile(parts[1].toInt(), parts[2].toInt(), parts[3].chopped(4).toInt())
            .save(&buffer, "PNG");
        it = m_cache.insert(path, png);
    }
    response.contentType = "image/png";
    response.cacheControl = "max-age=3600";
    response.body = it.value();
    return response;
}

bool CFakeRouteServer::loadRoute(const QString& strPath)
{
    QFile file(strPath);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    m_route = file.readAll();
    return !m_route.isEmpty();
}

int CFakeRouteServer::routeRequests() const
{
    int iCount = 0;
    for (const QByteArray& path : paths())
        iCount += path.startsWith("/route/v1/driving/") ? 1 : 0;
    return iCount;
}

CFakeHttpServer::Response CFakeRouteServer::respond(const QByteArray& path)
{
    Response response;
    response.contentType = "application/json; charset=UTF-8";
    if (!path.startsWith("/route/v1/driving/")) {
        response.iStatus = 400;
        response.body = R"({"code":"InvalidUrl","message":"URL string malformed"})";
        return response;
    }
    switch (m_eMode) {
        case eServe:
            response.body = m_route;
            break;
        case eHttpError:
            response.iStatus = 500;
            response.body = R"({"code":"InternalError"})";
            break;
        case eGarbage:
            response.body = "{\"code\":\"Ok\",\"routes\":[{\"legs\":";
            break;
        case eHang:
            response.bHang = true;
            break;
    }
    return response;
}

}  // namespace TarvikTest
