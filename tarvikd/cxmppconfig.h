// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>

namespace Dravo {

// Where the service is: read from ~/.config/tarvik/tarvikd.conf (key=value lines, "#"
// comments), each key overridable by the environment variable of the same name in upper
// case with a TARVIK_ prefix (xmpp_domain -> TARVIK_XMPP_DOMAIN).
class CXmppConfig
{
public:
    QString m_strDomain;  // xmpp_domain: the service domain; accounts are <digits>@domain
    QString m_strHost;    // xmpp_server "host:port"; empty: found from the domain
    quint16 m_uPort = 0;
    QString m_strCaFile;  // xmpp_ca_file: PEM trusted in addition to the system's

    static QString configDirectory();  // $XDG_CONFIG_HOME/tarvik
    static QString configFile();

    // Reads the file (when there is one) and the environment. Problems that leave a
    // setting unusable are described in pProblems; the setting keeps its default.
    void load(QStringList* pProblems);
    // Applies one "host:port" value; false when it is not one.
    bool setServer(const QString& value);
};

}  // namespace Dravo
