// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cedsfixture.h"

#include <libebook/libebook.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QThread>

namespace Dravo {
namespace Test {

namespace {

const char* const kRegistry = "/usr/libexec/evolution-source-registry";
const char* const kFactory = "/usr/libexec/evolution-addressbook-factory";

}  // namespace

CEdsFixture::CEdsFixture() : m_bus(CPrivateBus::eSession) {}

CEdsFixture::~CEdsFixture()
{
    stop();
}

void CEdsFixture::stop()
{
    m_factory.stop();
    m_registry.stop();
    m_bus.stop();
}

bool CEdsFixture::start()
{
    if (!QFile::exists(QString::fromLatin1(kRegistry)) ||
        !QFile::exists(QString::fromLatin1(kFactory))) {
        m_strError = QStringLiteral("evolution-data-server is not installed");
        return false;
    }
    const QString home = m_home.path();
    for (const char* dir : {"data", "config", "cache", "runtime"}) {
        QDir(home).mkpath(QString::fromLatin1(dir));
    }
    QFile::setPermissions(home + QStringLiteral("/runtime"),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    qputenv("HOME", home.toUtf8());
    qputenv("XDG_DATA_HOME", (home + QStringLiteral("/data")).toUtf8());
    qputenv("XDG_CONFIG_HOME", (home + QStringLiteral("/config")).toUtf8());
    qputenv("XDG_CACHE_HOME", (home + QStringLiteral("/cache")).toUtf8());
    qputenv("XDG_RUNTIME_DIR", (home + QStringLiteral("/runtime")).toUtf8());
    qputenv("GSETTINGS_BACKEND", "memory");
    if (!m_bus.start()) {
        m_strError = m_bus.errorString();
        return false;
    }
    m_bus.exportAddress();
    if (!m_registry.start(QString::fromLatin1(kRegistry), {}, QString()) ||
        !waitForName(QStringLiteral("org.gnome.evolution.dataserver.Sources5"), 15000)) {
        m_strError = QStringLiteral("the source registry did not start");
        return false;
    }
    if (!m_factory.start(QString::fromLatin1(kFactory), {}, QString()) ||
        !waitForName(QStringLiteral("org.gnome.evolution.dataserver.AddressBook10"), 15000)) {
        m_strError = QStringLiteral("the address-book factory did not start");
        return false;
    }
    return true;
}

bool CEdsFixture::waitForName(const QString& name, int timeoutMs)
{
    QDeadlineTimer deadline(timeoutMs);
    QDBusConnectionInterface* bus = QDBusConnection::sessionBus().interface();
    while (!deadline.hasExpired()) {
        if (bus && bus->isServiceRegistered(name)) {
            return true;
        }
        QThread::msleep(50);
    }
    return false;
}

bool CEdsFixture::addContacts(const QStringList& vcards)
{
    GError* error = nullptr;
    ESourceRegistry* registry = e_source_registry_new_sync(nullptr, &error);
    if (!registry) {
        m_strError = QString::fromUtf8(error->message);
        g_error_free(error);
        return false;
    }
    ESource* source = e_source_registry_ref_builtin_address_book(registry);
    EClient* client = e_book_client_connect_sync(source, static_cast<guint32>(-1), nullptr, &error);
    g_object_unref(source);
    bool ok = client != nullptr;
    if (client) {
        GSList* contacts = nullptr;
        for (const QString& vcard : vcards) {
            contacts =
                g_slist_prepend(contacts, e_contact_new_from_vcard(vcard.toUtf8().constData()));
        }
        contacts = g_slist_reverse(contacts);
        ok = e_book_client_add_contacts_sync(E_BOOK_CLIENT(client), contacts,
                                             E_BOOK_OPERATION_FLAG_NONE, nullptr, nullptr, &error);
        g_slist_free_full(contacts, g_object_unref);
        g_object_unref(client);
    }
    if (!ok && error) {
        m_strError = QString::fromUtf8(error->message);
        g_error_free(error);
    }
    g_object_unref(registry);
    return ok;
}

}  // namespace Test
}  // namespace Dravo
