#include "ctexts.h"

// Each text is built once, on first use, and lives until process exit.
#define TARVIK_TEXT(accessor, literal)                        \
    const QString& CTexts::accessor()                         \
    {                                                         \
        static const QString s_str = QStringLiteral(literal); \
        return s_str;                                         \
    }

namespace Dravo {

TARVIK_TEXT(appName, "tarvik")
TARVIK_TEXT(sendATarvik, "Send a tarvik")
TARVIK_TEXT(inbox, "Inbox")
TARVIK_TEXT(outbox, "Outbox")
TARVIK_TEXT(sentTarviks, "Sent tarviks")
TARVIK_TEXT(settings, "Settings")
TARVIK_TEXT(feedback, "Feedback")
TARVIK_TEXT(aboutTarvik, "About tarvik")

TARVIK_TEXT(versionPrefix, "tarvik v ")
TARVIK_TEXT(versionSuffix, " by QEL Communications")
TARVIK_TEXT(emailPrefix, "E-mail: ")
TARVIK_TEXT(tagline,
            "When you want me to find you, or I want you to find me, it needs to be simple, safe "
            "and spot-on-accurate. Simply send a tarvik and connect.")

TARVIK_TEXT(back, "Back")
TARVIK_TEXT(open, "Open")
TARVIK_TEXT(deleteText, "Delete")
TARVIK_TEXT(deleteAll, "Delete All")
TARVIK_TEXT(sendReceive, "Send/Receive")
TARVIK_TEXT(send, "Send")
TARVIK_TEXT(reply, "Reply")
TARVIK_TEXT(forward, "Forward")
TARVIK_TEXT(map, "Map")
TARVIK_TEXT(route, "Route")
TARVIK_TEXT(contacts, "Contacts")
TARVIK_TEXT(continueText, "Continue")
TARVIK_TEXT(pageUp, "Page\nUp")
TARVIK_TEXT(pageDown, "Page\nDown")
TARVIK_TEXT(viewRoute, "View\nroute")
TARVIK_TEXT(showOnMap, "Show\non map")

TARVIK_TEXT(newTarviksReceived, "New tarviks received")
TARVIK_TEXT(sending, "Sending...")
TARVIK_TEXT(sendingFailed, "Sending failed")
TARVIK_TEXT(sendingReceivingTarviks, "Sending/receiving tarviks...")
TARVIK_TEXT(requestingLocation, "Requesting your current location...")
TARVIK_TEXT(unableToDetermineLocation, "Unable to determine your current location")
TARVIK_TEXT(routeCantBeCalculated, "Route can't be calculated")
TARVIK_TEXT(exitOfflineMode, "Exit offline mode?")

TARVIK_TEXT(noTarviks, "No tarviks")
TARVIK_TEXT(fromLabel, "From:")
TARVIK_TEXT(toLabel, "To:")
TARVIK_TEXT(subjectLabel, "Subject:")
TARVIK_TEXT(messageLabel, "Message")
TARVIK_TEXT(dateLabel, "Date:")
TARVIK_TEXT(sentLabel, "Sent:")
TARVIK_TEXT(replyPrefix, "RE:")
TARVIK_TEXT(forwardPrefix, "FW:")
TARVIK_TEXT(chooseAContact, "Choose a contact")
TARVIK_TEXT(inboxTitle, "tarvik - Inbox")
TARVIK_TEXT(outboxTitle, "tarvik - Outbox")
TARVIK_TEXT(sentTitle, "tarvik - Sent")
TARVIK_TEXT(messageTitle, "tarvik - Message")
TARVIK_TEXT(emptyField, "< empty >")
TARVIK_TEXT(originalMessage, "-------------------- Original message --------------------")
TARVIK_TEXT(openInMapApplication, "Open in map application")
TARVIK_TEXT(copyCoordinates, "Copy coordinates")
TARVIK_TEXT(searchContacts, "Search")
TARVIK_TEXT(loadingContacts, "Loading contacts...")
TARVIK_TEXT(addressBookUnavailable, "The address book is not available.")
TARVIK_TEXT(noContacts, "No contacts")
TARVIK_TEXT(chooseAnAddress, "Choose a phone number or e-mail address")
TARVIK_TEXT(phoneLabel, "Phone")
TARVIK_TEXT(emailLabel, "E-mail")

TARVIK_TEXT(registrationPrompt,
            "Please enter your phone number and screen name to proceed with registration.")
TARVIK_TEXT(reregistrationPrompt,
            "Please change your phone number and/or screen name and proceed with "
            "re-registration.")
TARVIK_TEXT(phoneNumberQuestion, "What's your phone number?")
TARVIK_TEXT(screenNameQuestion, "What's your screen name?")
TARVIK_TEXT(internationalFormatHint,
            "Numbers outside the US must use international number format (country code at the "
            "beginning).")
TARVIK_TEXT(registrationWait,
            "Please wait while your registration is completed.\nIt may take up to a minute.")
TARVIK_TEXT(registrationFailed, "Registration failed")

}  // namespace Dravo
