// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QDBusAbstractAdaptor>
#include <QDBusConnectionInterface>

#include "cdesktopnotifier.h"
#include "cfakenotifications.h"
#include "clogcapture.h"
#include "ctexts.h"
#include "folderfixture.h"

using namespace Dravo;
using Dravo::Test::CFakeNotifications;
using TarvikTest::makeTarvik;

class TestDesktopNotifier : public QObject
{
    Q_OBJECT

    TarvikTest::CShellFixture m_fixture;
    CFakeNotifications m_server;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_fixture.start());
        QVERIFY(m_fixture.peer().registerObject("/org/freedesktop/Notifications", &m_server,
                                                QDBusConnection::ExportAllSlots));
    }

    void body_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QString>("body");
        QTest::newRow("one") << QStringList{"Aino"} << "Aino";
        QTest::newRow("repeated") << QStringList{"Aino", "Jonas", "Aino"} << "Aino, Jonas";
        QTest::newRow("more") << QStringList{"A", "B", "C", "D", "E"} << "A, B, C and 2 more";
        QTest::newRow("markup") << QStringList{"<b>M</b> & <a href='x'>"}
                                << "&lt;b&gt;M&lt;/b&gt; &amp; &lt;a href='x'&gt;";
    }

    void body()
    {
        QFETCH(QStringList, names);
        QFETCH(QString, body);
        QCOMPARE(CTexts::senderList(names), body);
    }

    // Unread senders go out in one notification, a second notice updates it, and its
    // action opens the inbox; with no server nothing breaks.
    void notifiesUpdatesAndOpensInbox()
    {
        CTarvik read = makeTarvik("old", 0);
        read.setScreenname("Reader");
        QVERIFY(
            TarvikTest::saveTarviks({makeTarvik("new", 1), read}, CAsyncTStorage::eFolderInbox));
        CDesktopNotifier notifier(nullptr);
        QVERIFY(m_fixture.peer().interface()->registerService("org.freedesktop.Notifications"));

        QSignalSpy notified(&notifier, &CDesktopNotifier::notified);
        m_fixture.callClient("OnMessagesReceived");
        QVERIFY(notified.wait(5000));
        QCOMPARE(m_server.m_lstCalls.size(), 1);
        const CFakeNotifications::CCall& call = m_server.m_lstCalls.first();
        QCOMPARE(call.strApp, QString("tarvik"));
        QCOMPARE(call.uReplaces, 0u);
        QCOMPARE(call.strSummary, QString("New tarviks received"));
        QCOMPARE(call.strBody, QString("Aino"));
        QVERIFY(call.lstActions.contains("default"));

        m_fixture.callClient("OnMessagesReceived");
        QVERIFY(notified.wait(5000));
        QCOMPARE(m_server.m_lstCalls.last().uReplaces, 1u);

        QSignalSpy openInbox(Tarvik::DBusObject::instance(), &Tarvik::DBusObject::OpenInboxRequest);
        QDBusMessage action = QDBusMessage::createSignal(
            "/org/freedesktop/Notifications", "org.freedesktop.Notifications", "ActionInvoked");
        action << 1u << QString("default");
        QVERIFY(m_fixture.peer().send(action));
        QVERIFY(openInbox.wait(5000));

        Test::CLogCapture log;
        QVERIFY(m_fixture.peer().interface()->unregisterService("org.freedesktop.Notifications"));
        m_fixture.callClient("OnMessagesReceived");
        QTRY_VERIFY_WITH_TIMEOUT(log.containsPrefix("CDesktopNotifier: no notification: "), 6000);
        QCOMPARE(m_server.m_lstCalls.size(), 2);
    }
};

QTEST_MAIN(TestDesktopNotifier)
#include "tst_cdesktopnotifier.moc"
