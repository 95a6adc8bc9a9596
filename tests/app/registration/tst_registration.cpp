// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cconnectionmanager.h"
#include "clogcapture.h"
#include "composefixture.h"
#include "cregisterform.h"
#include "cregisterpopupform.h"
#include "ctexts.h"

using namespace Dravo;
using TarvikTest::CComposeFixture;

class TestRegistration : public QObject
{
    Q_OBJECT

private:
    CComposeFixture m_fixture;

    CRegisterForm* openForm(int iType, const QString& strNumber = QString(),
                            const QString& strName = QString())
    {
        auto* pForm = new CRegisterForm(&m_fixture.stack(), iType, strNumber, strName);
        m_fixture.stack().showForm(pForm);
        QTest::qWait(20);
        return pForm;
    }

    CTSettings storedSettings()
    {
        CTSettings settings;
        m_fixture.storage().getSettings(settings);
        return settings;
    }

    void resetAccount()
    {
        CTSettings settings;
        m_fixture.storage().saveSettings(settings, CRegisterPopupForm::SAVE_MASK);
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_fixture.start(false)); }

    void init()
    {
        QVERIFY(m_fixture.startSimulator({}, false));
        resetAccount();
        m_fixture.mce().setMode("normal");
    }

    void cleanup()
    {
        while (m_fixture.stack().count() > 0)
            m_fixture.stack().closeForm(true);
    }

    void modes_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("hasBack");
        QTest::newRow("first registration") << 0 << false;
        QTest::newRow("settings") << 1 << true;
    }

    // Only the settings screen has a way back; a screen name stops at 12 characters.
    void modes()
    {
        QFETCH(int, type);
        QFETCH(bool, hasBack);
        CRegisterForm* pForm = openForm(type, type ? "+15550100" : "", type ? "Ann" : "");
        m_fixture.shoot(QString("register-mode-%1").arg(type));
        QCOMPARE(pForm->btnBack() != nullptr, hasBack);
        QCOMPARE(pForm->lineEditPhone()->text(), QString(type ? "+15550100" : ""));
        pForm->lineEditScreenName()->clear();
        QTest::keyClicks(pForm->lineEditScreenName(), "abcdefghijklmnopq");
        QCOMPARE(pForm->lineEditScreenName()->text(), QString("abcdefghijkl"));
        if (hasBack) {
            QPointer<CRegisterForm> pGuard(pForm);
            QTest::mouseClick(pForm->btnBack(), Qt::LeftButton);
            QTRY_VERIFY(!pGuard);
            QVERIFY(storedSettings().screenname().isEmpty());
        }
    }

    void emptyFieldDoesNothing_data()
    {
        QTest::addColumn<QString>("number");
        QTest::addColumn<QString>("name");
        QTest::newRow("no screen name") << "+15550100" << QString();
        QTest::newRow("no number") << "" << QString("Ann");
    }

    void emptyFieldDoesNothing()
    {
        QFETCH(QString, number);
        QFETCH(QString, name);
        CRegisterForm* pForm = openForm(0, number, name);
        QTest::mouseClick(pForm->btnContinue(), Qt::LeftButton);
        QTest::qWait(100);
        QCOMPARE(m_fixture.stack().count(), 1);
        QVERIFY(storedSettings().mynumber().isEmpty());
    }

    // The daemon's verdict: success closes popup and form; failure shows the text and a
    // tap returns to the form with the values kept.
    void verdict_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<int>("type");
        QTest::newRow("first registration fails") << "fail" << 0;
        QTest::newRow("re-registration succeeds") << "succeed" << 1;
    }

    void verdict()
    {
        QFETCH(QString, mode);
        QFETCH(int, type);
        QVERIFY(m_fixture.startSimulator({"--register", mode, "--delay", "200"}, false));
        Test::CLogCapture log(true);
        QPointer<CRegisterForm> pForm = openForm(type, type ? "+15550100" : "", type ? "Old" : "");
        pForm->lineEditPhone()->setText("");
        QTest::keyClicks(pForm->lineEditPhone(), "+15550123");
        pForm->lineEditScreenName()->setText("");
        QTest::keyClicks(pForm->lineEditScreenName(), "Zo");
        pForm->lineEditScreenName()->insert("ë <b>");
        QTest::mouseClick(pForm->btnContinue(), Qt::LeftButton);
        QPointer<CRegisterPopupForm> pPopup = m_fixture.top<CRegisterPopupForm>();
        QVERIFY(pPopup);
        QCOMPARE(pPopup->text(), CTexts::registrationWait());
        m_fixture.shoot("register-popup-waiting");
        QTRY_VERIFY(log.contains("CRegisterPopupForm::settingsSaved"));
        const CTSettings saved = storedSettings();
        QCOMPARE(saved.mynumber(), QString("+15550123"));
        QCOMPARE(saved.screenname(), QString("Zoë <b>"));
        if (mode == "succeed") {
            QTRY_VERIFY_WITH_TIMEOUT(!pPopup && !pForm, 5000);
            QCOMPARE(m_fixture.stack().count(), 0);
            QCOMPARE(storedSettings().regflag(), 1);
            return;
        }
        QTRY_COMPARE_WITH_TIMEOUT(pPopup->text(), CTexts::registrationFailed(), 5000);
        QVERIFY(!pPopup->progressWidget()->isBusy() && pPopup->progressWidget()->isHidden());
        m_fixture.shoot("register-popup-failed");
        QTest::mouseClick(pPopup->popup(), Qt::LeftButton);
        QTRY_VERIFY(!pPopup);
        QCOMPARE(m_fixture.top<CRegisterForm>(), pForm.data());
        QCOMPARE(pForm->lineEditPhone()->text(), QString("+15550123"));
        QCOMPARE(pForm->lineEditScreenName()->text(), QString("Zoë <b>"));
    }

    // While the verdict is awaited a tap does nothing, and the account is not registered.
    void tapWhileWaiting()
    {
        QVERIFY(m_fixture.startSimulator({"--register", "silent"}, false));
        Test::CLogCapture log(true);
        CRegisterForm* pForm = openForm(0, "+15550123", "Ann");
        QTest::mouseClick(pForm->btnContinue(), Qt::LeftButton);
        QPointer<CRegisterPopupForm> pPopup = m_fixture.top<CRegisterPopupForm>();
        QVERIFY(pPopup);
        QTRY_VERIFY(!pPopup->canClose());
        QTest::mouseClick(pPopup->popup(), Qt::LeftButton);
        QTRY_VERIFY(log.contains("CRegisterPopupForm::settingsSaved"));
        // Saved, yet not registered until the daemon says so.
        QCOMPARE(storedSettings().regflag(), 0);
        QTest::mouseClick(pPopup->popup(), Qt::LeftButton);
        QTest::qWait(300);
        QVERIFY(pPopup);
        QVERIFY(!log.contains("CRegisterPopupForm::closePopupForm"));
    }

    // The connection attempt reports a drop twice: the popup closes, the form stays.
    void connectionLostTwice()
    {
        Test::CLogCapture log(true);
        CRegisterForm* pForm = openForm(0, "+15550123", "Ann");
        QTest::mouseClick(pForm->btnContinue(), Qt::LeftButton);
        QPointer<CRegisterPopupForm> pPopup = m_fixture.top<CRegisterPopupForm>();
        QVERIFY(pPopup);
        Q_EMIT CConnectionManager::instance()->disconnected();
        QVERIFY(!log.contains("CRegisterPopupForm::closePopupForm"));
        Q_EMIT CConnectionManager::instance()->disconnected();
        QVERIFY(log.contains("CRegisterPopupForm::internetConnectionDisconnected2"));
        QTRY_VERIFY(!pPopup);
        QCOMPARE(m_fixture.top<CRegisterForm>(), pForm);
        QVERIFY(storedSettings().mynumber().isEmpty());
    }

    // Offline: No keeps the form as it is; Yes asks for "normal" and goes on.
    void offlineMode_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::newRow("No") << "No";
        QTest::newRow("Yes") << "Yes";
    }

    void offlineMode()
    {
        QFETCH(QString, answer);
        m_fixture.mce().setMode("offline");
        CComposeFixture::answerNextMessageBox(answer);
        CRegisterForm* pForm = openForm(0, "+15550123", "Ann");
        QTest::mouseClick(pForm->btnContinue(), Qt::LeftButton);
        QCOMPARE(m_fixture.top<CRegisterPopupForm>() != nullptr, answer == "Yes");
    }
};

QTEST_MAIN(TestRegistration)
#include "tst_registration.moc"
