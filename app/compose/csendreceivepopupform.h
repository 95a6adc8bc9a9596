// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QTimer>

#include "ctarvik.h"
#include "ctarvikstorage.h"
#include "ctextpopupform.h"

namespace Dravo {

// Send/Receive from the inbox: waits for an Internet connection, marks every outbox
// message for sending and asks the daemon to send and receive. Closes on the daemon's
// first answer, after 4000 ms, or on a tap.
class CSendReceivePopupForm : public CTextPopupForm
{
    Q_OBJECT
public:
    static const int CLOSE_TIMEOUT = 4000;

    explicit CSendReceivePopupForm(QWidget* parent);

    bool isBusy() const { return m_bBusy; }
    bool isRequested() const { return m_bRequested; }
    int disconnects() const { return m_nDisconnects; }

public Q_SLOTS:
    void closePopupForm();
    // The daemon did not answer in time: logged with the time waited, then closed.
    void onCloseTimeout();
    void tarviksGotten(bool result, QList<Dravo::CTarvik> tarviks, uint folderName,
                       Dravo::CTarvikStorage::CUserData* userData = nullptr);
    void tarviksSaved(bool result, QList<int> tids, uint folderName,
                      Dravo::CTarvikStorage::CUserData* userData = nullptr);
    void internetConnectionConnected();
    void internetConnectionDisconnected();

private:
    void requestSendReceive(bool bSomethingToSend);
    void fail(const char* pLogLine);
    void disconnectConnectionManager();

    QTimer m_timer;
    bool m_bBusy;
    bool m_bRequested;
    int m_nDisconnects;
    CTarvikStorage::CUserData m_tag;
};

}  // namespace Dravo
