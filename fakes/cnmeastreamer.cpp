// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cnmeastreamer.h"

#include <QFile>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

namespace Dravo {
namespace Test {

namespace {

QByteArray bodyOf(const QByteArray& sentence)
{
    QByteArray s = sentence.trimmed();
    if (s.startsWith('$')) {
        s.remove(0, 1);
    }
    const int star = s.lastIndexOf('*');
    return star >= 0 ? s.left(star) : s;
}

QByteArray timeField(const QByteArray& sentence)
{
    const QList<QByteArray> fields = bodyOf(sentence).split(',');
    return fields.size() > 1 ? fields.at(1) : QByteArray();
}

}  // namespace

CNmeaStreamer::CNmeaStreamer(QObject* parent) : QObject(parent), m_pServer(new QTcpServer(this))
{
    connect(m_pServer, &QTcpServer::newConnection, this, [this]() {
        while (QTcpSocket* socket = m_pServer->nextPendingConnection()) {
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            m_lstClients.append(socket);
        }
    });
    connect(&m_timer, &QTimer::timeout, this, [this]() { sendNext(); });
}

bool CNmeaStreamer::loadFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    m_lstEpochs.clear();
    m_iNext = 0;
    QByteArray lastTime;
    for (const QByteArray& line : file.readAll().split('\n')) {
        const QByteArray sentence = line.trimmed();
        if (!sentence.startsWith('$')) {
            continue;
        }
        const QByteArray time = timeField(sentence);
        if (m_lstEpochs.isEmpty() || time != lastTime) {
            m_lstEpochs.append(QList<QByteArray>());
            lastTime = time;
        }
        m_lstEpochs.last().append(sentence);
    }
    return !m_lstEpochs.isEmpty();
}

bool CNmeaStreamer::listen()
{
    return m_pServer->listen(QHostAddress::LocalHost, 0);
}

QString CNmeaStreamer::sourceUrl() const
{
    return QStringLiteral("socket://127.0.0.1:%1").arg(m_pServer->serverPort());
}

bool CNmeaStreamer::sendNext()
{
    if (m_lstEpochs.isEmpty()) {
        return false;
    }
    const QDateTime now = QDateTime::currentDateTimeUtc();
    QByteArray data;
    for (const QByteArray& sentence : m_lstEpochs.at(m_iNext)) {
        data += retimed(sentence, now) + "\r\n";
    }
    m_iNext = (m_iNext + 1) % m_lstEpochs.size();
    bool sent = false;
    for (const QPointer<QTcpSocket>& client : m_lstClients) {
        if (client && client->state() == QAbstractSocket::ConnectedState) {
            client->write(data);
            client->flush();
            sent = true;
        }
    }
    return sent;
}

void CNmeaStreamer::start(int intervalMs)
{
    m_timer.start(intervalMs);
}

QByteArray CNmeaStreamer::retimed(const QByteArray& sentence, const QDateTime& utc)
{
    QList<QByteArray> fields = bodyOf(sentence).split(',');
    if (fields.size() < 2) {
        return sentence;
    }
    const QTime time = utc.time();
    fields[1] = QByteArray::number(time.hour()).rightJustified(2, '0') +
                QByteArray::number(time.minute()).rightJustified(2, '0') +
                QByteArray::number(time.second()).rightJustified(2, '0') + '.' +
                QByteArray::number(time.msec() / 10).rightJustified(2, '0');
    if (fields.at(0).endsWith("RMC") && fields.size() > 9) {
        fields[9] = utc.date().toString(QStringLiteral("ddMMyy")).toLatin1();
    }
    const QByteArray body = fields.join(',');
    quint8 sum = 0;
    for (char c : body) {
        sum ^= static_cast<quint8>(c);
    }
    return '$' + body + '*' + QByteArray::number(sum, 16).toUpper().rightJustified(2, '0');
}

}  // namespace Test
}  // namespace Dravo
