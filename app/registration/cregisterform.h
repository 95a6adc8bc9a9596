// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cform.h"
#include "clineedit.h"
#include "ctwpushbutton.h"

namespace Dravo {

// Own phone number and screen name. In mode 0 (first registration) it stands over the
// main menu until the daemon accepts the registration; in mode 1 it is the Settings
// screen, filled from the stored settings, with a Back button. Continue hands both
// values to the registration popup.
class CRegisterForm : public CForm
{
    Q_OBJECT
public:
    enum eRegisterType
    {
        eRegisterNew = 0,
        eRegisterAgain = 1
    };
    static const int SCREEN_NAME_MAX_LENGTH = 12;

    CRegisterForm(QWidget* parent, int registerType, const QString& strPhoneNumber,
                  const QString& strScreenName);

    QString title() const override;

    int registerType() const { return m_registerType; }
    CLineEdit* lineEditPhone() const { return m_pLineEditPhone; }
    CLineEdit* lineEditScreenName() const { return m_pLineEditScreenName; }
    CTWPushButton* btnContinue() const { return m_pBtnContinue; }
    // Null in mode 0.
    CTWPushButton* btnBack() const { return m_pBtnBack; }

public Q_SLOTS:
    void onBtnContinueClick();
    void onBtnBackClick();

private:
    int m_registerType;
    CLineEdit* m_pLineEditPhone;
    CLineEdit* m_pLineEditScreenName;
    QWidget* m_pReserved;
    CTWPushButton* m_pBtnContinue;
    CTWPushButton* m_pBtnBack;
    bool m_bGuardRunning;
};

}  // namespace Dravo
