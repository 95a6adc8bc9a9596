// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cpasswordstore.h"

// libsecret's headers use "signals" as a field name, which Qt's keywords would break.
#undef signals
#include <libsecret/secret.h>
#define signals Q_SIGNALS

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDBusConnectionInterface>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QLibrary>
#include <QRandomGenerator>

#include "cxmppconfig.h"

namespace Dravo {

namespace {

const SecretSchema* schema()
{
    static const SecretSchema kSchema = {
        "org.tarvik.XmppAccount",
        SECRET_SCHEMA_NONE,
        {{"jid", SECRET_SCHEMA_ATTRIBUTE_STRING}, {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}},
        0,
        nullptr,
        nullptr,
        nullptr,
        nullptr,
        nullptr,
        nullptr,
        nullptr};
    return &kSchema;
}

// libsecret and the GIO stack under it are loaded only when a secret service runs: a
// daemon that idles all day should not carry them otherwise.
struct CSecretApi
{
    using Lookup = gchar* (*)(const SecretSchema*, GCancellable*, GError**, ...);
    using Store = gboolean (*)(const SecretSchema*, const gchar*, const gchar*, const gchar*,
                               GCancellable*, GError**, ...);
    using Clear = gboolean (*)(const SecretSchema*, GCancellable*, GError**, ...);
    using Free = void (*)(gchar*);

    Lookup lookup = nullptr;
    Store store = nullptr;
    Clear clear = nullptr;
    Free free = nullptr;

    static const CSecretApi* get()
    {
        static const CSecretApi* api = []() -> const CSecretApi* {
            static QLibrary library(QStringLiteral("secret-1"), 0);
            static CSecretApi resolved;
            if (!library.load()) {
                qWarning().noquote()
                    << "tarvikd: libsecret is not installed: " + library.errorString();
                return nullptr;
            }
            resolved.lookup =
                reinterpret_cast<Lookup>(library.resolve("secret_password_lookup_sync"));
            resolved.store = reinterpret_cast<Store>(library.resolve("secret_password_store_sync"));
            resolved.clear = reinterpret_cast<Clear>(library.resolve("secret_password_clear_sync"));
            resolved.free = reinterpret_cast<Free>(library.resolve("secret_password_free"));
            if (!resolved.lookup || !resolved.store || !resolved.clear || !resolved.free) {
                return nullptr;
            }
            return &resolved;
        }();
        return api;
    }
};

QString takeError(GError*& error)
{
    const QString text = error ? QString::fromUtf8(error->message) : QString();
    g_clear_error(&error);
    return text;
}

}  // namespace

CPasswordStore::CPasswordStore(const QDBusConnection& bus) : m_bus(bus) {}

QString CPasswordStore::passwordFile()
{
    return CXmppConfig::configDirectory() + QStringLiteral("/tarvikd-accounts");
}

QString CPasswordStore::newPassword()
{
    quint32 words[6];
    QRandomGenerator::system()->fillRange(words);
    return QString::fromLatin1(
        QByteArray(reinterpret_cast<const char*>(words), sizeof words)
            .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}

bool CPasswordStore::secretServiceRuns() const
{
    // Only a service that already runs: activating one could stall for the bus time-out.
    return m_bus.isConnected() && m_bus.interface() &&
           m_bus.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.secrets")) &&
           CSecretApi::get();
}

QString CPasswordStore::password(const QString& jid) const
{
    if (secretServiceRuns()) {
        GError* error = nullptr;
        gchar* secret = CSecretApi::get()->lookup(schema(), nullptr, &error, "jid",
                                                  jid.toUtf8().constData(), nullptr);
        if (secret) {
            const QString result = QString::fromUtf8(secret);
            CSecretApi::get()->free(secret);
            return result;
        }
        if (error) {
            qWarning().noquote() << "tarvikd: the secret service did not answer: " +
                                        takeError(error);
        }
    }
    return fromFile(jid);
}

bool CPasswordStore::store(const QString& jid, const QString& password, QString* pError)
{
    if (secretServiceRuns()) {
        GError* error = nullptr;
        const QByteArray label = QStringLiteral("tarvik account %1").arg(jid).toUtf8();
        if (CSecretApi::get()->store(schema(), SECRET_COLLECTION_DEFAULT, label.constData(),
                                     password.toUtf8().constData(), nullptr, &error, "jid",
                                     jid.toUtf8().constData(), nullptr)) {
            return true;
        }
        qWarning().noquote() << "tarvikd: the secret service refused the password (" +
                                    takeError(error) + "); keeping it in " + passwordFile();
    }
    return writeFile(jid, password, pError);
}

void CPasswordStore::remove(const QString& jid)
{
    if (secretServiceRuns()) {
        GError* error = nullptr;
        CSecretApi::get()->clear(schema(), nullptr, &error, "jid", jid.toUtf8().constData(),
                                 nullptr);
        g_clear_error(&error);
    }
    if (!fromFile(jid).isEmpty()) {
        writeFile(jid, QString(), nullptr);
    }
}

QString CPasswordStore::fromFile(const QString& jid) const
{
    QFile file(passwordFile());
    if (!file.open(QIODevice::ReadOnly)) {
        return QString();
    }
    const QByteArray key = jid.toUtf8() + ' ';
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (line.startsWith(key)) {
            return QString::fromUtf8(line.mid(key.size()));
        }
    }
    return QString();
}

bool CPasswordStore::writeFile(const QString& jid, const QString& password, QString* pError)
{
    // One "jid password" line per account; an empty password removes the line.
    QByteArray content;
    QFile current(passwordFile());
    if (current.open(QIODevice::ReadOnly)) {
        const QByteArray key = jid.toUtf8() + ' ';
        while (!current.atEnd()) {
            const QByteArray line = current.readLine().trimmed();
            if (!line.isEmpty() && !line.startsWith(key)) {
                content += line + '\n';
            }
        }
        current.close();
    }
    if (!password.isEmpty()) {
        content += jid.toUtf8() + ' ' + password.toUtf8() + '\n';
    }
    QDir().mkpath(CXmppConfig::configDirectory());
    // Written under a temporary name made with mode 0600 from the start, then renamed:
    // the password is never readable by others, not even for a moment.
    const QByteArray path = QFile::encodeName(passwordFile());
    const QByteArray temporary = path + ".new";
    const int fd = ::open(temporary.constData(),
                          O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    bool ok = fd >= 0 && ::fchmod(fd, S_IRUSR | S_IWUSR) == 0 &&
              ::write(fd, content.constData(), size_t(content.size())) == content.size() &&
              ::fsync(fd) == 0;
    if (fd >= 0) {
        ok = ::close(fd) == 0 && ok;
    }
    ok = ok && ::rename(temporary.constData(), path.constData()) == 0;
    if (!ok) {
        ::unlink(temporary.constData());
        if (pError) {
            *pError = QStringLiteral("cannot write %1").arg(passwordFile());
        }
    }
    return ok;
}

}  // namespace Dravo
