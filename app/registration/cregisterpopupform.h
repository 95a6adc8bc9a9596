// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPointer>

#include "cpopupform.h"
#include "ctarvikstorage.h"
#include "ctsettings.h"
#include "ctwlabel.h"
#include "ctwpopup.h"
#include "ctwwidget.h"

namespace Dravo {

// Saves the number and screen name (regflag 0), asks the daemon to register and waits
// for its verdict as long as it takes. Success closes the popup and the registration
// form; failure shows "Registration failed" and a tap returns to the form. While the
// settings are being saved or the verdict is awaited a tap does nothing.
class CRegisterPopupForm : public CPopupForm<CTWPopup>
{
    Q_OBJECT
public:
    // Settings fields written by the registration: screenname, mynumber, regflag.
    static const uint SAVE_MASK = 0x01 | 0x02 | 0x08;

    CRegisterPopupForm(QWidget* parent, CForm* pRegisterForm, const QString& strPhoneNumber,
                       const QString& strScreenName);

    QString text() const { return m_pLabel->text(); }
    bool canClose() const { return m_bCanClose; }
    CTWWidget* progressWidget() const { return m_pProgress; }
    int disconnects() const { return m_nDisconnects; }

public Q_SLOTS:
    void closePopupForm();
    void registrationFailed();
    void registrationSucceed();
    void settingsSaved(bool result, uint mask,
                       Dravo::CTarvikStorage::CUserData* userData = nullptr);
    void internetConnectionConnected();
    void internetConnectionDisconnected();

private:
    void showError(const QString& strText);
    void disconnectConnectionManager();

    CTWLabel* m_pLabel;
    CTWWidget* m_pProgress;
    bool m_bCanClose;
    QPointer<CForm> m_pRegisterForm;
    CTSettings m_settings;
    int m_nDisconnects;
    bool m_bClosing;
    bool m_bSaving;
};

}  // namespace Dravo
