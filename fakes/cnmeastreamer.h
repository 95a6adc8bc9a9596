// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>

class QTcpServer;
class QTcpSocket;

namespace Dravo {
namespace Test {

// Serves NMEA sentences on a loopback TCP port, the way a GPS daemon streams them
// to "socket://127.0.0.1:PORT". Sentences are grouped into epochs (consecutive
// sentences with the same UTC time); each sendNext() writes one epoch to every
// connected client, stamped with the current UTC time and date (checksums
// recomputed), so recorded tracks read as live fixes.
class CNmeaStreamer : public QObject
{
    Q_OBJECT
public:
    explicit CNmeaStreamer(QObject* parent = nullptr);

    bool loadFile(const QString& path);
    bool listen();              // on a free loopback port
    QString sourceUrl() const;  // socket://127.0.0.1:PORT

    // Writes the next epoch (wrapping around at the end); false without clients.
    bool sendNext();
    // Streams one epoch every intervalMs.
    void start(int intervalMs = 1000);

    // The sentence with its UTC time (and, for RMC, date) replaced, checksum recomputed.
    static QByteArray retimed(const QByteArray& sentence, const QDateTime& utc);

private:
    QTcpServer* m_pServer;
    QList<QPointer<QTcpSocket>> m_lstClients;
    QList<QList<QByteArray>> m_lstEpochs;
    int m_iNext = 0;
    QTimer m_timer;
};

}  // namespace Test
}  // namespace Dravo
