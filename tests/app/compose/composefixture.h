// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QApplication>
#include <QDBusConnection>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include "capplicationstyle.h"
#include "casynctstorage.h"
#include "cfakemce.h"
#include "cformstack.h"
#include "cprivatebus.h"
#include "ctarvikstorage.h"
#include "dbusobject.h"
#include "uiresources.h"

namespace TarvikTest {

const char* const kImei = "356938035643809";
const char* const kNumber = "+15550100";
const char* const kScreenName = "Ann";

// The client's side of sending and registering, in process: private session and
// system buses, a fresh HOME, the fake SIM (in its own process, so the simulator can
// read the IMEI while this process waits), the fake mode-control service, the daemon
// simulator with a registered account, the UI storage service and a form stack.
class CComposeFixture
{
public:
    bool start(bool bRegistered = true)
    {
        if (!m_home.isValid() || !m_buses.start())
            return false;
        qputenv("HOME", m_home.path().toLocal8Bit());
        Dravo::initUiResources();
        Dravo::CApplicationStyle::install();
        if (!m_fakes.start(Dravo::Test::binaryPath("tarvik-fakes"), {"--sim", kImei}, "ready",
                           10000, env()))
            return false;
        m_system = QDBusConnection::connectToBus(m_buses.system().address(), "fake-mce");
        if (!m_mce.registerOn(m_system))
            return false;
        Tarvik::DBusObject::instance();
        if (!startSimulator({}, bRegistered))
            return false;
        Dravo::CAsyncTStorage* pStorage = Dravo::CAsyncTStorage::getInstance(1);
        QSignalSpy spy(pStorage, &Dravo::CAsyncTStorage::signalInitialized);
        pStorage->start();
        if (!pStorage->isInitialized() && !spy.wait(10000))
            return false;
        m_stack.setBrush(QBrush(Qt::black));
        m_stack.resize(800, 450);
        m_stack.show();
        return true;
    }

    QProcessEnvironment env()
    {
        QProcessEnvironment e = QProcessEnvironment::systemEnvironment();
        e.insert("HOME", m_home.path());
        e.insert("DBUS_SESSION_BUS_ADDRESS", m_buses.session().address());
        e.insert("DBUS_SYSTEM_BUS_ADDRESS", m_buses.system().address());
        return e;
    }

    // (Re)starts the simulator with a registered account and the given extra options.
    bool startSimulator(const QStringList& lstOptions, bool bRegistered = true)
    {
        m_sim.stop();
        QStringList args{"--incoming", "0"};
        if (bRegistered)
            args << "--register-at-start"
                 << "--number" << kNumber << "--screen-name" << kScreenName;
        args << lstOptions;
        return m_sim.start(Dravo::Test::binaryPath("tarvik-simd"), args, "ready", 10000, env());
    }

    // A synchronous view of the shared database, beside the service under test.
    QList<Dravo::CTarvik> folder(Dravo::CAsyncTStorage::eFolderName eFolder)
    {
        QList<Dravo::CTarvik> lst;
        storage().getTarviks(eFolder, lst);
        return lst;
    }

    Dravo::CTarvikStorage& storage()
    {
        if (!m_pCheck)
            m_pCheck.reset(new Dravo::CTarvikStorage(QStringLiteral("test_check")));
        return *m_pCheck;
    }

    // Clicks the button `strButton` of the next modal message box that opens.
    static void answerNextMessageBox(const QString& strButton, QString* pText = nullptr)
    {
        auto* pTimer = new QTimer();
        pTimer->setInterval(20);
        QObject::connect(pTimer, &QTimer::timeout, [pTimer, strButton, pText] {
            auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!pBox)
                return;
            if (pText)
                *pText = pBox->text();
            for (QAbstractButton* pButton : pBox->buttons()) {
                if (pButton->text().remove('&') == strButton) {
                    pTimer->stop();
                    pTimer->deleteLater();
                    pButton->click();
                    return;
                }
            }
        });
        pTimer->start();
    }

    // With TARVIK_SCREENSHOT_DIR set, saves what the stack shows as <name>.png there.
    void shoot(const QString& strName)
    {
        const QString strDir = qEnvironmentVariable("TARVIK_SCREENSHOT_DIR");
        if (strDir.isEmpty())
            return;
        QTest::qWait(50);
        m_stack.grab().save(strDir + "/" + strName + ".png");
    }

    Dravo::CFormStack& stack() { return m_stack; }
    // The stack's current form as a T, or null.
    template <class T>
    T* top()
    {
        return qobject_cast<T*>(m_stack.currentWidget());
    }
    Dravo::Test::CFakeMce& mce() { return m_mce; }

private:
    QTemporaryDir m_home;
    Dravo::Test::CPrivateBuses m_buses;
    Dravo::Test::CHelperProcess m_fakes;
    Dravo::Test::CHelperProcess m_sim;
    QDBusConnection m_system = QDBusConnection(QString());
    Dravo::Test::CFakeMce m_mce{QStringLiteral("normal")};
    QScopedPointer<Dravo::CTarvikStorage> m_pCheck;
    Dravo::CFormStack m_stack;
};

}  // namespace TarvikTest
