// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QString>

namespace Dravo {

// The account passwords the daemon makes for itself. They live in the Secret Service
// (libsecret) when one runs on the session bus, otherwise in a file readable by the user
// alone under ~/.config/tarvik/. Never in the shared database and never in a log.
class CPasswordStore
{
public:
    explicit CPasswordStore(const QDBusConnection& bus);

    static QString passwordFile();
    // A fresh random password (144 bits, base64url).
    static QString newPassword();

    // Empty when none is kept for the account.
    QString password(const QString& jid) const;
    // False with the reason when neither place took it.
    bool store(const QString& jid, const QString& password, QString* pError);
    void remove(const QString& jid);

private:
    bool secretServiceRuns() const;
    QString fromFile(const QString& jid) const;
    bool writeFile(const QString& jid, const QString& password, QString* pError);

    QDBusConnection m_bus;
};

}  // namespace Dravo
