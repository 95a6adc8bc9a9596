// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cedscontactreader.h"

#include <libebook/libebook.h>

namespace Dravo {

namespace {

// The walk over one contact's vCard attributes: phone numbers and e-mail addresses in
// stored order, and the best name to show.
CContactEntry toEntry(EContact* contact)
{
    QList<CContactEntry::Attribute> attributes;
    QString firstAddress;
    for (GList* item = e_vcard_get_attributes(E_VCARD(contact)); item; item = item->next) {
        auto* attribute = static_cast<EVCardAttribute*>(item->data);
        const QString name = QString::fromUtf8(e_vcard_attribute_get_name(attribute));
        // Only phone numbers and e-mail addresses are used. The others are not
        // read: libebook warns for every multi-valued one (N, ADR, ORG) read as
        // a single value, and some hold binary data (PHOTO).
        if (!CContactEntry::isAddressAttribute(name)) {
            continue;
        }
        gchar* raw = e_vcard_attribute_get_value(attribute);
        const QString value = QString::fromUtf8(raw ? raw : "");
        g_free(raw);
        if (firstAddress.isEmpty()) {
            firstAddress = value;
        }
        attributes.append({name, value});
    }
    QString displayName;
    for (EContactField field : {E_CONTACT_FULL_NAME, E_CONTACT_FILE_AS, E_CONTACT_NICKNAME}) {
        const char* text = static_cast<const char*>(e_contact_get_const(contact, field));
        if (text && *text) {
            displayName = QString::fromUtf8(text).trimmed();
            break;
        }
    }
    if (displayName.isEmpty()) {
        displayName = firstAddress;
    }
    const char* uid = static_cast<const char*>(e_contact_get_const(contact, E_CONTACT_UID));
    return CContactEntry(QString::fromUtf8(uid ? uid : ""), displayName, attributes);
}

QString takeMessage(GError* gerror)
{
    const QString message =
        gerror ? QString::fromUtf8(gerror->message) : QStringLiteral("unknown error");
    g_clear_error(&gerror);
    return message;
}

EBookClient* connectBook(ESourceRegistry* registry, QString* error)
{
    ESource* source = e_source_registry_ref_builtin_address_book(registry);
    if (!source) {
        *error = QStringLiteral("no system address book");
        return nullptr;
    }
    // (guint32)-1: do not wait for the backend to report itself online; a local
    // book is usable at once (0 would wait for ever).
    GError* gerror = nullptr;
    EClient* client =
        e_book_client_connect_sync(source, static_cast<guint32>(-1), nullptr, &gerror);
    g_object_unref(source);
    if (!client) {
        *error = takeMessage(gerror);
        return nullptr;
    }
    return E_BOOK_CLIENT(client);
}

}  // namespace

bool CEdsContactReader::readAll(CContactEntryList* contacts, QString* error)
{
    GError* gerror = nullptr;
    // libebook talks over the process's shared session-bus connection, and GLib
    // raises SIGTERM when that bus goes away: keep a reference (GLib forgets a shared
    // connection nobody holds) and turn that off, so a lost bus is an error line.
    GDBusConnection* bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &gerror);
    if (!bus) {
        *error = takeMessage(gerror);
        return false;
    }
    g_dbus_connection_set_exit_on_close(bus, FALSE);
    ESourceRegistry* registry = e_source_registry_new_sync(nullptr, &gerror);
    EBookClient* client = nullptr;
    bool ok = false;
    if (!registry) {
        *error = takeMessage(gerror);
    } else if ((client = connectBook(registry, error))) {
        EBookQuery* query = e_book_query_any_field_contains("");
        gchar* sexp = e_book_query_to_string(query);
        e_book_query_unref(query);
        GSList* found = nullptr;
        ok = e_book_client_get_contacts_sync(client, sexp, &found, nullptr, &gerror);
        g_free(sexp);
        if (ok) {
            for (GSList* item = found; item; item = item->next) {
                contacts->append(toEntry(E_CONTACT(item->data)));
            }
            g_slist_free_full(found, g_object_unref);
        } else {
            *error = takeMessage(gerror);
        }
    }
    g_clear_object(&client);
    g_clear_object(&registry);
    g_object_unref(bus);
    return ok;
}

CContactEntry CEdsContactReader::entryFromVCard(const QByteArray& vcard)
{
    EContact* contact = e_contact_new_from_vcard(vcard.constData());
    if (!contact) {
        return CContactEntry();
    }
    const CContactEntry entry = toEntry(contact);
    g_object_unref(contact);
    return entry;
}

}  // namespace Dravo
