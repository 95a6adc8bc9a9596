// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>

namespace Dravo {

// Maps what the user types as a recipient to an XMPP address on the service domain, and an
// incoming sender's address back to what the inbox shows.
class CXmppAddress
{
public:
    // Longest address accepted as it is, in UTF-8 bytes (local part, domain and resource).
    static constexpr qsizetype maxJidBytes = 3071;

    // The account name of a phone number: its digits without the "+", or empty when
    // `number` is not a phone number. A leading "00" counts as "+"; spaces and dashes are
    // ignored; 3 to 20 digits.
    static QString accountForNumber(const QString& number);

    // The address to send to: "<digits>@domain" for a phone number, an address with "@"
    // trimmed but otherwise as given; empty when the recipient is neither.
    static QString jidForRecipient(const QString& recipient, const QString& domain);

    // The recipients of a message's comma-separated list, trimmed, empty entries left out.
    static QStringList splitRecipients(const QString& to);

    // What the inbox shows as the sender: "+<digits>" for a number account on our own
    // domain, otherwise the bare address with the domain lower-cased.
    static QString senderForJid(const QString& bareJid, const QString& domain);

    // The address without its resource ("/..." and after).
    static QString bareJid(const QString& fullJid);
};

}  // namespace Dravo
