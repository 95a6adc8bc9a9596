// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>
#include <QTemporaryDir>

#include "cprivatebus.h"

namespace Dravo {
namespace Test {

// Evolution Data Server for one test program: a private session bus, HOME and the
// XDG directories in a temporary directory, the source registry and the
// address-book factory started on that bus. Contacts are added through libebook.
class CEdsFixture
{
public:
    CEdsFixture();
    ~CEdsFixture();

    // Must run before the first QDBusConnection::sessionBus() call.
    bool start();
    QString errorString() const { return m_strError; }

    // Adds vCards (VERSION:3.0 bodies) to the system address book.
    bool addContacts(const QStringList& vcards);
    // A VERSION:3.0 vCard named `name` with the given property lines.
    static QString vcard(const QString& name, const QStringList& lines)
    {
        return QStringLiteral("BEGIN:VCARD\r\nVERSION:3.0\r\nFN:%1\r\n%2END:VCARD\r\n")
            .arg(name, lines.isEmpty() ? QString() : lines.join(QStringLiteral("\r\n")) + "\r\n");
    }
    // Ends the services and their session bus, as when the desktop session dies.
    void stop();

private:
    bool waitForName(const QString& name, int timeoutMs);

    QTemporaryDir m_home;
    CPrivateBus m_bus;
    CHelperProcess m_registry;
    CHelperProcess m_factory;
    QString m_strError;
};

}  // namespace Test
}  // namespace Dravo
