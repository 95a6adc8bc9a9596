<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- SPDX-FileCopyrightText: 2026 The tarvik authors -->
<!-- SPDX-License-Identifier: GPL-3.0-or-later -->
<TS version="2.1" language="de_DE">
<context>
    <name>CTexts</name>
    <message numerus="yes">
        <source>%1 (%n)</source>
        <extracomment>Screen title with the number of messages in the folder, e.g. &quot;tarvik - Inbox (5)&quot;.</extracomment>
        <translation>
            <numerusform>%1 (%n)</numerusform>
            <numerusform>%1 (%n)</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source> and %n more</source>
        <extracomment>Ends a list of sender names: &quot;Aino, Mika, Olli and 2 more&quot;.</extracomment>
        <translation>
            <numerusform> und %n weiterer</numerusform>
            <numerusform> und %n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>tarvik</source>
        <translation>tarvik</translation>
    </message>
    <message>
        <source>Send a tarvik</source>
        <translation>tarvik senden</translation>
    </message>
    <message>
        <source>Inbox</source>
        <translation>Posteingang</translation>
    </message>
    <message>
        <source>Outbox</source>
        <translation>Postausgang</translation>
    </message>
    <message>
        <source>Sent tarviks</source>
        <translation>Gesendete tarviks</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Feedback</source>
        <translation>Rückmeldung</translation>
    </message>
    <message>
        <source>About tarvik</source>
        <translation>Über tarvik</translation>
    </message>
    <message>
        <source>tarvik v </source>
        <translation>tarvik v </translation>
    </message>
    <message>
        <source> by QEL Communications</source>
        <translation> von QEL Communications</translation>
    </message>
    <message>
        <source>E-mail: </source>
        <translation>E-Mail: </translation>
    </message>
    <message>
        <source>When you want me to find you, or I want you to find me, it needs to be simple, safe and spot-on-accurate. Simply send a tarvik and connect.</source>
        <translation>Wenn du mich finden sollst oder ich dich finden will, muss es einfach, sicher und punktgenau sein. Schick einfach ein tarvik und ihr findet zueinander.</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Delete All</source>
        <translation>Alle löschen</translation>
    </message>
    <message>
        <source>Send/Receive</source>
        <translation>Senden/
Empfangen</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Senden</translation>
    </message>
    <message>
        <source>Reply</source>
        <translation>Antworten</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Weiterleiten</translation>
    </message>
    <message>
        <source>Map</source>
        <translation>Karte</translation>
    </message>
    <message>
        <source>Route</source>
        <translation>Route</translation>
    </message>
    <message>
        <source>Contacts</source>
        <translation>Kontakte</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>Page
Up</source>
        <translation>Seite
nach oben</translation>
    </message>
    <message>
        <source>Page
Down</source>
        <translation>Seite
nach unten</translation>
    </message>
    <message>
        <source>View
route</source>
        <translation>Route
anzeigen</translation>
    </message>
    <message>
        <source>Show
on map</source>
        <translation>Auf Karte
zeigen</translation>
    </message>
    <message>
        <source>New tarviks received</source>
        <translation>Neue tarviks empfangen</translation>
    </message>
    <message>
        <source>Sending...</source>
        <translation>Wird gesendet...</translation>
    </message>
    <message>
        <source>Sending failed</source>
        <translation>Senden fehlgeschlagen</translation>
    </message>
    <message>
        <source>Sending/receiving tarviks...</source>
        <translation>tarviks werden gesendet und empfangen...</translation>
    </message>
    <message>
        <source>Requesting your current location...</source>
        <translation>Deine aktuelle Position wird ermittelt...</translation>
    </message>
    <message>
        <source>Unable to determine your current location</source>
        <translation>Deine aktuelle Position konnte nicht ermittelt werden</translation>
    </message>
    <message>
        <source>Route can&apos;t be calculated</source>
        <translation>Die Route kann nicht berechnet werden</translation>
    </message>
    <message>
        <source>Exit offline mode?</source>
        <translation>Offlinemodus beenden?</translation>
    </message>
    <message>
        <source>No tarviks</source>
        <translation>Keine tarviks</translation>
    </message>
    <message>
        <source>From:</source>
        <translation>Von:</translation>
    </message>
    <message>
        <source>To:</source>
        <translation>An:</translation>
    </message>
    <message>
        <source>Subject:</source>
        <translation>Betreff:</translation>
    </message>
    <message>
        <source>Date:</source>
        <translation>Datum:</translation>
    </message>
    <message>
        <source>Sent:</source>
        <translation>Gesendet:</translation>
    </message>
    <message>
        <source>RE:</source>
        <translation>AW:</translation>
    </message>
    <message>
        <source>FW:</source>
        <translation>WG:</translation>
    </message>
    <message>
        <source>Choose a contact</source>
        <translation>Kontakt auswählen</translation>
    </message>
    <message>
        <source>tarvik - Inbox</source>
        <translation>tarvik - Posteingang</translation>
    </message>
    <message>
        <source>tarvik - Outbox</source>
        <translation>tarvik - Postausgang</translation>
    </message>
    <message>
        <source>tarvik - Sent</source>
        <translation>tarvik - Gesendet</translation>
    </message>
    <message>
        <source>tarvik - Message</source>
        <translation>tarvik - Nachricht</translation>
    </message>
    <message>
        <source>&lt; empty &gt;</source>
        <translation>&lt; leer &gt;</translation>
    </message>
    <message>
        <source>-------------------- Original message --------------------</source>
        <translation>-------------------- Ursprüngliche Nachricht --------------------</translation>
    </message>
    <message>
        <source>Open in map application</source>
        <translation>In Karten-App öffnen</translation>
    </message>
    <message>
        <source>Copy coordinates</source>
        <translation>Koordinaten kopieren</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Loading contacts...</source>
        <translation>Kontakte werden geladen...</translation>
    </message>
    <message>
        <source>The address book is not available.</source>
        <translation>Das Adressbuch ist nicht verfügbar.</translation>
    </message>
    <message>
        <source>No contacts</source>
        <translation>Keine Kontakte</translation>
    </message>
    <message>
        <source>Choose a phone number or e-mail address</source>
        <translation>Telefonnummer oder E-Mail-Adresse auswählen</translation>
    </message>
    <message>
        <source>Phone</source>
        <translation>Telefon</translation>
    </message>
    <message>
        <source>E-mail</source>
        <translation>E-Mail</translation>
    </message>
    <message>
        <source>Please enter your phone number and screen name to proceed with registration.</source>
        <translation>Bitte gib deine Telefonnummer und deinen Anzeigenamen ein, um mit der Registrierung fortzufahren.</translation>
    </message>
    <message>
        <source>What&apos;s your phone number?</source>
        <translation>Wie lautet deine Telefonnummer?</translation>
    </message>
    <message>
        <source>What&apos;s your screen name?</source>
        <translation>Wie lautet dein Anzeigename?</translation>
    </message>
    <message>
        <source>Numbers outside the US must use international number format (country code at the beginning).</source>
        <translation>Nummern außerhalb der USA bitte im internationalen Format eingeben (mit der Ländervorwahl am Anfang).</translation>
    </message>
    <message>
        <source>Please wait while your registration is completed.
It may take up to a minute.</source>
        <translation>Bitte warte, bis deine Registrierung abgeschlossen ist.
Das kann bis zu einer Minute dauern.</translation>
    </message>
    <message>
        <source>Registration failed</source>
        <translation>Registrierung fehlgeschlagen</translation>
    </message>
    <message>
        <source>The map cannot be shown: its module is missing or broken.</source>
        <translation>Die Karte kann nicht angezeigt werden: Ihr Modul fehlt oder ist beschädigt.</translation>
    </message>
    <message>
        <source>Waiting for an Internet connection...</source>
        <translation>Warten auf eine Internetverbindung...</translation>
    </message>
    <message>
        <source>Pan north</source>
        <translation>Nach Norden verschieben</translation>
    </message>
    <message>
        <source>Pan east</source>
        <translation>Nach Osten verschieben</translation>
    </message>
    <message>
        <source>Pan south</source>
        <translation>Nach Süden verschieben</translation>
    </message>
    <message>
        <source>Pan west</source>
        <translation>Nach Westen verschieben</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Nachricht</translation>
    </message>
    <message>
        <source>Please change your phone number and/or screen name and proceed with re-registration.</source>
        <translation>Bitte ändere deine Telefonnummer und/oder deinen Anzeigenamen, um mit der erneuten Registrierung fortzufahren.</translation>
    </message>
    <message>
        <source>Route: %1, about %2</source>
        <translation>Route: %1, etwa %2</translation>
    </message>
    <message>
        <source>%1 m</source>
        <translation>%1 m</translation>
    </message>
    <message>
        <source>%1 km</source>
        <translation>%1 km</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 Std. %2 min</translation>
    </message>
</context>
</TS>
