// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>
#include <QImage>
#include <QString>

namespace Dravo {

// What the client and the map view helper (tarvik-mapview) say to each other over the
// socket the client hands to the helper as file descriptor 3. Each message is one
// QDataStream byte array: the message type (a quint8), then its arguments.
namespace MapViewProtocol {

// The socket's file descriptor in the helper.
const int kSocketFd = 3;
const QDataStream::Version kStreamVersion = QDataStream::Qt_6_4;

enum eMessage : quint8
{
    // Client to helper.
    eLoad = 1,           // bool route page, QString page settings script, QString user agent, QSize
    eResize = 2,         // QSize
    eRunScript = 3,      // QString script
    eEvaluate = 4,       // quint32 id, QString script; answered by eResult
                         // Helper to client.
    eLoadFinished = 20,  // bool ok
    eRouteError = 21,    // QString text from the page
    eRouteLoaded = 22,
    eTilesLoaded = 23,
    eFrame = 24,   // the page's picture: see writeFrame()
    eLog = 25,     // int QtMsgType, QString message
    eResult = 26,  // quint32 id, QVariant
};

// Sends one message: its type and the arguments that write() puts on the stream.
template <typename F>
void send(QIODevice* pDevice, eMessage type, F write)
{
    QByteArray message;
    QDataStream out(&message, QIODevice::WriteOnly);
    out.setVersion(kStreamVersion);
    out << quint8(type);
    write(out);
    QDataStream framed(pDevice);
    framed.setVersion(kStreamVersion);
    framed << message;
}

inline void send(QIODevice* pDevice, eMessage type)
{
    send(pDevice, type, [](QDataStream&) {});
}

// The next whole message on the device, without its type; false when none has arrived
// completely yet.
inline bool receive(QIODevice* pDevice, quint8* pType, QByteArray* pArguments)
{
    QDataStream in(pDevice);
    in.setVersion(kStreamVersion);
    in.startTransaction();
    QByteArray message;
    in >> message;
    if (!in.commitTransaction() || message.isEmpty())
        return false;
    *pType = quint8(message.at(0));
    *pArguments = message.mid(1);
    return true;
}

// A picture goes raw (PNG would cost more time than the bytes do on a local socket).
inline void writeFrame(QDataStream& out, const QImage& image)
{
    const QImage frame = image.format() == QImage::Format_ARGB32_Premultiplied
                             ? image
                             : image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    out << frame.size() << frame.devicePixelRatio();
    out.writeRawData(reinterpret_cast<const char*>(frame.constBits()), int(frame.sizeInBytes()));
}

inline QImage readFrame(QDataStream& in)
{
    QSize size;
    qreal dRatio = 1.0;
    in >> size >> dRatio;
    if (in.status() != QDataStream::Ok || size.isEmpty() || size.width() > 16384 ||
        size.height() > 16384)
        return QImage();
    QImage frame(size, QImage::Format_ARGB32_Premultiplied);
    if (in.readRawData(reinterpret_cast<char*>(frame.bits()), int(frame.sizeInBytes())) !=
        int(frame.sizeInBytes()))
        return QImage();
    frame.setDevicePixelRatio(dRatio);
    return frame;
}

// A text from the page made fit for one log line: line breaks and other control
// characters become spaces, and it is cut to 300 characters.
inline QString logSafe(const QString& strText)
{
    QString strSafe = strText.left(300);
    for (QChar& c : strSafe) {
        if (c.category() == QChar::Other_Control || c.category() == QChar::Separator_Line ||
            c.category() == QChar::Separator_Paragraph)
            c = QLatin1Char(' ');
    }
    return strSafe;
}

}  // namespace MapViewProtocol
}  // namespace Dravo
