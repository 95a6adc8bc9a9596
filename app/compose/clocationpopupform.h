// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QPointer>
#include <QTimer>

#include "clocation.h"
#include "ctarvik.h"
#include "ctarvikstorage.h"
#include "ctextpopupform.h"
#include "ctsettings.h"

namespace Dravo {

class CLocationEngine;
class CLocationProvider;

// Carries one written message to the daemon: waits for an Internet connection, takes
// one position fix (a forward keeps the forwarded position), completes the message
// from the settings, queues it at the front of the outbox with every earlier message
// marked for sending again, and emits SendReceiveRequest. Once the request is out,
// the first daemon outcome, the 4000 ms timer or a tap closes the popup together
// with the compose form; a failure shows its text and a tap closes the popup alone,
// so the compose form keeps what the user wrote.
class CLocationPopupForm : public CTextPopupForm
{
    Q_OBJECT
public:
    static const int CLOSE_TIMEOUT = 4000;

    // bUseStoredLocation: the message already carries its position (a forward).
    CLocationPopupForm(QWidget* parent, const CTarvik& tarvik, CForm* pComposeForm,
                       int bUseStoredLocation);
    ~CLocationPopupForm() override;

    const CTarvik& tarvik() const { return m_tarvik; }
    bool isBusy() const { return m_bBusy; }
    bool isSent() const { return m_bSent; }
    bool isFailed() const { return m_bFailed; }
    int disconnects() const { return m_nDisconnects; }

    // The process-wide engine is the default; tests give one with short timers.
    static void setLocationEngine(CLocationEngine* pEngine);

public Q_SLOTS:
    void closeLocationPopupForm();
    // The daemon did not answer in time: logged with the time waited, then closed.
    void onCloseTimeout();
    void onLocation(Dravo::CLocation location);
    void settingsGotten(bool result, Dravo::CTSettings settings,
                        Dravo::CTarvikStorage::CUserData* userData = nullptr);
    void tarviksGotten(bool result, QList<Dravo::CTarvik> tarviks, uint folderName,
                       Dravo::CTarvikStorage::CUserData* userData = nullptr);
    void tarviksSaved(bool result, QList<int> tids, uint folder,
                      Dravo::CTarvikStorage::CUserData* userData = nullptr);
    void internetConnectionConnected();
    void internetConnectionDisconnected();

private:
    void requestSettings();
    void fail(const QString& strText);
    void disconnectConnectionManager();
    void stopLocationProvider();

    CTarvik m_tarvik;
    QPointer<CForm> m_pComposeForm;
    CLocationProvider* m_pLocationProvider;
    CLocation m_location;
    QTimer m_timer;
    bool m_bBusy;
    bool m_bSent;
    bool m_bFailed;
    bool m_bUseStoredLocation;
    int m_nDisconnects;
    // Tags this popup's storage requests; answers carrying another tag are not ours.
    CTarvikStorage::CUserData m_tag;
};

}  // namespace Dravo
