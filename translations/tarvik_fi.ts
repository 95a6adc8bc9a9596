<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- SPDX-FileCopyrightText: 2026 The tarvik authors -->
<!-- SPDX-License-Identifier: GPL-3.0-or-later -->
<TS version="2.1" language="fi_FI">
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
            <numerusform> ja %n muu</numerusform>
            <numerusform> ja %n muuta</numerusform>
        </translation>
    </message>
    <message>
        <source>tarvik</source>
        <translation>tarvik</translation>
    </message>
    <message>
        <source>Send a tarvik</source>
        <translation>Lähetä tarvik</translation>
    </message>
    <message>
        <source>Inbox</source>
        <translation>Saapuneet</translation>
    </message>
    <message>
        <source>Outbox</source>
        <translation>Lähtevät</translation>
    </message>
    <message>
        <source>Sent tarviks</source>
        <translation>Lähetetyt</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Asetukset</translation>
    </message>
    <message>
        <source>Feedback</source>
        <translation>Palaute</translation>
    </message>
    <message>
        <source>About tarvik</source>
        <translation>Tietoja tarvikista</translation>
    </message>
    <message>
        <source>tarvik v </source>
        <translation>tarvik v </translation>
    </message>
    <message>
        <source> by QEL Communications</source>
        <translation> – QEL Communications</translation>
    </message>
    <message>
        <source>E-mail: </source>
        <translation>Sähköposti: </translation>
    </message>
    <message>
        <source>When you want me to find you, or I want you to find me, it needs to be simple, safe and spot-on-accurate. Simply send a tarvik and connect.</source>
        <translation>Kun haluat minun löytävän sinut tai minä haluan sinun löytävän minut, sen on oltava helppoa, turvallista ja pilkuntarkkaa. Lähetä vain tarvik, niin löydätte toisenne.</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Takaisin</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Avaa</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Poista</translation>
    </message>
    <message>
        <source>Delete All</source>
        <translation>Poista kaikki</translation>
    </message>
    <message>
        <source>Send/Receive</source>
        <translation>Lähetä/
vastaanota</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Lähetä</translation>
    </message>
    <message>
        <source>Reply</source>
        <translation>Vastaa</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Välitä</translation>
    </message>
    <message>
        <source>Map</source>
        <translation>Kartta</translation>
    </message>
    <message>
        <source>Route</source>
        <translation>Reitti</translation>
    </message>
    <message>
        <source>Contacts</source>
        <translation>Yhteystiedot</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Jatka</translation>
    </message>
    <message>
        <source>Page
Up</source>
        <translation>Sivu
ylös</translation>
    </message>
    <message>
        <source>Page
Down</source>
        <translation>Sivu
alas</translation>
    </message>
    <message>
        <source>View
route</source>
        <translation>Näytä
reitti</translation>
    </message>
    <message>
        <source>Show
on map</source>
        <translation>Näytä
kartalla</translation>
    </message>
    <message>
        <source>New tarviks received</source>
        <translation>Uusia tarvik-viestejä saapunut</translation>
    </message>
    <message>
        <source>Sending...</source>
        <translation>Lähetetään...</translation>
    </message>
    <message>
        <source>Sending failed</source>
        <translation>Lähetys epäonnistui</translation>
    </message>
    <message>
        <source>Sending/receiving tarviks...</source>
        <translation>Lähetetään ja vastaanotetaan tarvik-viestejä...</translation>
    </message>
    <message>
        <source>Requesting your current location...</source>
        <translation>Haetaan nykyistä sijaintiasi...</translation>
    </message>
    <message>
        <source>Unable to determine your current location</source>
        <translation>Nykyistä sijaintiasi ei voitu määrittää</translation>
    </message>
    <message>
        <source>Route can&apos;t be calculated</source>
        <translation>Reittiä ei voi laskea</translation>
    </message>
    <message>
        <source>Exit offline mode?</source>
        <translation>Poistutaanko offline-tilasta?</translation>
    </message>
    <message>
        <source>No tarviks</source>
        <translation>Ei tarvik-viestejä</translation>
    </message>
    <message>
        <source>From:</source>
        <translation>Lähettäjä:</translation>
    </message>
    <message>
        <source>To:</source>
        <translation>Saaja:</translation>
    </message>
    <message>
        <source>Subject:</source>
        <translation>Aihe:</translation>
    </message>
    <message>
        <source>Date:</source>
        <translation>Päiväys:</translation>
    </message>
    <message>
        <source>Sent:</source>
        <translation>Lähetetty:</translation>
    </message>
    <message>
        <source>RE:</source>
        <translation>VS:</translation>
    </message>
    <message>
        <source>FW:</source>
        <translation>VL:</translation>
    </message>
    <message>
        <source>Choose a contact</source>
        <translation>Valitse yhteystieto</translation>
    </message>
    <message>
        <source>tarvik - Inbox</source>
        <translation>tarvik - Saapuneet</translation>
    </message>
    <message>
        <source>tarvik - Outbox</source>
        <translation>tarvik - Lähtevät</translation>
    </message>
    <message>
        <source>tarvik - Sent</source>
        <translation>tarvik - Lähetetyt</translation>
    </message>
    <message>
        <source>tarvik - Message</source>
        <translation>tarvik - Viesti</translation>
    </message>
    <message>
        <source>&lt; empty &gt;</source>
        <translation>&lt; tyhjä &gt;</translation>
    </message>
    <message>
        <source>-------------------- Original message --------------------</source>
        <translation>-------------------- Alkuperäinen viesti --------------------</translation>
    </message>
    <message>
        <source>Open in map application</source>
        <translation>Avaa karttasovelluksessa</translation>
    </message>
    <message>
        <source>Copy coordinates</source>
        <translation>Kopioi koordinaatit</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Hae</translation>
    </message>
    <message>
        <source>Loading contacts...</source>
        <translation>Ladataan yhteystietoja...</translation>
    </message>
    <message>
        <source>The address book is not available.</source>
        <translation>Osoitekirja ei ole käytettävissä.</translation>
    </message>
    <message>
        <source>No contacts</source>
        <translation>Ei yhteystietoja</translation>
    </message>
    <message>
        <source>Choose a phone number or e-mail address</source>
        <translation>Valitse puhelinnumero tai sähköpostiosoite</translation>
    </message>
    <message>
        <source>Phone</source>
        <translation>Puhelin</translation>
    </message>
    <message>
        <source>E-mail</source>
        <translation>Sähköposti</translation>
    </message>
    <message>
        <source>Please enter your phone number and screen name to proceed with registration.</source>
        <translation>Anna puhelinnumerosi ja näyttönimesi, niin rekisteröityminen voi jatkua.</translation>
    </message>
    <message>
        <source>What&apos;s your phone number?</source>
        <translation>Mikä on puhelinnumerosi?</translation>
    </message>
    <message>
        <source>What&apos;s your screen name?</source>
        <translation>Mikä on näyttönimesi?</translation>
    </message>
    <message>
        <source>Numbers outside the US must use international number format (country code at the beginning).</source>
        <translation>Yhdysvaltojen ulkopuoliset numerot on annettava kansainvälisessä muodossa (maatunnus alkuun).</translation>
    </message>
    <message>
        <source>Please wait while your registration is completed.
It may take up to a minute.</source>
        <translation>Odota, kunnes rekisteröityminen on valmis.
Se voi kestää enintään minuutin.</translation>
    </message>
    <message>
        <source>Registration failed</source>
        <translation>Rekisteröityminen epäonnistui</translation>
    </message>
    <message>
        <source>The map cannot be shown: its module is missing or broken.</source>
        <translation>Karttaa ei voi näyttää: sen moduuli puuttuu tai on rikki.</translation>
    </message>
    <message>
        <source>Waiting for an Internet connection...</source>
        <translation>Odotetaan Internet-yhteyttä...</translation>
    </message>
    <message>
        <source>Pan north</source>
        <translation>Siirrä pohjoiseen</translation>
    </message>
    <message>
        <source>Pan east</source>
        <translation>Siirrä itään</translation>
    </message>
    <message>
        <source>Pan south</source>
        <translation>Siirrä etelään</translation>
    </message>
    <message>
        <source>Pan west</source>
        <translation>Siirrä länteen</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Lähennä</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Loitonna</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Viesti</translation>
    </message>
    <message>
        <source>Please change your phone number and/or screen name and proceed with re-registration.</source>
        <translation>Muuta puhelinnumeroasi ja/tai näyttönimeäsi, niin uudelleenrekisteröityminen voi jatkua.</translation>
    </message>
    <message>
        <source>Route: %1, about %2</source>
        <translation>Reitti: %1, noin %2</translation>
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
        <translation>%1 t %2 min</translation>
    </message>
</context>
</TS>
