// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace Dravo {

// The fixed English texts the user sees, one read-only accessor per text. Every
// screen takes its texts from here so wording stays in one place.
//
// The texts go through Qt's translation system (context "CTexts") the first time
// they are asked for, so the translator is installed before any screen exists.
//
// To add a text: declare an accessor below and define it in ctexts.cpp with
// TARVIK_TEXT(accessor, QT_TRANSLATE_NOOP("CTexts", "The text")), then refresh the
// translation sources (the update_translations build target) and translate it.
class CTexts
{
public:
    CTexts() = delete;

    static const char* const kContext;  // "CTexts"

    // One fixed text: its accessor's name, its English source and the accessor.
    struct SEntry
    {
        const char* pName;
        const char* pSource;
        const QString& (*pAccessor)();
    };
    // Every fixed text, in the order of ctexts.cpp.
    static const QList<SEntry>& all();
    // Adds a text to all(); called by the definitions in ctexts.cpp.
    static bool list(const SEntry& entry);

    // Texts with a count, translated on every call (plural forms).
    static QString titleWithCount(const QString& strTitle, int iCount);  // "tarvik - Inbox (5)"
    static QString andMore(int iCount);  // " and 2 more" (starts with a blank)
    // The body of a new-message notification: "A, B, C and 2 more", distinct names in
    // order, markup escaped for notification servers that render it.
    static QString senderList(const QStringList& lstScreenNames);
    static const int MAX_SENDER_NAMES = 3;

    // Application and main menu
    static const QString& appName();
    static const QString& sendATarvik();
    static const QString& inbox();
    static const QString& outbox();
    static const QString& sentTarviks();
    static const QString& settings();
    static const QString& feedback();
    static const QString& aboutTarvik();

    // About screen
    static const QString& versionPrefix();  // "tarvik v " (ends in a blank)
    static const QString& versionSuffix();  // " by QEL Communications" (starts with a blank)
    static const QString& emailPrefix();    // "E-mail: "
    static const QString& tagline();

    // Buttons
    static const QString& back();
    static const QString& open();
    static const QString& deleteText();
    static const QString& deleteAll();
    static const QString& sendReceive();
    static const QString& send();
    static const QString& reply();
    static const QString& forward();
    static const QString& map();
    static const QString& route();
    static const QString& contacts();
    static const QString& continueText();
    static const QString& pageUp();
    static const QString& pageDown();
    static const QString& viewRoute();
    static const QString& showOnMap();

    // Popups
    static const QString& newTarviksReceived();
    static const QString& sending();
    static const QString& sendingFailed();
    static const QString& sendingReceivingTarviks();
    static const QString& requestingLocation();
    static const QString& unableToDetermineLocation();
    static const QString& routeCantBeCalculated();
    static const QString& exitOfflineMode();

    // Folder lists and message view
    static const QString& noTarviks();
    static const QString& fromLabel();
    static const QString& toLabel();
    static const QString& subjectLabel();
    static const QString& messageLabel();  // names the message body for assistive tools
    static const QString& dateLabel();
    static const QString& sentLabel();
    static const QString& replyPrefix();    // "RE:"
    static const QString& forwardPrefix();  // "FW:"
    static const QString& chooseAContact();
    static const QString& inboxTitle();    // "tarvik - Inbox"
    static const QString& outboxTitle();   // "tarvik - Outbox"
    static const QString& sentTitle();     // "tarvik - Sent"
    static const QString& messageTitle();  // "tarvik - Message"
    static const QString& emptyField();    // "< empty >"
    static const QString& originalMessage();
    static const QString& openInMapApplication();
    static const QString& copyCoordinates();

    // Contact chooser
    static const QString& searchContacts();
    static const QString& loadingContacts();
    static const QString& addressBookUnavailable();
    static const QString& noContacts();
    static const QString& chooseAnAddress();
    static const QString& phoneLabel();
    static const QString& emailLabel();

    // Registration
    static const QString& registrationPrompt();
    static const QString& reregistrationPrompt();
    static const QString& phoneNumberQuestion();
    static const QString& screenNameQuestion();
    static const QString& internationalFormatHint();
    static const QString& registrationWait();
    static const QString& registrationFailed();

    // Map screens.
    static const QString& mapUnavailable();
    static const QString& waitingForConnection();
    static const QString& panNorth();
    static const QString& panEast();
    static const QString& panSouth();
    static const QString& panWest();
    static const QString& zoomIn();
    static const QString& zoomOut();
    static const QString& routeSummary();        // "Route: %1, about %2" (distance, duration)
    static const QString& distanceMetres();      // "%1 m"
    static const QString& distanceKilometres();  // "%1 km"
    static const QString& durationMinutes();     // "%1 min"
    static const QString& durationHours();       // "%1 h %2 min" (hours, minutes)

private:
    static QList<SEntry>& entries();
};

}  // namespace Dravo
