// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cxmppaddress.h"

namespace Dravo {

namespace {

constexpr qsizetype s_iMinDigits = 3;
constexpr qsizetype s_iMaxDigits = 20;

// Only ASCII digits: other scripts' digits would make a different account name.
bool isAsciiDigits(QStringView text)
{
    if (text.isEmpty()) {
        return false;
    }
    for (const QChar c : text) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9')) {
            return false;
        }
    }
    return true;
}

// Whitespace and control characters have no place in an address; the XML writer would
// drop the latter and so send to another address than the one checked.
bool hasSpaceOrControl(QStringView text)
{
    for (const QChar c : text) {
        if (c.isSpace() || c.category() == QChar::Other_Control) {
            return true;
        }
    }
    return false;
}

}  // namespace

QString CXmppAddress::accountForNumber(const QString& number)
{
    QString digits;
    bool bPlus = false;
    for (const QChar c : number) {
        if (c.isSpace() || c == QLatin1Char('-')) {
            continue;
        }
        if (c == QLatin1Char('+') && !bPlus && digits.isEmpty()) {
            bPlus = true;
            continue;
        }
        if (c < QLatin1Char('0') || c > QLatin1Char('9')) {
            return {};
        }
        digits += c;
    }
    if (!bPlus && digits.startsWith(QLatin1String("00"))) {
        digits.remove(0, 2);
    }
    if (digits.size() < s_iMinDigits || digits.size() > s_iMaxDigits) {
        return {};
    }
    return digits;
}

QString CXmppAddress::jidForRecipient(const QString& recipient, const QString& domain)
{
    const QString jid = recipient.trimmed();
    if (jid.contains(QLatin1Char('@'))) {
        // local@domain, optionally /resource; the resource may hold anything but whitespace.
        const qsizetype iAt = jid.indexOf(QLatin1Char('@'));
        qsizetype iSlash = jid.indexOf(QLatin1Char('/'));
        if (iSlash < 0) {
            iSlash = jid.size();
        }
        const QStringView domainPart = QStringView(jid).mid(iAt + 1, iSlash - iAt - 1);
        if (iAt == 0 || iSlash < iAt || domainPart.isEmpty() ||
            domainPart.contains(QLatin1Char('@')) || hasSpaceOrControl(jid) ||
            jid.toUtf8().size() > maxJidBytes) {
            return {};
        }
        return jid;
    }
    const QString account = accountForNumber(jid);
    const QString server = domain.trimmed();
    if (account.isEmpty() || server.isEmpty()) {
        return {};
    }
    return account + QLatin1Char('@') + server;
}

QStringList CXmppAddress::splitRecipients(const QString& to)
{
    QStringList recipients;
    for (const QString& part : to.split(QLatin1Char(','))) {
        const QString recipient = part.trimmed();
        if (!recipient.isEmpty()) {
            recipients << recipient;
        }
    }
    return recipients;
}

QString CXmppAddress::senderForJid(const QString& bareJid, const QString& domain)
{
    const QString jid = CXmppAddress::bareJid(bareJid);
    const qsizetype iAt = jid.indexOf(QLatin1Char('@'));
    if (iAt < 0) {
        return jid.toLower();
    }
    const QString local = jid.left(iAt);
    const QString server = jid.mid(iAt + 1);
    if (isAsciiDigits(local) && server.compare(domain, Qt::CaseInsensitive) == 0) {
        return QLatin1Char('+') + local;
    }
    return local + QLatin1Char('@') + server.toLower();
}

QString CXmppAddress::bareJid(const QString& fullJid)
{
    return fullJid.section(QLatin1Char('/'), 0, 0);
}

}  // namespace Dravo
