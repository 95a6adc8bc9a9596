// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "caddressbook.h"

#include <libebook/libebook.h>

#include <QElapsedTimer>
#include <QtDebug>

namespace Dravo {

// Lives on the address-book thread; every libebook call happens there.
class CAddressBookWorker : public QObject
{
    Q_OBJECT
public:
    ~CAddressBookWorker() override { close(); }

public Q_SLOTS:
    void open()
    {
        QString error;
        const bool ok = ensureClient(&error);
        Q_EMIT opened(ok, error);
    }

    void load()
    {
        QString error;
        if (!ensureClient(&error)) {
            Q_EMIT loaded(CContactEntryList(), error);
            return;
        }
        QElapsedTimer clock;
        clock.start();
        EBookQuery* query = e_book_query_any_field_contains("");
        gchar* sexp = e_book_query_to_string(query);
        e_book_query_unref(query);
        GSList* contacts = nullptr;
        GError* gerror = nullptr;
        const gboolean ok =
            e_book_client_get_contacts_sync(m_pClient, sexp, &contacts, nullptr, &gerror);
        g_free(sexp);
        if (!ok) {
            error = takeMessage(gerror);
            // The factory or the bus may have gone away: connect again next time.
            close();
            Q_EMIT loaded(CContactEntryList(), error);
            return;
        }
        CContactEntryList result;
        for (GSList* item = contacts; item; item = item->next) {
            result.append(toEntry(E_CONTACT(item->data)));
        }
        g_slist_free_full(contacts, g_object_unref);
        qDebug().noquote() << QStringLiteral("CAddressBook: %1 contacts read in %2 ms")
                                  .arg(result.size())
                                  .arg(clock.elapsed());
        Q_EMIT loaded(result, QString());
    }

    void close()
    {
        g_clear_object(&m_pClient);
        g_clear_object(&m_pRegistry);
        g_clear_object(&m_pBus);
    }

Q_SIGNALS:
    void opened(bool ok, const QString& error);
    void loaded(const Dravo::CContactEntryList& contacts, const QString& error);

private:
    static QString takeMessage(GError* gerror)
    {
        const QString message =
            gerror ? QString::fromUtf8(gerror->message) : QStringLiteral("unknown error");
        if (gerror) {
            g_error_free(gerror);
        }
        return message;
    }

    bool ensureClient(QString* error)
    {
        if (m_pClient) {
            return true;
        }
        GError* gerror = nullptr;
        if (!m_pRegistry) {
            // libebook talks over the process's shared session-bus connection, and
            // GLib raises SIGTERM when that bus goes away: the client must outlive it.
            // The reference is kept: GLib forgets a shared connection nobody holds.
            if (!m_pBus) {
                m_pBus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &gerror);
                if (!m_pBus) {
                    *error = takeMessage(gerror);
                    return false;
                }
                g_dbus_connection_set_exit_on_close(m_pBus, FALSE);
            }
            m_pRegistry = e_source_registry_new_sync(nullptr, &gerror);
            if (!m_pRegistry) {
                *error = takeMessage(gerror);
                return false;
            }
        }
        ESource* source = e_source_registry_ref_builtin_address_book(m_pRegistry);
        if (!source) {
            *error = QStringLiteral("no system address book");
            return false;
        }
        // (guint32)-1: do not wait for the backend to report itself online; a local
        // book is usable at once (0 would wait for ever).
        EClient* client =
            e_book_client_connect_sync(source, static_cast<guint32>(-1), nullptr, &gerror);
        g_object_unref(source);
        if (!client) {
            *error = takeMessage(gerror);
            return false;
        }
        m_pClient = E_BOOK_CLIENT(client);
        return true;
    }

    static CContactEntry toEntry(EContact* contact)
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

    GDBusConnection* m_pBus = nullptr;
    ESourceRegistry* m_pRegistry = nullptr;
    EBookClient* m_pClient = nullptr;
};

CAddressBook::CAddressBook() : m_pThread(new QThread), m_pWorker(new CAddressBookWorker)
{
    qRegisterMetaType<Dravo::CContactEntryList>("Dravo::CContactEntryList");
    m_pThread->setObjectName(QStringLiteral("addressbook"));
    m_pWorker->moveToThread(m_pThread);
    connect(m_pThread, &QThread::finished, m_pWorker, &QObject::deleteLater);
    connect(this, &CAddressBook::signalOpen, m_pWorker, &CAddressBookWorker::open);
    connect(this, &CAddressBook::signalLoad, m_pWorker, &CAddressBookWorker::load);
    connect(m_pWorker, &CAddressBookWorker::opened, this, [this](bool ok, const QString& error) {
        if (!ok) {
            qCritical() << "main: osso abook initialization failed!";
            qWarning().noquote() << "CAddressBook: " + error;
        }
        Q_EMIT initialized(ok, error);
    });
    connect(m_pWorker, &CAddressBookWorker::loaded, this, &CAddressBook::contactsLoaded);
    m_pThread->start();
}

CAddressBook::~CAddressBook()
{
    stopThread();
}

void CAddressBook::initialize()
{
    Q_EMIT signalOpen();
}

void CAddressBook::requestContacts()
{
    Q_EMIT signalLoad();
}

void CAddressBook::onAppQuit()
{
    stopThread();
}

void CAddressBook::stopThread()
{
    if (!m_pThread) {
        return;
    }
    m_pThread->quit();
    // A libebook call stuck on a dead bus must not hold up the exit for long.
    if (m_pThread->wait(3000)) {
        delete m_pThread;
    } else {
        qWarning() << "CAddressBook: address-book thread still busy at exit";
    }
    m_pThread = nullptr;
}

}  // namespace Dravo

#include "caddressbook.moc"
