// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cdevicemodeguard.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEventLoop>
#include <QMessageBox>
#include <QPushButton>
#include <QtDebug>

#include "ctexts.h"
#include "mcerequestinterface.h"

namespace Dravo {

namespace {

const QString kMceService = QStringLiteral("com.nokia.mce");
const QString kMcePath = QStringLiteral("/com/nokia/mce/request");
const QString kNmService = QStringLiteral("org.freedesktop.NetworkManager");
const QString kNmPath = QStringLiteral("/org/freedesktop/NetworkManager");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");

}  // namespace

CDeviceModeGuard::CDeviceModeGuard(const QString& strLogPrefix, QWidget* pDialogParent,
                                   QObject* parent)
    : QObject(parent), m_strPrefix(strLogPrefix), m_pDialogParent(pDialogParent)
{
}

CDeviceModeGuard::~CDeviceModeGuard()
{
    if (m_pBox) {
        m_pBox->disconnect(this);
        delete m_pBox.data();
    }
}

bool CDeviceModeGuard::isOfflineMode(const QString& mode)
{
    return mode == QLatin1String("offline") || mode == QLatin1String("flight");
}

bool CDeviceModeGuard::check(const QString& strLogPrefix, QWidget* pDialogParent)
{
    CDeviceModeGuard guard(strLogPrefix, pDialogParent);
    QEventLoop loop;
    connect(&guard, &CDeviceModeGuard::finished, &loop, &QEventLoop::quit);
    guard.start();
    if (!guard.isFinished()) {
        loop.exec();
    }
    // The loop also ends when the application quits: the action is then dropped.
    return guard.isFinished() && guard.mayProceed();
}

void CDeviceModeGuard::start()
{
    if (m_bStarted) {
        return;
    }
    m_bStarted = true;
    if (!QDBusConnection::systemBus().isConnected()) {
        onModeKnown(QStringLiteral("normal"), eSourceNone);
        return;
    }
    askNameOwner(kMceService, &CDeviceModeGuard::onMceOwned);
}

void CDeviceModeGuard::askNameOwner(const QString& service, void (CDeviceModeGuard::*next)(bool))
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    message << service;
    auto* watcher = new QDBusPendingCallWatcher(
        QDBusConnection::systemBus().asyncCall(message, kCallTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, next](QDBusPendingCallWatcher* call) {
                call->deleteLater();
                const QDBusPendingReply<bool> reply = *call;
                (this->*next)(!reply.isError() && reply.value());
            });
}

void CDeviceModeGuard::onMceOwned(bool owned)
{
    if (!owned) {
        askNameOwner(kNmService, &CDeviceModeGuard::onNetworkManagerOwned);
        return;
    }
    ComNokiaMceRequestInterface mce(kMceService, kMcePath, QDBusConnection::systemBus());
    mce.setTimeout(kCallTimeoutMs);
    auto* watcher = new QDBusPendingCallWatcher(mce.get_device_mode(), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* call) {
                call->deleteLater();
                const QDBusPendingReply<QString> reply = *call;
                if (reply.isError()) {
                    qWarning().noquote()
                        << m_strPrefix + ": device mode unknown: " + reply.error().message();
                }
                onModeKnown(reply.isError() ? QString() : reply.value(), eSourceMce);
            });
}

void CDeviceModeGuard::onNetworkManagerOwned(bool owned)
{
    if (!owned) {
        onModeKnown(QStringLiteral("normal"), eSourceNone);
        return;
    }
    QDBusMessage message =
        QDBusMessage::createMethodCall(kNmService, kNmPath, kProperties, QStringLiteral("GetAll"));
    message << kNmService;
    auto* watcher = new QDBusPendingCallWatcher(
        QDBusConnection::systemBus().asyncCall(message, kCallTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* call) {
                call->deleteLater();
                const QDBusPendingReply<QVariantMap> reply = *call;
                QString mode = QStringLiteral("normal");
                if (reply.isError()) {
                    qWarning().noquote()
                        << m_strPrefix + ": device mode unknown: " + reply.error().message();
                } else {
                    const QVariantMap properties = reply.value();
                    const auto flag = [&properties](const char* name) {
                        return properties.value(QLatin1String(name), true).toBool();
                    };
                    if (!flag("NetworkingEnabled")) {
                        mode = QStringLiteral("offline");
                    } else if (!flag("WirelessEnabled") && !flag("WwanEnabled")) {
                        mode = QStringLiteral("flight");
                    }
                }
                onModeKnown(mode, eSourceNetworkManager);
            });
}

void CDeviceModeGuard::onModeKnown(const QString& mode, eModeSource source)
{
    m_strMode = mode;
    m_eSource = source;
    if (!isOfflineMode(mode)) {
        finish(true);
        return;
    }
    m_pBox = new QMessageBox(QMessageBox::NoIcon, QStringLiteral(" "), CTexts::exitOfflineMode(),
                             QMessageBox::Yes | QMessageBox::No, m_pDialogParent);
    m_pBox->setObjectName(QStringLiteral("exitOfflineModeBox"));
    m_pBox->setWindowModality(Qt::ApplicationModal);
    m_pBox->setAttribute(Qt::WA_DeleteOnClose, false);
    connect(m_pBox, &QMessageBox::finished, this, &CDeviceModeGuard::onPromptFinished);
    // Deleted with its parent before the user answered: counts as No.
    connect(m_pBox, &QObject::destroyed, this, [this]() { onAnswer(false); });
    m_pBox->show();
    Q_EMIT promptShown(m_pBox);
}

void CDeviceModeGuard::onPromptFinished()
{
    const bool yes = m_pBox && m_pBox->clickedButton() &&
                     m_pBox->clickedButton() == m_pBox->button(QMessageBox::Yes);
    if (m_pBox) {
        m_pBox->deleteLater();
    }
    onAnswer(yes);
}

void CDeviceModeGuard::onAnswer(bool yes)
{
    if (m_bFinished) {
        return;
    }
    if (yes) {
        qDebug().noquote() << m_strPrefix + QStringLiteral(": Exit offline mode: Yes");
        requestNormalMode();
        finish(true);
    } else {
        qDebug().noquote() << m_strPrefix + QStringLiteral(": Exit offline mode: No");
        finish(false);
    }
}

void CDeviceModeGuard::requestNormalMode()
{
    QDBusConnection bus = QDBusConnection::systemBus();
    if (m_eSource == eSourceMce) {
        ComNokiaMceRequestInterface mce(kMceService, kMcePath, bus);
        mce.req_device_mode_change(QStringLiteral("normal"));  // not waited for
        return;
    }
    if (m_eSource == eSourceNetworkManager) {
        QDBusMessage enable = QDBusMessage::createMethodCall(kNmService, kNmPath, kNmService,
                                                             QStringLiteral("Enable"));
        enable << true;
        bus.asyncCall(enable, kCallTimeoutMs);
        for (const char* radio : {"WirelessEnabled", "WwanEnabled"}) {
            QDBusMessage set = QDBusMessage::createMethodCall(kNmService, kNmPath, kProperties,
                                                              QStringLiteral("Set"));
            set << kNmService << QString::fromLatin1(radio)
                << QVariant::fromValue(QDBusVariant(true));
            bus.asyncCall(set, kCallTimeoutMs);
        }
    }
}

void CDeviceModeGuard::finish(bool mayProceed)
{
    if (m_bFinished) {
        return;
    }
    m_bFinished = true;
    m_bMayProceed = mayProceed;
    Q_EMIT finished(mayProceed);
}

}  // namespace Dravo
