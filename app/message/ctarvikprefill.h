// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include "ctarvik.h"

namespace Dravo {

// The recipient, subject and body with which an answer or a forward of a message opens:
// the original message quoted below a separator, with its sender, date, recipient and
// subject.
class CTarvikPrefill
{
public:
    // strOwnScreenName: the user's screen name from the settings. strShown: the sender
    // (received message) or recipient (sent message) as the message view shows it.
    static CTarvikPrefill reply(const CTarvik& tarvik, const QString& strOwnScreenName,
                                const QString& strShown);
    static CTarvikPrefill forward(const CTarvik& tarvik, bool bSent,
                                  const QString& strOwnScreenName, const QString& strShown);

    // The sender or recipient line of the message view: for a sent message the
    // recipient; for a received one the screen name with the number in brackets, or
    // the bare number when there is no screen name.
    static QString shownParty(const CTarvik& tarvik, bool bSent);

    QString m_strTo;
    QString m_strSubject;
    QString m_strNote;

private:
    static QString quote(const CTarvik& tarvik, const QString& strFromLine,
                         const QString& strToLine);
};

}  // namespace Dravo
