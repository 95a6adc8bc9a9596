// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QString>

#include "ctarvik.h"

namespace Dravo {

// A message as an XMPP <message> stanza and back. The stanza carries the message three
// ways: a body any chat client shows (title, note and a geo: URI), the position as XEP-0080
// geoloc, and every field in a <tarvik/> element for our own clients.
class CStanzaCodec
{
public:
    // Namespace of the <tarvik/> element.
    static const char* const tarvikNamespace;
    // Longer incoming stanzas (UTF-8 bytes of their text) are not read.
    static constexpr qsizetype maxStanzaBytes = 65536;

    // One incoming stanza read.
    struct CIncoming
    {
        bool m_bTarvik = false;
        QString m_strReason;  // why it is not a message, for the log
        CTarvik m_tarvik;     // the inbox message: guid = m_strId, flag 1 (unread)
        QString m_strId;      // the stanza's id, or a content id when it has none
    };

    // The message's stanza id: the guid when it has one, else derived from its content, so
    // the same outbox message gets the same id however often it is rewritten or sent.
    static QString messageId(const CTarvik& tarvik);

    // "geo:LAT,LON" with at most 7 decimals, no trailing zeros, no "-0".
    static QString geoUri(double latitude, double longitude);

    // The complete <message/> for one recipient. The IMEI, the sender and local fields
    // are not sent.
    static QString toStanza(const CTarvik& tarvik, const QString& toJid, const QString& id);

    // Reads one <message/> stanza's text. `domain` is the service domain (number accounts
    // become "+<digits>" senders), `ownAddress` the recipient when the stanza names none,
    // `now` the time when it carries none.
    static CIncoming fromStanza(const QString& xml, const QString& domain,
                                const QString& ownAddress, const QDateTime& now);
};

}  // namespace Dravo
