// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctexts.h"

#include <QCoreApplication>
#include <QSet>

// Each text is translated once, on first use, and lives until process exit: the
// translator must be installed before the first screen is built. Every text also
// enters the table that all() returns.
#define TARVIK_TEXT(accessor, source)                                                       \
    const QString& CTexts::accessor()                                                       \
    {                                                                                       \
        static const QString s_str = QCoreApplication::translate(CTexts::kContext, source); \
        return s_str;                                                                       \
    }                                                                                       \
    [[maybe_unused]] static const bool s_bListed_##accessor =                               \
        CTexts::list({#accessor, source, &CTexts::accessor});

namespace Dravo {

const char* const CTexts::kContext = "CTexts";

bool CTexts::list(const SEntry& entry)
{
    entries().append(entry);
    return true;
}

QList<CTexts::SEntry>& CTexts::entries()
{
    static QList<SEntry> s_lst;
    return s_lst;
}

const QList<CTexts::SEntry>& CTexts::all()
{
    return entries();
}

QString CTexts::titleWithCount(const QString& strTitle, int iCount)
{
    //: Screen title with the number of messages in the folder, e.g. "tarvik - Inbox (5)".
    return QCoreApplication::translate("CTexts", "%1 (%n)", nullptr, iCount).arg(strTitle);
}

QString CTexts::andMore(int iCount)
{
    //: Ends a list of sender names: "Aino, Mika, Olli and 2 more".
    return QCoreApplication::translate("CTexts", " and %n more", nullptr, iCount);
}

QString CTexts::senderList(const QStringList& lstScreenNames)
{
    QStringList lstNames;
    QSet<QString> seen;
    for (const QString& strName : lstScreenNames) {
        const QString strTrimmed = strName.trimmed();
        if (strTrimmed.isEmpty() || seen.contains(strTrimmed))
            continue;
        seen.insert(strTrimmed);
        lstNames << strTrimmed.toHtmlEscaped();
    }
    if (lstNames.size() <= MAX_SENDER_NAMES)
        return lstNames.join(QStringLiteral(", "));
    const int iMore = int(lstNames.size()) - MAX_SENDER_NAMES;
    return lstNames.mid(0, MAX_SENDER_NAMES).join(QStringLiteral(", ")) +
           andMore(iMore).toHtmlEscaped();
}

TARVIK_TEXT(appName, QT_TRANSLATE_NOOP("CTexts", "tarvik"))
TARVIK_TEXT(sendATarvik, QT_TRANSLATE_NOOP("CTexts", "Send a tarvik"))
TARVIK_TEXT(inbox, QT_TRANSLATE_NOOP("CTexts", "Inbox"))
TARVIK_TEXT(outbox, QT_TRANSLATE_NOOP("CTexts", "Outbox"))
TARVIK_TEXT(sentTarviks, QT_TRANSLATE_NOOP("CTexts", "Sent tarviks"))
TARVIK_TEXT(settings, QT_TRANSLATE_NOOP("CTexts", "Settings"))
TARVIK_TEXT(feedback, QT_TRANSLATE_NOOP("CTexts", "Feedback"))
TARVIK_TEXT(aboutTarvik, QT_TRANSLATE_NOOP("CTexts", "About tarvik"))

TARVIK_TEXT(versionPrefix, QT_TRANSLATE_NOOP("CTexts", "tarvik v "))
TARVIK_TEXT(versionSuffix, QT_TRANSLATE_NOOP("CTexts", " by QEL Communications"))
TARVIK_TEXT(emailPrefix, QT_TRANSLATE_NOOP("CTexts", "E-mail: "))
TARVIK_TEXT(
    tagline,
    QT_TRANSLATE_NOOP(
        "CTexts",
        "When you want me to find you, or I want you to find me, it needs to be simple, safe "
        "and spot-on-accurate. Simply send a tarvik and connect."))

TARVIK_TEXT(back, QT_TRANSLATE_NOOP("CTexts", "Back"))
TARVIK_TEXT(open, QT_TRANSLATE_NOOP("CTexts", "Open"))
TARVIK_TEXT(deleteText, QT_TRANSLATE_NOOP("CTexts", "Delete"))
TARVIK_TEXT(deleteAll, QT_TRANSLATE_NOOP("CTexts", "Delete All"))
TARVIK_TEXT(sendReceive, QT_TRANSLATE_NOOP("CTexts", "Send/Receive"))
TARVIK_TEXT(send, QT_TRANSLATE_NOOP("CTexts", "Send"))
TARVIK_TEXT(reply, QT_TRANSLATE_NOOP("CTexts", "Reply"))
TARVIK_TEXT(forward, QT_TRANSLATE_NOOP("CTexts", "Forward"))
TARVIK_TEXT(map, QT_TRANSLATE_NOOP("CTexts", "Map"))
TARVIK_TEXT(route, QT_TRANSLATE_NOOP("CTexts", "Route"))
TARVIK_TEXT(contacts, QT_TRANSLATE_NOOP("CTexts", "Contacts"))
TARVIK_TEXT(continueText, QT_TRANSLATE_NOOP("CTexts", "Continue"))
TARVIK_TEXT(pageUp, QT_TRANSLATE_NOOP("CTexts", "Page\nUp"))
TARVIK_TEXT(pageDown, QT_TRANSLATE_NOOP("CTexts", "Page\nDown"))
TARVIK_TEXT(viewRoute, QT_TRANSLATE_NOOP("CTexts", "View\nroute"))
TARVIK_TEXT(showOnMap, QT_TRANSLATE_NOOP("CTexts", "Show\non map"))

TARVIK_TEXT(newTarviksReceived, QT_TRANSLATE_NOOP("CTexts", "New tarviks received"))
TARVIK_TEXT(sending, QT_TRANSLATE_NOOP("CTexts", "Sending..."))
TARVIK_TEXT(sendingFailed, QT_TRANSLATE_NOOP("CTexts", "Sending failed"))
TARVIK_TEXT(sendingReceivingTarviks, QT_TRANSLATE_NOOP("CTexts", "Sending/receiving tarviks..."))
TARVIK_TEXT(requestingLocation, QT_TRANSLATE_NOOP("CTexts", "Requesting your current location..."))
TARVIK_TEXT(unableToDetermineLocation,
            QT_TRANSLATE_NOOP("CTexts", "Unable to determine your current location"))
TARVIK_TEXT(routeCantBeCalculated, QT_TRANSLATE_NOOP("CTexts", "Route can't be calculated"))
TARVIK_TEXT(exitOfflineMode, QT_TRANSLATE_NOOP("CTexts", "Exit offline mode?"))

TARVIK_TEXT(noTarviks, QT_TRANSLATE_NOOP("CTexts", "No tarviks"))
TARVIK_TEXT(fromLabel, QT_TRANSLATE_NOOP("CTexts", "From:"))
TARVIK_TEXT(toLabel, QT_TRANSLATE_NOOP("CTexts", "To:"))
TARVIK_TEXT(subjectLabel, QT_TRANSLATE_NOOP("CTexts", "Subject:"))
TARVIK_TEXT(messageLabel, QT_TRANSLATE_NOOP("CTexts", "Message"))
TARVIK_TEXT(dateLabel, QT_TRANSLATE_NOOP("CTexts", "Date:"))
TARVIK_TEXT(sentLabel, QT_TRANSLATE_NOOP("CTexts", "Sent:"))
TARVIK_TEXT(replyPrefix, QT_TRANSLATE_NOOP("CTexts", "RE:"))
TARVIK_TEXT(forwardPrefix, QT_TRANSLATE_NOOP("CTexts", "FW:"))
TARVIK_TEXT(chooseAContact, QT_TRANSLATE_NOOP("CTexts", "Choose a contact"))
TARVIK_TEXT(inboxTitle, QT_TRANSLATE_NOOP("CTexts", "tarvik - Inbox"))
TARVIK_TEXT(outboxTitle, QT_TRANSLATE_NOOP("CTexts", "tarvik - Outbox"))
TARVIK_TEXT(sentTitle, QT_TRANSLATE_NOOP("CTexts", "tarvik - Sent"))
TARVIK_TEXT(messageTitle, QT_TRANSLATE_NOOP("CTexts", "tarvik - Message"))
TARVIK_TEXT(emptyField, QT_TRANSLATE_NOOP("CTexts", "< empty >"))
TARVIK_TEXT(originalMessage,
            QT_TRANSLATE_NOOP("CTexts",
                              "-------------------- Original message --------------------"))
TARVIK_TEXT(openInMapApplication, QT_TRANSLATE_NOOP("CTexts", "Open in map application"))
TARVIK_TEXT(copyCoordinates, QT_TRANSLATE_NOOP("CTexts", "Copy coordinates"))
TARVIK_TEXT(searchContacts, QT_TRANSLATE_NOOP("CTexts", "Search"))
TARVIK_TEXT(loadingContacts, QT_TRANSLATE_NOOP("CTexts", "Loading contacts..."))
TARVIK_TEXT(addressBookUnavailable,
            QT_TRANSLATE_NOOP("CTexts", "The address book is not available."))
TARVIK_TEXT(noContacts, QT_TRANSLATE_NOOP("CTexts", "No contacts"))
TARVIK_TEXT(chooseAnAddress, QT_TRANSLATE_NOOP("CTexts", "Choose a phone number or e-mail address"))
TARVIK_TEXT(phoneLabel, QT_TRANSLATE_NOOP("CTexts", "Phone"))
TARVIK_TEXT(emailLabel, QT_TRANSLATE_NOOP("CTexts", "E-mail"))

TARVIK_TEXT(registrationPrompt,
            QT_TRANSLATE_NOOP(
                "CTexts",
                "Please enter your phone number and screen name to proceed with registration."))
TARVIK_TEXT(reregistrationPrompt,
            QT_TRANSLATE_NOOP("CTexts",
                              "Please change your phone number and/or screen name and proceed "
                              "with re-registration."))
TARVIK_TEXT(phoneNumberQuestion, QT_TRANSLATE_NOOP("CTexts", "What's your phone number?"))
TARVIK_TEXT(screenNameQuestion, QT_TRANSLATE_NOOP("CTexts", "What's your screen name?"))
TARVIK_TEXT(internationalFormatHint,
            QT_TRANSLATE_NOOP(
                "CTexts",
                "Numbers outside the US must use international number format (country code at the "
                "beginning)."))
TARVIK_TEXT(registrationWait,
            QT_TRANSLATE_NOOP(
                "CTexts",
                "Please wait while your registration is completed.\nIt may take up to a minute."))
TARVIK_TEXT(registrationFailed, QT_TRANSLATE_NOOP("CTexts", "Registration failed"))

TARVIK_TEXT(mapUnavailable,
            QT_TRANSLATE_NOOP("CTexts",
                              "The map cannot be shown: its module is missing or broken."))
TARVIK_TEXT(waitingForConnection,
            QT_TRANSLATE_NOOP("CTexts", "Waiting for an Internet connection..."))
TARVIK_TEXT(panNorth, QT_TRANSLATE_NOOP("CTexts", "Pan north"))
TARVIK_TEXT(panEast, QT_TRANSLATE_NOOP("CTexts", "Pan east"))
TARVIK_TEXT(panSouth, QT_TRANSLATE_NOOP("CTexts", "Pan south"))
TARVIK_TEXT(panWest, QT_TRANSLATE_NOOP("CTexts", "Pan west"))
TARVIK_TEXT(zoomIn, QT_TRANSLATE_NOOP("CTexts", "Zoom in"))
TARVIK_TEXT(zoomOut, QT_TRANSLATE_NOOP("CTexts", "Zoom out"))
TARVIK_TEXT(routeSummary, QT_TRANSLATE_NOOP("CTexts", "Route: %1, about %2"))
TARVIK_TEXT(distanceMetres, QT_TRANSLATE_NOOP("CTexts", "%1 m"))
TARVIK_TEXT(distanceKilometres, QT_TRANSLATE_NOOP("CTexts", "%1 km"))
TARVIK_TEXT(durationMinutes, QT_TRANSLATE_NOOP("CTexts", "%1 min"))
TARVIK_TEXT(durationHours, QT_TRANSLATE_NOOP("CTexts", "%1 h %2 min"))

}  // namespace Dravo
