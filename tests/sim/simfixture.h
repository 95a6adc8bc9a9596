// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QString>
#include <QTemporaryDir>

#include "ctarvik.h"

namespace Dravo {
namespace Test {

// Points HOME at a fresh temporary directory while it lives.
class CSimHome
{
public:
    CSimHome() : m_baPrevious(qgetenv("HOME")) { qputenv("HOME", m_dir.path().toUtf8()); }
    ~CSimHome() { qputenv("HOME", m_baPrevious); }
    QString path() const { return m_dir.path(); }
    QString dbPath() const { return m_dir.path() + QStringLiteral("/.tarvik/tarvikdb.sqlite"); }

private:
    QByteArray m_baPrevious;
    QTemporaryDir m_dir;
};

// An outbox message as the client queues it.
inline CTarvik queuedTarvik(const QString& title, const QString& to, qint64 ageSeconds,
                            int flag = 1)
{
    CTarvik tarvik;
    tarvik.setFrom(QStringLiteral("+447700900100"));
    tarvik.setTo(to);
    tarvik.setDateTime(QDateTime::currentDateTimeUtc().addSecs(-ageSeconds));
    tarvik.setTitle(title);
    tarvik.setNote(QStringLiteral("note of ") + title);
    tarvik.setLatitude(59.4372);
    tarvik.setLongitude(24.7453);
    tarvik.setScreenname(QStringLiteral("Demo"));
    tarvik.setFlag(flag);
    return tarvik;
}

}  // namespace Test
}  // namespace Dravo
