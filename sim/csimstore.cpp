// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "csimstore.h"

#include <QDebug>
#include <QUuid>
#include <memory>

#include "cincomingscript.h"
#include "ctarvikstorage.h"

namespace Dravo {

namespace {

QString newGuid()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

}  // namespace

CSimStore::CSimStore() : CDaemonStore(QStringLiteral("tarvik_simd")) {}

CSimStore::CSendResult CSimStore::sendOutbox(CSimOptions::eSendMode mode, const QString& ownNumber)
{
    CSendResult result;
    std::unique_ptr<CTarvikStorage> storage(open(&result.m_strError));
    if (!storage) {
        result.m_bOk = false;
        return result;
    }
    QList<CTarvik> outbox;
    if (!storage->getTarviks(CTarvikStorage::eFolderOutbox, outbox)) {
        result.m_bOk = false;
        result.m_strError = QStringLiteral("cannot read the outbox of %1").arg(databasePath());
        return result;
    }
    for (const CTarvik& tarvik : outbox) {
        if (tarvik.flag() != 1) {
            continue;  // failed earlier; the client queues it again with tflag 1
        }
        bool fail = mode == CSimOptions::eSendFail ||
                    (mode == CSimOptions::eSendPartial && result.m_iQueued % 2 == 1);
        ++result.m_iQueued;
        if (!fail) {
            CTarvik sent = tarvik;
            sent.setId(-1);
            sent.setFlag(0);
            if (sent.guid().isEmpty()) {
                sent.setGuid(newGuid());
            }
            int tid = -1;
            if (storage->saveTarvik(sent, CTarvikStorage::eFolderSent, tid)) {
                // Copy first, then remove: a failure in between leaves a duplicate, never a loss.
                if (!storage->removeTarvik(tarvik.id(), CTarvikStorage::eFolderOutbox)) {
                    qWarning().noquote()
                        << QStringLiteral(
                               "tarvik-simd: outbox message %1 was sent but stays in "
                               "the outbox: it could not be removed")
                               .arg(tarvik.id());
                }
                ++result.m_iSent;
                if (isAddressedTo(tarvik.to(), ownNumber)) {
                    CTarvik received = tarvik;
                    received.setId(-1);
                    received.setGuid(sent.guid());
                    received.setTo(ownNumber);
                    received.setFlag(1);
                    result.m_lstLoopback.append(received);
                }
            } else {
                qWarning().noquote()
                    << QStringLiteral(
                           "tarvik-simd: outbox message %1 could not be copied to the "
                           "sent folder; it counts as failed")
                           .arg(tarvik.id());
                fail = true;
            }
        }
        if (fail) {
            CTarvik failed = tarvik;
            failed.setFlag(0);
            int tid = -1;
            if (!storage->saveTarvik(failed, CTarvikStorage::eFolderOutbox, tid)) {
                qWarning().noquote()
                    << QStringLiteral("tarvik-simd: could not mark outbox message %1 as failed")
                           .arg(tarvik.id());
            }
            ++result.m_iFailed;
        }
    }
    return result;
}

int CSimStore::seedDemo(const QString& ownNumber, const QString& screenname, QString* pError)
{
    std::unique_ptr<CTarvikStorage> storage(open(pError));
    if (!storage) {
        return 0;
    }
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QList<CIncomingScript::CEntry> entries = CIncomingScript::builtInEntries();
    int written = 0;
    auto fillIfEmpty = [&](CTarvikStorage::eFolderName folder, const QList<CTarvik>& tarviks) {
        QList<CTarvik> existing;
        if (!storage->getTarviks(folder, existing, 1)) {
            if (pError) {
                *pError = QStringLiteral("cannot read the %1 folder of %2")
                              .arg(CTarvikStorage::tableName(folder), databasePath());
            }
            return;
        }
        if (!existing.isEmpty()) {
            return;
        }
        QList<int> tids;
        storage->saveTarviks(tarviks, folder, tids);
        written += tids.size();
    };

    // Inbox: two unread and three read messages from the last days.
    const int ages[] = {12 * 60, 3 * 3600, 26 * 3600, 3 * 86400, 6 * 86400};
    QList<CTarvik> inbox;
    for (int i = 0; i < 5; ++i) {
        inbox.append(CIncomingScript::makeTarvik(entries.at(i), ownNumber, now.addSecs(-ages[i]),
                                                 i < 2 ? 1 : 0));
    }
    fillIfEmpty(CTarvikStorage::eFolderInbox, inbox);

    // Sent: two answers, written from where the user was then.
    auto own = [&](const CIncomingScript::CEntry& to, const QString& title, const QString& note,
                   const CIncomingScript::CEntry& where, qint64 age, int flag) {
        CIncomingScript::CEntry entry = where;
        entry.m_strFrom = ownNumber;
        entry.m_strScreenname = screenname;
        entry.m_strTitle = title;
        entry.m_strNote = note;
        CTarvik tarvik = CIncomingScript::makeTarvik(entry, to.m_strFrom, now.addSecs(-age), flag);
        return tarvik;
    };
    fillIfEmpty(CTarvikStorage::eFolderSent,
                {own(entries.at(2), QStringLiteral("On my way"),
                     QStringLiteral("Leaving the office now, see you at the tree in twenty "
                                    "minutes."),
                     entries.at(2), 25 * 3600, 0),
                 own(entries.at(3), QStringLiteral("No worries"),
                     QStringLiteral("I'm at the café on the corner, take your time."),
                     entries.at(3), 4 * 86400, 0)});

    // Outbox: one message whose sending failed, so Send/Receive has work to do.
    fillIfEmpty(CTarvikStorage::eFolderOutbox,
                {own(entries.at(0), QStringLiteral("Dinner on Friday?"),
                     QStringLiteral("Table for four at eight, near the harbour. Are you in?"),
                     entries.at(0), 40 * 60, 0)});
    return written;
}

}  // namespace Dravo
