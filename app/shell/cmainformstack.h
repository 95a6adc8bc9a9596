// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPointer>

#include "cformstack.h"
#include "ctarvikstorage.h"
#include "ctsettings.h"

namespace Dravo {

// The application's one stack of forms. It starts with the main menu, puts the
// registration form over it when the account is not registered, shows the main window
// once the settings are known, and reacts to the daemon's application-wide notifications.
class CMainFormStack : public CFormStack
{
    Q_OBJECT
public:
    explicit CMainFormStack(QWidget* parent = nullptr);

    // Registered means regflag 1 and a phone number.
    static bool isRegistered(const CTSettings& settings);
    bool isNewMessagesPopupOpen() const { return m_bNewMessagesPopupOpen; }

Q_SIGNALS:
    void signalShowMainWindow();

public Q_SLOTS:
    void dbusTopApplication();
    void dbusMessagesReceived();
    void dbusMessagesReceivedOpenInbox();
    void dbusMessagesPartiallySent();
    void dbusMessagesSendFailed();
    void dbusMessagesSent();
    void storageInitialized();
    void settingsGotten(bool result, Dravo::CTSettings settings,
                        Dravo::CTarvikStorage::CUserData* userData = nullptr);
    void onAppQuit();
    void openNewMessagesReceivedPopup();
    void onNewMessagesReceivedPopupClosed(bool destroy, Dravo::CForm* pForm = nullptr);

private:
    bool m_bFirst;
    bool m_bNewMessagesPopupOpen;
    QPointer<CForm> m_pNewMessagesPopup;
};

}  // namespace Dravo
