// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QApplication>
#include <QDBusMessage>
#include <QDir>
#include <QTest>

#include "clogcapture.h"
#include "cmainformstack.h"
#include "cmainmenuform.h"
#include "cmainwindow.h"
#include "ctextpopupform.h"
#include "ctexts.h"
#include "shellfixture.h"

using namespace Dravo;
using TarvikTest::factoryCalls;

class TestCMainFormStack : public QObject
{
    Q_OBJECT

private:
    TarvikTest::CShellFixture m_fixture;
    std::unique_ptr<Test::CLogCapture> m_pLog;
    CMainWindow* m_pWindow = nullptr;

    CMainFormStack* stack() const { return m_pWindow->formStack(); }
    CAsyncTStorage* storage() const { return CAsyncTStorage::getInstance(1); }

    static CTSettings settings(int iRegflag, const QString& strNumber, const QString& strName)
    {
        CTSettings s;
        s.setRegflag(iRegflag);
        s.setMynumber(strNumber);
        s.setScreenname(strName);
        s.setVersion("1.0.5");
        return s;
    }

    QList<CTextPopupForm*> popups() const
    {
        QList<CTextPopupForm*> lst;
        for (int i = 0; i < stack()->count(); ++i) {
            if (auto* p = qobject_cast<CTextPopupForm*>(stack()->widget(i)))
                lst << p;
        }
        return lst;
    }

    // A window past its start: settings read, registered, shown.
    void startRegistered()
    {
        Q_EMIT storage()->signalSettingsGotten(true, settings(1, "+15550001", "Ana"));
        QVERIFY(m_pWindow->isVisible());
        QCOMPARE(stack()->count(), 1);
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_fixture.start());
        m_pLog = std::make_unique<Test::CLogCapture>(true);
    }

    void cleanupTestCase() { m_pLog.reset(); }

    void init()
    {
        factoryCalls().clear();
        m_pLog->clear();
        m_pWindow = new CMainWindow();
    }

    void cleanup()
    {
        delete m_pWindow;
        m_pWindow = nullptr;
    }

    void startsHiddenWithMenuAtBottom()
    {
        QVERIFY(!m_pWindow->isVisible());
        QCOMPARE(m_pWindow->geometry(), QRect(0, 0, 800, 450));
        QCOMPARE(stack()->count(), 1);
        QVERIFY(qobject_cast<CMainMenuForm*>(stack()->widget(0)));
        QCOMPARE(m_pWindow->windowTitle(), QString("tarvik"));
    }

    void registrationDecision_data()
    {
        QTest::addColumn<int>("regflag");
        QTest::addColumn<QString>("mynumber");
        QTest::addColumn<QString>("screenname");
        QTest::addColumn<bool>("registerForm");
        QTest::newRow("registered") << 1 << "+15550001" << QString("Ana") << false;
        QTest::newRow("fresh") << 0 << "" << QString() << true;
        QTest::newRow("flag without number") << 1 << "" << QString("Ana") << true;
        QTest::newRow("number without flag") << 0 << "+15550001" << QString("Ana") << true;
        QTest::newRow("odd flag") << 2 << "+15550001" << QString("Ana") << true;
    }

    // The registration form goes over the menu unless the account is registered; a
    // half-finished registration is shown prefilled. The window is shown either way, and
    // a second settings answer changes nothing.
    void registrationDecision()
    {
        QFETCH(int, regflag);
        QFETCH(QString, mynumber);
        QFETCH(QString, screenname);
        QFETCH(bool, registerForm);

        QSignalSpy spyShow(stack(), &CMainFormStack::signalShowMainWindow);
        Q_EMIT storage()->signalSettingsGotten(true, settings(regflag, mynumber, screenname));
        QCOMPARE(spyShow.count(), 1);
        QVERIFY(m_pWindow->isVisible());
        QVERIFY(qobject_cast<CMainMenuForm*>(stack()->widget(0)));
        if (registerForm) {
            QCOMPARE(factoryCalls().size(), 1);
            const TarvikTest::FactoryCall& call = factoryCalls().first();
            QCOMPARE(call.strKind, QString("register"));
            QCOMPARE(call.iType, int(CFormFactory::eRegisterNew));
            QCOMPARE(call.lstArgs, QStringList({mynumber, screenname}));
            QCOMPARE(stack()->count(), 2);
            QCOMPARE(stack()->currentWidget(), call.pForm);
        } else {
            QVERIFY(factoryCalls().isEmpty());
            QCOMPARE(stack()->count(), 1);
        }

        // A later answer, meant for another screen, reaches the stack no more.
        Q_EMIT storage()->signalSettingsGotten(true, settings(0, "", ""));
        QCOMPARE(spyShow.count(), 1);
        QCOMPARE(factoryCalls().size(), registerForm ? 1 : 0);
        QCOMPARE(stack()->count(), registerForm ? 2 : 1);
    }

    // Unreadable settings: a critical line, no form, the window stays hidden for good.
    void settingsUnreadable()
    {
        Q_EMIT storage()->signalSettingsGotten(false, CTSettings());
        QVERIFY(m_pLog->contains(
            "CMainFormStack::settingsGotten: failed to get settings from storage"));
        QVERIFY(!m_pWindow->isVisible());
        Q_EMIT storage()->signalSettingsGotten(true, settings(0, "", ""));
        QVERIFY(!m_pWindow->isVisible());
        QCOMPARE(stack()->count(), 1);
        QVERIFY(factoryCalls().isEmpty());
    }

    // However many notifications arrive, one popup; after it was tapped away, the next
    // notification brings a new one.
    void onePopupAtATime()
    {
        startRegistered();
        for (int i = 0; i < 3; ++i)
            QCOMPARE(m_fixture.callClient("OnMessagesReceived").type(), QDBusMessage::ReplyMessage);
        QCOMPARE(popups().size(), 1);
        CTextPopupForm* pPopup = popups().first();
        QCOMPARE(pPopup->text(), QString("New tarviks received"));
        QCOMPARE(stack()->currentWidget(), pPopup);
        QVERIFY(stack()->isNewMessagesPopupOpen());
        QCOMPARE(m_pLog->count("CMainFormStack::openNewMessagesReceivedPopup show alert"), 1);
        // The menu stays visible beneath the popup, and the title is the menu's.
        QVERIFY(stack()->widget(0)->isVisible());
        QCOMPARE(m_pWindow->windowTitle(), QString("tarvik"));

        QPointer<CTextPopupForm> guard(pPopup);
        QTest::mouseClick(pPopup->popup(), Qt::LeftButton);
        QTest::mouseClick(pPopup->popup(), Qt::LeftButton);  // a second tap before the close
        QTRY_VERIFY(guard.isNull());
        QVERIFY(!stack()->isNewMessagesPopupOpen());
        QCOMPARE(stack()->count(), 1);

        QCOMPARE(m_fixture.callClient("OnMessagesReceived").type(), QDBusMessage::ReplyMessage);
        QCOMPARE(popups().size(), 1);
        QVERIFY(popups().first() != nullptr);
    }

    // OpenInbox pushes a new inbox every time; the popup follows half a second later
    // unless one is already open.
    void openInbox()
    {
        startRegistered();
        QCOMPARE(m_fixture.callClient("OpenInbox").type(), QDBusMessage::ReplyMessage);
        QCOMPARE(factoryCalls().size(), 1);
        QCOMPARE(factoryCalls().at(0).strKind, QString("inbox"));
        QCOMPARE(stack()->currentWidget(), factoryCalls().at(0).pForm);
        QVERIFY(popups().isEmpty());
        QTRY_COMPARE(popups().size(), 1);
        QCOMPARE(stack()->currentWidget(), popups().first());
        QCOMPARE(stack()->indexOf(factoryCalls().at(0).pForm), 1);

        // With the popup open: another inbox over it, and no second popup.
        QCOMPARE(m_fixture.callClient("OpenInbox").type(), QDBusMessage::ReplyMessage);
        QCOMPARE(factoryCalls().size(), 2);
        QVERIFY(factoryCalls().at(1).pForm != factoryCalls().at(0).pForm);
        QCOMPARE(stack()->currentWidget(), factoryCalls().at(1).pForm);
        QTRY_COMPARE(m_pLog->count("CMainFormStack::openNewMessagesReceivedPopup"), 2);
        QCOMPARE(popups().size(), 1);
        QCOMPARE(stack()->count(), 4);
    }

    // A notification and OpenInbox while the settings are still being read (window hidden):
    // once read, the registration form goes over the inbox, the one popup stays on top, and
    // tapping it away leaves the registration form.
    void notificationsBeforeSettings()
    {
        QCOMPARE(m_fixture.callClient("OnMessagesReceived").type(), QDBusMessage::ReplyMessage);
        QCOMPARE(m_fixture.callClient("OpenInbox").type(), QDBusMessage::ReplyMessage);
        QVERIFY(!m_pWindow->isVisible());
        Q_EMIT storage()->signalSettingsGotten(true, settings(0, "", ""));
        QVERIFY(m_pWindow->isVisible());
        QCOMPARE(factoryCalls().size(), 2);
        QCOMPARE(factoryCalls().at(1).strKind, QString("register"));
        QCOMPARE(popups().size(), 1);
        CTextPopupForm* pPopup = popups().first();
        QCOMPARE(stack()->currentWidget(), pPopup);
        QCOMPARE(stack()->indexOf(factoryCalls().at(1).pForm), stack()->count() - 2);
        QTRY_COMPARE(m_pLog->count("CMainFormStack::openNewMessagesReceivedPopup"), 2);
        QCOMPARE(popups().size(), 1);

        QPointer<CTextPopupForm> guard(pPopup);
        QTest::mouseClick(pPopup->popup(), Qt::LeftButton);
        QTRY_VERIFY(guard.isNull());
        QCOMPARE(stack()->currentWidget(), factoryCalls().at(1).pForm);
    }

    // The popup panel sits centred within its size limits; a picture is kept for review.
    void popupGeometryAndPicture()
    {
        startRegistered();
        stack()->openNewMessagesReceivedPopup();
        CTextPopupForm* pPopup = popups().value(0);
        QVERIFY(pPopup);
        QVERIFY(QTest::qWaitForWindowExposed(m_pWindow));
        const QRect panel = pPopup->popup()->geometry();
        QVERIFY(panel.width() >= 350 && panel.width() <= 450);
        QVERIFY(panel.height() >= 150 && panel.height() <= 250);
        QVERIFY(qAbs(panel.center().x() - pPopup->width() / 2) <= 1);
        QVERIFY(qAbs(panel.center().y() - pPopup->height() / 2) <= 1);
        QDir().mkpath(TARVIK_BINARY_DIR "/screenshots");
        QVERIFY(m_pWindow->grab().save(TARVIK_BINARY_DIR "/screenshots/popup.png"));
    }
};

QTEST_MAIN(TestCMainFormStack)
#include "tst_cmainformstack.moc"
