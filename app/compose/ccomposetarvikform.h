// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPointer>

#include "cform.h"
#include "clineedit.h"
#include "ctarvik.h"
#include "ctextedit.h"
#include "ctwpushbutton.h"

namespace Dravo {

// The screen on which a message is written: recipients, subject and body, with Back,
// Contacts and Send. Send hands a copy of the message to the location popup, which
// fixes the position, queues it in the outbox and asks the daemon to send it. A reply
// or forward arrives with its texts already built by the message view; a forward also
// brings the position of the forwarded message, so no fix is taken for it.
class CComposeTarvikForm : public CForm
{
    Q_OBJECT
public:
    enum eComposeType
    {
        eComposeNew = 0,
        eComposeReply = 1,
        eComposeForward = 2
    };

    CComposeTarvikForm(QWidget* parent, int composeType, const QString& strTo,
                       const QString& strSubject, const QString& strMessage, double dLatitude = 0.0,
                       double dLongitude = 0.0);

    QString title() const override;

    int composeType() const { return m_composeType; }
    // The message as it was handed to the location popup by the last Send.
    const CTarvik& tarvik() const { return m_tarvik; }
    CLineEdit* lineEditTo() const { return m_pLineEditTo; }
    CLineEdit* lineEditSubject() const { return m_pLineEditSubject; }
    CTextEdit* textEditMessage() const { return m_pTextEditMessage; }
    CTWPushButton* btnBack() const { return m_pBtnBack; }
    CTWPushButton* btnContacts() const { return m_pBtnContacts; }
    CTWPushButton* btnSend() const { return m_pBtnSend; }

    // Appends an address to a comma-separated recipient list without blanks.
    static QString appendRecipient(const QString& strRecipients, const QString& strAddress);

public Q_SLOTS:
    void onBtnCloseClick();
    void onBtnContactsClick();
    void onBtnSendClick();

private:
    static QString chooseContact(QWidget* pDialogParent);

    int m_composeType;
    CLineEdit* m_pLineEditTo;
    CLineEdit* m_pLineEditSubject;
    CTextEdit* m_pTextEditMessage;
    CTWPushButton* m_pBtnBack;
    CTWPushButton* m_pBtnContacts;
    CTWPushButton* m_pBtnSend;
    CTarvik m_tarvik;
    bool m_bGuardRunning;
};

}  // namespace Dravo
