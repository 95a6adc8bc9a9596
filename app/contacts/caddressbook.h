// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QPointer>

#include "ccontactentry.h"
#include "csingleton.h"

class QProcess;

namespace Dravo {

// The user's address book: the built-in system address book of Evolution Data
// Server, read by the tarvik-addressbook helper program, which the client runs
// without waiting for it, so the client never maps Evolution's libraries. The
// contacts of the last successful read are kept.
class CAddressBook : public CSingleton<CAddressBook>
{
    Q_OBJECT
    friend class CSingleton<CAddressBook>;

public:
    ~CAddressBook() override;

    // Reads the address book in the background (start-up); a failure logs
    // "main: osso abook initialization failed!".
    void initialize();
    // Answers at once with the kept contacts, if any, and reads the address book
    // again: contactsLoaded() follows once more when that read finds other contacts
    // or fails.
    void requestContacts();

    // Where the helper is looked for: $TARVIK_PLUGIN_DIR when set, otherwise the
    // directory of the plugins relative to the executable.
    static QString helperPath();
    // How long a read may take before the helper is killed.
    void setHelperTimeout(int iMs) { m_iTimeoutMs = iMs; }

Q_SIGNALS:
    void initialized(bool ok, const QString& error);
    // error is empty on success; on failure contacts is empty.
    void contactsLoaded(const Dravo::CContactEntryList& contacts, const QString& error);

public Q_SLOTS:
    void onAppQuit() override;

private:
    CAddressBook();
    void runHelper();
    void onHelperDone(QProcess* process, const QString& failure);
    void stopHelper();

    QPointer<QProcess> m_pHelper;
    CContactEntryList m_lstContacts;
    int m_iTimeoutMs = 20000;
    bool m_bHaveContacts = false;
    bool m_bInitPending = false;
    bool m_bRequestPending = false;
    bool m_bAnswered = false;  // the pending request was answered from the kept contacts
    bool m_bRerun = false;     // a request came while the helper was running
    bool m_bQuitting = false;
};

}  // namespace Dravo
