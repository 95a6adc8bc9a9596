// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <QMessageBox>
class QWidget;
class QDBusPendingCallWatcher;

namespace Dravo {

// Run at the start of a network action: reads the device mode and, in offline or
// flight mode, asks "Exit offline mode?". Yes switches the device to "normal"
// without waiting and lets the action go on; No drops the action.
//
// The mode comes from the mode control service "com.nokia.mce" when it is on the
// system bus, else from NetworkManager (networking disabled: "offline"; both
// radios off: "flight"), else it is "normal". Every bus call is asynchronous;
// check() waits in a local event loop, so the GUI keeps running meanwhile.
class CDeviceModeGuard : public QObject
{
    Q_OBJECT
public:
    enum eModeSource
    {
        eSourceNone,
        eSourceMce,
        eSourceNetworkManager
    };

    // strLogPrefix names the form and handler, e.g. "CComposeTarvikForm::onBtnSendClick".
    explicit CDeviceModeGuard(const QString& strLogPrefix, QWidget* pDialogParent = nullptr,
                              QObject* parent = nullptr);
    ~CDeviceModeGuard() override;

    // Runs the guard and waits for its outcome; true when the action may go on.
    static bool check(const QString& strLogPrefix, QWidget* pDialogParent = nullptr);

    // Starts the guard; finished() follows exactly once.
    void start();
    bool isFinished() const { return m_bFinished; }
    bool mayProceed() const { return m_bMayProceed; }
    QString deviceMode() const { return m_strMode; }
    eModeSource modeSource() const { return m_eSource; }
    // The open prompt, or null.
    QMessageBox* prompt() const { return m_pBox; }

    static bool isOfflineMode(const QString& mode);
    // Time allowed for each bus call.
    static constexpr int kCallTimeoutMs = 5000;

Q_SIGNALS:
    void promptShown(QMessageBox* box);
    void finished(bool mayProceed);

private:
    void askNameOwner(const QString& service, void (CDeviceModeGuard::*next)(bool));
    void onMceOwned(bool owned);
    void onNetworkManagerOwned(bool owned);
    void onModeKnown(const QString& mode, eModeSource source);
    void onPromptFinished();
    void onAnswer(bool yes);
    void requestNormalMode();
    void finish(bool mayProceed);

    QString m_strPrefix;
    QPointer<QWidget> m_pDialogParent;
    QPointer<QMessageBox> m_pBox;
    QString m_strMode;
    eModeSource m_eSource = eSourceNone;
    bool m_bStarted = false;
    bool m_bFinished = false;
    bool m_bMayProceed = true;
};

}  // namespace Dravo
