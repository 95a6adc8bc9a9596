// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>

#include "ctarvik.h"

namespace Dravo {
namespace Test {

// Points HOME at a fresh temporary directory for the lifetime of the object.
class CScopedHome
{
public:
    CScopedHome() : m_previous(qgetenv("HOME")) { qputenv("HOME", m_dir.path().toUtf8()); }
    ~CScopedHome() { qputenv("HOME", m_previous); }
    QString path() const { return m_dir.path(); }
    QString dataDir() const { return m_dir.path() + QStringLiteral("/.tarvik/"); }
    QString dbPath() const { return dataDir() + QStringLiteral("tarvikdb.sqlite"); }

private:
    QByteArray m_previous;
    QTemporaryDir m_dir;
};

inline CTarvik makeTarvik(const QString& title, qint64 seconds, double latitude = 59.437,
                          double longitude = 24.7536)
{
    CTarvik tarvik;
    tarvik.setGuid(QStringLiteral("guid-") + title);
    tarvik.setFrom(QStringLiteral("+3725550001"));
    tarvik.setTo(QStringLiteral("mari@example.org"));
    tarvik.setDateTime(QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC));
    tarvik.setTz(2);
    tarvik.setTitle(title);
    tarvik.setNote(QStringLiteral("Meet me at the town hall square"));
    tarvik.setLatitude(latitude);
    tarvik.setLongitude(longitude);
    tarvik.setScreenname(QStringLiteral("Jaan"));
    tarvik.setAddress(QStringLiteral("Raekoja plats 1"));
    tarvik.setFlag(1);
    return tarvik;
}

// A message with every field set to something of its own.
inline CTarvik makeFullTarvik()
{
    CTarvik tarvik;
    tarvik.setId(17);
    tarvik.setFrom(QStringLiteral("+3725550001"));
    tarvik.setTo(QStringLiteral("+3725550009, carol@example.org"));
    tarvik.setDateTime(QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5), Qt::UTC));
    tarvik.setTz(120);
    tarvik.setTitle(QStringLiteral("Lunch"));
    tarvik.setNote(QStringLiteral("At the corner"));
    tarvik.setLatitude(59.4369608);
    tarvik.setLongitude(24.7535747);
    tarvik.setScreenname(QStringLiteral("Alice"));
    tarvik.setAddress(QStringLiteral("Raekoja plats 1, Tallinn"));
    tarvik.setType(QStringLiteral("cafe"));
    tarvik.setTypedesc(QStringLiteral("Cafe"));
    tarvik.setImage(QStringLiteral("cafe.png"));
    tarvik.setPriority(2);
    tarvik.setColor(QStringLiteral("#ff8800"));
    tarvik.setReg(QStringLiteral("356938035643809"));
    tarvik.setCountry(248);
    tarvik.setCarrier(QStringLiteral("Elisa"));
    tarvik.setVersion(QStringLiteral("1.0.5"));
    tarvik.setFlag(3);
    return tarvik;
}

// A message as it arrives from `sender` under the stanza id `id`: unread, without the IMEI,
// which never leaves the handset.
inline CTarvik asReceived(CTarvik tarvik, const QString& sender, const QString& id)
{
    tarvik.setFrom(sender);
    tarvik.setGuid(id);
    tarvik.setReg(QString());
    tarvik.setFlag(1);
    return tarvik;
}

// Every field of a message but its id, as text, for comparing two messages whole.
inline QStringList fields(const CTarvik& t)
{
    return {t.guid(),
            t.from(),
            t.to(),
            QString::number(t.dateTime().toSecsSinceEpoch()),
            QString::number(t.tz()),
            t.title(),
            t.note(),
            QString::number(t.latitude()),
            QString::number(t.longitude()),
            t.screenname(),
            t.address(),
            t.type(),
            t.typedesc(),
            t.image(),
            QString::number(t.priority()),
            t.color(),
            t.reg(),
            QString::number(t.country()),
            t.carrier(),
            t.version(),
            QString::number(t.flag())};
}

// A second connection to the same file, as another process (the daemon) would have.
class CSideConnection
{
public:
    explicit CSideConnection(const QString& path, const QString& name = QStringLiteral("side"))
        : m_strName(name)
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        db.open();
    }
    ~CSideConnection()
    {
        QSqlDatabase::database(m_strName, false).close();
        QSqlDatabase::removeDatabase(m_strName);
    }
    QSqlDatabase db() const { return QSqlDatabase::database(m_strName, false); }
    bool exec(const QString& sql)
    {
        QSqlQuery query(db());
        return query.exec(sql);
    }
    QVariant scalar(const QString& sql)
    {
        QSqlQuery query(db());
        if (!query.exec(sql) || !query.next()) {
            return QVariant();
        }
        return query.value(0);
    }

private:
    QString m_strName;
};

}  // namespace Test
}  // namespace Dravo
