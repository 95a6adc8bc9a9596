// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>
#include <QtPlugin>

class QWidget;

namespace Dravo {

// What the client uses of the address book. The implementation (the chooser's dialogs;
// the address book is read by the tarvik-addressbook helper) is only needed once the
// window is up, so it lives in a plugin that CContactsModule loads off the GUI thread.
class IContactsModule
{
public:
    virtual ~IContactsModule() = default;
    // Reads the address book in the background; a failure is logged as
    // "main: osso abook initialization failed!".
    virtual void initialize() = 0;
    // Runs the contact list and, when needed, the detail selector; returns the chosen
    // phone number or e-mail address, or empty. The event loop keeps running.
    virtual QString choose(QWidget* pDialogParent, const QString& strLogPrefix) = 0;
};

}  // namespace Dravo

#define TARVIK_CONTACTS_MODULE_IID "com.qel.tarvik.ContactsModule/1.0"
Q_DECLARE_INTERFACE(Dravo::IContactsModule, TARVIK_CONTACTS_MODULE_IID)
