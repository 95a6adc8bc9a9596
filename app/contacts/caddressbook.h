// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QThread>

#include "ccontactentry.h"
#include "csingleton.h"

namespace Dravo {

class CAddressBookWorker;

// The user's address book: the built-in system address book of Evolution Data
// Server, reached through libebook on a worker thread so that the GUI never waits
// for the registry or the address-book factory.
class CAddressBook : public CSingleton<CAddressBook>
{
    Q_OBJECT
    friend class CSingleton<CAddressBook>;

public:
    ~CAddressBook() override;

    // Connects to the source registry in the background (start-up); a failure
    // logs "main: osso abook initialization failed!".
    void initialize();
    // Reads every contact in the background; contactsLoaded() follows.
    void requestContacts();

Q_SIGNALS:
    void initialized(bool ok, const QString& error);
    // error is empty on success; on failure contacts is empty.
    void contactsLoaded(const Dravo::CContactEntryList& contacts, const QString& error);

    // To the worker thread.
    void signalOpen();
    void signalLoad();

public Q_SLOTS:
    void onAppQuit() override;

private:
    CAddressBook();
    void stopThread();

    QThread* m_pThread;  // left running (leaked) when stuck at exit
    CAddressBookWorker* m_pWorker;
};

}  // namespace Dravo
