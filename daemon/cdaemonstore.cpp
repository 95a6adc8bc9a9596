// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cdaemonstore.h"

#include <QDebug>
#include <QFile>
#include <memory>

#include "ctarvikstorage.h"

namespace Dravo {

CDaemonStore::CDaemonStore(const QString& name) : m_strName(name), m_iConnection(0) {}

CDaemonStore::~CDaemonStore() = default;

QString CDaemonStore::databasePath()
{
    return CTarvikStorage::databasePath();
}

bool CDaemonStore::databaseExists()
{
    return QFile::exists(databasePath());
}

CTarvikStorage* CDaemonStore::open(QString* pError)
{
    if (!databaseExists()) {
        if (pError) {
            *pError = QStringLiteral("no database at %1 (the client creates it when it starts)")
                          .arg(databasePath());
        }
        return nullptr;
    }
    CTarvikStorage::initResources();
    auto* storage = new CTarvikStorage(QStringLiteral("%1_%2").arg(m_strName).arg(++m_iConnection));
    if (!storage->isOpen()) {
        if (pError) {
            *pError = QStringLiteral("cannot open the database %1").arg(databasePath());
        }
        delete storage;
        return nullptr;
    }
    return storage;
}

bool CDaemonStore::ensureDatabase(QString* pError)
{
    if (!databaseExists()) {
        CTarvikStorage::initResources();
        // Constructing a storage copies the template into place.
        CTarvikStorage storage(m_strName + QStringLiteral("_create"));
        if (!storage.isOpen()) {
            if (pError) {
                *pError = QStringLiteral("cannot create the database %1").arg(databasePath());
            }
            return false;
        }
    }
    CTSettings settings;
    return readSettings(settings, pError);
}

bool CDaemonStore::readSettings(CTSettings& settings, QString* pError)
{
    std::unique_ptr<CTarvikStorage> storage(open(pError));
    if (!storage) {
        return false;
    }
    if (!storage->getSettings(settings)) {
        if (pError) {
            *pError = QStringLiteral(
                          "cannot read the settings from %1 (damaged or not a tarvik "
                          "database?)")
                          .arg(databasePath());
        }
        return false;
    }
    return true;
}

bool CDaemonStore::setRegistered(bool registered, QString* pError)
{
    std::unique_ptr<CTarvikStorage> storage(open(pError));
    if (!storage) {
        return false;
    }
    CTSettings settings;
    settings.setRegflag(registered ? 1 : 0);
    if (!storage->saveSettings(settings, CTSettings::eMaskRegflag)) {
        if (pError) {
            *pError = QStringLiteral("cannot write regflag to %1").arg(databasePath());
        }
        return false;
    }
    return true;
}

bool CDaemonStore::registerAccount(const QString& number, const QString& screenname,
                                   QString* pError)
{
    std::unique_ptr<CTarvikStorage> storage(open(pError));
    if (!storage) {
        return false;
    }
    CTSettings settings;
    settings.setMynumber(number);
    settings.setScreenname(screenname);
    settings.setRegflag(1);
    if (!storage->saveSettings(settings, CTSettings::eMaskScreenname | CTSettings::eMaskMynumber |
                                             CTSettings::eMaskRegflag)) {
        if (pError) {
            *pError = QStringLiteral("cannot write the account to %1").arg(databasePath());
        }
        return false;
    }
    return true;
}

int CDaemonStore::deliver(const QList<CTarvik>& tarviks, QString* pError)
{
    if (tarviks.isEmpty()) {
        return 0;
    }
    std::unique_ptr<CTarvikStorage> storage(open(pError));
    if (!storage) {
        return 0;
    }
    QList<int> tids;
    storage->saveTarviks(tarviks, CTarvikStorage::eFolderInbox, tids);
    const int stored = tids.size();
    if (stored < tarviks.size() && pError) {
        *pError = QStringLiteral("%1 of %2 messages could not be stored in the inbox of %3")
                      .arg(tarviks.size() - stored)
                      .arg(tarviks.size())
                      .arg(databasePath());
    }
    return stored;
}

bool CDaemonStore::inbox(QList<CTarvik>& tarviks, QString* pError)
{
    std::unique_ptr<CTarvikStorage> storage(open(pError));
    if (!storage) {
        return false;
    }
    if (!storage->getTarviks(CTarvikStorage::eFolderInbox, tarviks)) {
        if (pError) {
            *pError = QStringLiteral("cannot read the inbox of %1").arg(databasePath());
        }
        return false;
    }
    return true;
}

bool CDaemonStore::queuedOutbox(QList<CTarvik>& queued, QString* pError)
{
    std::unique_ptr<CTarvikStorage> storage(open(pError));
    if (!storage) {
        return false;
    }
    QList<CTarvik> outbox;
    if (!storage->getTarviks(CTarvikStorage::eFolderOutbox, outbox)) {
        if (pError) {
            *pError = QStringLiteral("cannot read the outbox of %1").arg(databasePath());
        }
        return false;
    }
    for (const CTarvik& tarvik : outbox) {
        if (tarvik.flag() == 1) {
            queued.append(tarvik);
        }
    }
    return true;
}

bool CDaemonStore::sentGuids(QSet<QString>& guids, QString* pError)
{
    std::unique_ptr<CTarvikStorage> storage(open(pError));
    if (!storage) {
        return false;
    }
    QList<CTarvik> sent;
    if (!storage->getTarviks(CTarvikStorage::eFolderSent, sent)) {
        if (pError) {
            *pError = QStringLiteral("cannot read the sent folder of %1").arg(databasePath());
        }
        return false;
    }
    for (const CTarvik& tarvik : sent) {
        if (!tarvik.guid().isEmpty()) {
            guids.insert(tarvik.guid());
        }
    }
    return true;
}

int CDaemonStore::moveToSent(const QList<CTarvik>& tarviks, QString* pError)
{
    if (tarviks.isEmpty()) {
        return 0;
    }
    std::unique_ptr<CTarvikStorage> storage(open(pError));
    if (!storage) {
        return 0;
    }
    QList<CTarvik> copies;
    QList<int> outboxIds;
    for (const CTarvik& tarvik : tarviks) {
        CTarvik copy = tarvik;
        copy.setId(-1);
        copy.setFlag(0);
        copies.append(copy);
        outboxIds.append(tarvik.id());
    }
    QList<int> tids;
    storage->saveTarviks(copies, CTarvikStorage::eFolderSent, tids);
    if (tids.size() != copies.size()) {
        if (pError) {
            *pError = QStringLiteral(
                          "%1 sent messages could not be copied to the sent folder; "
                          "they stay in the outbox")
                          .arg(copies.size() - tids.size());
        }
        return 0;
    }
    if (!storage->removeTarviks(outboxIds, CTarvikStorage::eFolderOutbox) && pError) {
        *pError = QStringLiteral("sent messages stay in the outbox too: they could not be removed");
    }
    return tids.size();
}

bool CDaemonStore::dropFromOutbox(const QList<int>& tids, QString* pError)
{
    if (tids.isEmpty()) {
        return true;
    }
    std::unique_ptr<CTarvikStorage> storage(open(pError));
    if (!storage) {
        return false;
    }
    return storage->removeTarviks(tids, CTarvikStorage::eFolderOutbox);
}

int CDaemonStore::markFailed(const QList<CTarvik>& tarviks, QString* pError)
{
    if (tarviks.isEmpty()) {
        return 0;
    }
    std::unique_ptr<CTarvikStorage> storage(open(pError));
    if (!storage) {
        return 0;
    }
    QList<CTarvik> failed;
    for (CTarvik tarvik : tarviks) {
        tarvik.setFlag(0);
        failed.append(tarvik);
    }
    QList<int> tids;
    storage->saveTarviks(failed, CTarvikStorage::eFolderOutbox, tids);
    return tids.size();
}

QString CDaemonStore::normalizedAddress(const QString& address)
{
    const QString trimmed = address.trimmed();
    if (trimmed.contains(QLatin1Char('@'))) {
        return trimmed.toLower();
    }
    QString digits;
    for (const QChar c : trimmed) {
        if (c.isDigit()) {
            digits.append(c);
        } else if (c == QLatin1Char('+') && digits.isEmpty()) {
            digits.append(c);
        }
    }
    if (digits.startsWith(QStringLiteral("00"))) {
        digits.replace(0, 2, QStringLiteral("+"));
    }
    return digits;
}

bool CDaemonStore::isAddressedTo(const QString& to, const QString& ownNumber)
{
    const QString own = normalizedAddress(ownNumber);
    if (own.isEmpty() || own == QStringLiteral("+")) {
        return false;
    }
    const QStringList recipients = to.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString& recipient : recipients) {
        if (normalizedAddress(recipient) == own) {
            return true;
        }
    }
    return false;
}

}  // namespace Dravo
