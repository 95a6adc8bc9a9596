// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cxmppconfig.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStandardPaths>
#include <QTextStream>

namespace Dravo {

namespace {

const char* const kKeys[] = {"xmpp_domain", "xmpp_server", "xmpp_ca_file"};

}  // namespace

QString CXmppConfig::configDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/tarvik");
}

QString CXmppConfig::configFile()
{
    return configDirectory() + QStringLiteral("/tarvikd.conf");
}

bool CXmppConfig::setServer(const QString& value)
{
    const int colon = value.lastIndexOf(QLatin1Char(':'));
    if (colon <= 0) {
        return false;
    }
    bool ok = false;
    const uint port = value.mid(colon + 1).toUInt(&ok);
    if (!ok || port == 0 || port > 65535) {
        return false;
    }
    QString host = value.left(colon).trimmed();
    if (host.startsWith(QLatin1Char('[')) && host.endsWith(QLatin1Char(']'))) {
        host = host.mid(1, host.size() - 2);  // [::1]:5222
    }
    if (host.isEmpty() || host.contains(QLatin1Char(' '))) {
        return false;
    }
    m_strHost = host;
    m_uPort = quint16(port);
    return true;
}

void CXmppConfig::load(QStringList* pProblems)
{
    QHash<QString, QString> values;
    QFile file(configFile());
    if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        QTextStream in(&file);
        int lineNumber = 0;
        while (!in.atEnd()) {
            const QString line = in.readLine().trimmed();
            ++lineNumber;
            if (line.isEmpty() || line.startsWith(QLatin1Char('#'))) {
                continue;
            }
            const int equals = line.indexOf(QLatin1Char('='));
            const QString key = equals > 0 ? line.left(equals).trimmed() : QString();
            if (key.isEmpty() || std::find(std::begin(kKeys), std::end(kKeys), key.toStdString()) ==
                                     std::end(kKeys)) {
                if (pProblems) {
                    *pProblems << QStringLiteral("%1:%2: not a known key=value line, ignored")
                                      .arg(configFile())
                                      .arg(lineNumber);
                }
                continue;
            }
            values.insert(key, line.mid(equals + 1).trimmed());
        }
    }
    for (const char* key : kKeys) {
        const QByteArray variable = "TARVIK_" + QByteArray(key).toUpper();
        if (qEnvironmentVariableIsSet(variable.constData())) {
            values.insert(QLatin1String(key), qEnvironmentVariable(variable.constData()).trimmed());
        }
    }
    m_strDomain = values.value(QStringLiteral("xmpp_domain")).toLower();
    if (m_strDomain.contains(QLatin1Char('@')) || m_strDomain.contains(QLatin1Char('/')) ||
        m_strDomain.contains(QLatin1Char(' '))) {
        if (pProblems) {
            *pProblems << QStringLiteral("xmpp_domain \"%1\" is not a domain").arg(m_strDomain);
        }
        m_strDomain.clear();
    }
    const QString server = values.value(QStringLiteral("xmpp_server"));
    if (!server.isEmpty() && !setServer(server) && pProblems) {
        *pProblems << QStringLiteral(
                          "xmpp_server \"%1\" is not host:port; the server is found "
                          "from the domain")
                          .arg(server);
    }
    const QString caFile = values.value(QStringLiteral("xmpp_ca_file"));
    if (!caFile.isEmpty()) {
        if (QFileInfo(caFile).isReadable()) {
            m_strCaFile = caFile;
        } else if (pProblems) {
            *pProblems << QStringLiteral(
                              "xmpp_ca_file %1 cannot be read; only the system's "
                              "certificates are trusted")
                              .arg(caFile);
        }
    }
}

}  // namespace Dravo
