// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QDBusConnection>
#include <QNetworkInformation>
#include <QSignalSpy>
#include <QtTest>

#include "cbuscall.h"
#include "cconnectionmanager.h"
#include "clogcapture.h"
#include "cprivatebus.h"

using namespace Dravo;
using namespace Dravo::Test;

namespace {

// Logged when a request's time-out runs out.
const QString kErrorFailed = QStringLiteral(
    "CConnectionManager::my_connection_handler CON_IC_CONNECTION_ERROR_CONNECTION_FAILED");

}  // namespace

class TestConnectionManager : public QObject
{
    Q_OBJECT

private:
    // "C" for every connected(), "D" for every disconnected(), in order.
    QStringList m_lstEvents;
    CPrivateBuses m_buses;
    CHelperProcess m_fakes;

    void setNetworkState(uint state)
    {
        QVERIFY(setFakeNetworkState(QDBusConnection::systemBus(), state));
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(m_buses.start(), qPrintable(m_buses.errorString()));
#if defined(TARVIK_BUS_SITUATION_NetworkManager)
        QVERIFY(m_fakes.start(binaryPath(QStringLiteral("tarvik-fakes")),
                              {QStringLiteral("--nm"), QStringLiteral("online")}));
#elif defined(TARVIK_BUS_SITUATION_NoSystemBus)
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/tarvik-test-bus");
#endif
        CConnectionManager* manager = CConnectionManager::instance();
        connect(manager, &CConnectionManager::connected, this,
                [this]() { m_lstEvents.append(QStringLiteral("C")); });
        connect(manager, &CConnectionManager::disconnected, this,
                [this]() { m_lstEvents.append(QStringLiteral("D")); });
    }

    void init()
    {
        m_lstEvents.clear();
    }

#if !defined(TARVIK_BUS_SITUATION_NetworkManager)
    // Without NetworkManager (or without any system bus) the request is still
    // answered: the glib backend, or no backend at all, counts as up.
    void requestWithoutNetworkManagerIsAnswered()
    {
        CConnectionManager* manager = CConnectionManager::instance();
        // The client prepares the backend after start; a request may come while it loads.
        manager->prepare();
        QVERIFY(manager->requestConnection());
        QTRY_COMPARE(m_lstEvents, QStringList{QStringLiteral("C")});
        QVERIFY(manager->backendName() != QLatin1String("networkmanager"));

        QVERIFY(manager->requestConnection());
        QTRY_COMPARE(m_lstEvents.size(), 2);
        QCOMPARE(m_lstEvents.last(), QStringLiteral("C"));
    }
#else
    void requestWhileUpAnswersConnected()
    {
        CConnectionManager* manager = CConnectionManager::instance();
        // Loading the backend ahead of a request reports nothing.
        manager->prepare();
        QTRY_COMPARE(manager->backendName(), QStringLiteral("networkmanager"));
        QTest::qWait(50);
        QVERIFY(m_lstEvents.isEmpty());
        QVERIFY(manager->requestConnection());
        QVERIFY(m_lstEvents.isEmpty());  // never from inside requestConnection()
        QTRY_COMPARE(m_lstEvents, QStringList{QStringLiteral("C")});
        QCOMPARE(manager->backendName(), QStringLiteral("networkmanager"));
        // A second "connected" for the one request would come before the next change's answer.
        setNetworkState(20);
        QTRY_COMPARE(m_lstEvents, (QStringList{"C", "D"}));
        setNetworkState(70);
        QTRY_COMPARE(m_lstEvents.size(), 3);
    }

    // Every change after a request is reported; states short of the Internet
    // (local, site, asleep) count as down. Each row ends online again.
    void changesAreReported_data()
    {
        QTest::addColumn<QList<uint> >("states");
        QTest::addColumn<QStringList>("events");
        QTest::newRow("down, up") << QList<uint>{20, 70} << QStringList{"D", "C"};
        QTest::newRow("asleep, up") << QList<uint>{10, 70} << QStringList{"D", "C"};
        QTest::newRow("local, site, up") << QList<uint>{50, 60, 70} << QStringList{"D", "C"};
        QTest::newRow("flapping") << QList<uint>{20, 70, 20, 70, 30, 70}
                                  << QStringList{"D", "C", "D", "C", "D", "C"};
    }

    void changesAreReported()
    {
        QFETCH(QList<uint>, states);
        QFETCH(QStringList, events);
        for (uint state : states) {
            setNetworkState(state);
        }
        QTRY_COMPARE(m_lstEvents, events);
    }

    void requestWhileOfflineTimesOut()
    {
        CConnectionManager* manager = CConnectionManager::instance();
        setNetworkState(20);
        QTRY_COMPARE(m_lstEvents, QStringList{QStringLiteral("D")});
        QVERIFY(manager->activeConnections().isEmpty());
        m_lstEvents.clear();
        CLogCapture log;
        manager->setConnectTimeout(400);
        QVERIFY(manager->requestConnection());
        // Reported at once, so no popup waits for the time-out: the time-out, which logs
        // its failure, has not run when the first report arrives...
        QTRY_COMPARE(m_lstEvents, QStringList{QStringLiteral("D")});
        QVERIFY(!log.contains(kErrorFailed));
        // ...and again when the time-out runs out.
        QTRY_COMPARE(m_lstEvents, (QStringList{QStringLiteral("D"), QStringLiteral("D")}));
        QVERIFY(log.contains(kErrorFailed));
        setNetworkState(70);
        QTRY_COMPARE(m_lstEvents.size(), 3);
        QCOMPARE(m_lstEvents.last(), QStringLiteral("C"));
    }

    // The second request replaces the first: one answer, and later changes are
    // reported once, not once per request made.
    void twoRequestsInARow()
    {
        CConnectionManager* manager = CConnectionManager::instance();
        QVERIFY(manager->requestConnection());
        QVERIFY(manager->requestConnection());
        QTRY_COMPARE(m_lstEvents, QStringList{QStringLiteral("C")});
        setNetworkState(20);
        QTRY_COMPARE(m_lstEvents, (QStringList{QStringLiteral("C"), QStringLiteral("D")}));
        setNetworkState(70);
        QTRY_COMPARE(m_lstEvents.size(), 3);
        QCOMPARE(m_lstEvents,
                 (QStringList{QStringLiteral("C"), QStringLiteral("D"), QStringLiteral("C")}));
    }

    void networkManagerGoneReportsDown()
    {
        m_fakes.stop();
        QTRY_COMPARE_WITH_TIMEOUT(m_lstEvents, QStringList{QStringLiteral("D")}, 5000);
        QVERIFY(m_fakes.start(binaryPath(QStringLiteral("tarvik-fakes")),
                              {QStringLiteral("--nm"), QStringLiteral("online")}));
        QTRY_COMPARE_WITH_TIMEOUT(m_lstEvents,
                                  (QStringList{QStringLiteral("D"), QStringLiteral("C")}), 5000);
        // The new NetworkManager's own reports count again: a request made while
        // it says offline is not answered as online.
        setNetworkState(20);
        QTRY_COMPARE(m_lstEvents.size(), 3);
        m_lstEvents.clear();
        QVERIFY(CConnectionManager::instance()->requestConnection());
        QTRY_COMPARE(m_lstEvents, QStringList{QStringLiteral("D")});
        setNetworkState(70);
        QTRY_COMPARE(m_lstEvents, (QStringList{QStringLiteral("D"), QStringLiteral("C")}));
    }

    void quitStopsReporting()
    {
        CConnectionManager* manager = CConnectionManager::instance();
        manager->onAppQuit();
        QVERIFY(!manager->isRequestActive());
        // The change reaches the process (the network information reports it) and the
        // manager, disconnected at quit, says nothing.
        QSignalSpy changed(QNetworkInformation::instance(),
                           &QNetworkInformation::reachabilityChanged);
        setNetworkState(20);
        QVERIFY(changed.wait(5000));
        QVERIFY(m_lstEvents.isEmpty());
    }
#endif
};

QTEST_GUILESS_MAIN(TestConnectionManager)
#include "tst_cconnectionmanager.moc"
