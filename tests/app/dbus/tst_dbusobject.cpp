// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>

#include <memory>

#include "cbuscall.h"
#include "clogcapture.h"
#include "cprivatebus.h"
#include "dbusobject.h"

using Tarvik::DBusObject;

class TestDBusObject : public QObject
{
    Q_OBJECT

private:
    Dravo::Test::CPrivateBuses m_buses;
    QDBusConnection m_peer = QDBusConnection(QString());

    std::unique_ptr<Dravo::Test::CLogCapture> m_pLog;

    QDBusMessage call(const QString& service, const QString& path, const QString& interface,
                      const QString& method)
    {
        return Dravo::Test::callAndWait(
            m_peer, QDBusMessage::createMethodCall(service, path, interface, method));
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(m_buses.start(), qPrintable(m_buses.errorString()));
        m_peer = QDBusConnection::connectToBus(m_buses.session().address(), "peer");
        QVERIFY(m_peer.isConnected());
        m_pLog = std::make_unique<Dravo::Test::CLogCapture>(true);
        DBusObject* pObject = DBusObject::instance();
        QVERIFY(pObject);
        QCOMPARE(m_peer.interface()->serviceOwner(DBusObject::serviceName()).value(),
                 QDBusConnection::sessionBus().baseService());
        for (const char* pSig : {"ApplicationStarted", "ApplicationClosed", "RegistrationRequest",
                                 "SendReceiveRequest", "CheckConnectionRequest"}) {
            QVERIFY(m_peer.connect(QString(), DBusObject::objectPath(), "com.qel.TarvikClient",
                                   pSig, this, SLOT(onBusSignal(QDBusMessage))));
        }
    }

    void cleanupTestCase() { m_pLog.reset(); }

    void incomingCall_data()
    {
        // Each row is named after the bus method.
        QTest::addColumn<QString>("interface");
        QTest::addColumn<QString>("signal");
        const QString strClient = "com.qel.TarvikClient";
        QTest::newRow("top_application") << "com.qel.TarvikOsso" << QString("TopApplication");
        QTest::newRow("OpenInbox") << strClient << "OpenInboxRequest";
        QTest::newRow("OnMessagesReceived") << strClient << "MessagesReceived";
        QTest::newRow("OnMessagesSent") << strClient << "MessagesSent";
        QTest::newRow("OnMessagesPartiallySent") << strClient << "MessagesPartiallySent";
        QTest::newRow("OnMessagesSendFailed") << strClient << "MessagesSendFailed";
        QTest::newRow("OnRegistrationSucceed") << strClient << "RegistrationSucceed";
        QTest::newRow("OnRegistrationFailed") << strClient << "RegistrationFailed";
        QTest::newRow("OnConnectionCheckSucceed") << strClient << "ConnectionCheckSucceed";
        QTest::newRow("OnConnectionCheckFailed") << strClient << "ConnectionCheckFailed";
    }

    // Every bus call is logged under its slot's name and becomes exactly one Qt signal,
    // the matching one, even with nobody listening.
    void incomingCall()
    {
        QFETCH(QString, interface);
        QFETCH(QString, signal);
        const QString method = QTest::currentDataTag();

        DBusObject* pObject = DBusObject::instance();
        const QMetaObject* pMeta = pObject->metaObject();
        QList<QSignalSpy*> lstSpies;
        QStringList lstNames;
        for (int i = pMeta->methodOffset(); i < pMeta->methodCount(); ++i) {
            const QMetaMethod m = pMeta->method(i);
            if (m.methodType() != QMetaMethod::Signal)
                continue;
            lstSpies << new QSignalSpy(pObject, m);
            lstNames << QString::fromLatin1(m.name());
        }
        QCOMPARE(lstSpies.size(), 15);
        m_pLog->clear();

        const QDBusMessage reply =
            call(DBusObject::serviceName(), DBusObject::objectPath(), interface, method);
        QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
        QCOMPARE(m_pLog->lines(), QStringList{"Tarvik::DBusObject::" + method});
        for (int i = 0; i < lstSpies.size(); ++i)
            QCOMPARE(lstSpies.at(i)->count(), lstNames.at(i) == signal ? 1 : 0);
        qDeleteAll(lstSpies);
    }

    void outgoingSignal_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("ApplicationStarted") << "ApplicationStarted";
        QTest::newRow("ApplicationClosed") << "ApplicationClosed";
        QTest::newRow("RegistrationRequest") << "RegistrationRequest";
        QTest::newRow("SendReceiveRequest") << "SendReceiveRequest";
        QTest::newRow("CheckConnectionRequest") << "CheckConnectionRequest";
    }

    // Each operation logs its name and puts exactly its own signal on the bus, from the
    // client's path with the client interface.
    void outgoingSignal()
    {
        QFETCH(QString, name);
        const QMap<QString, void (DBusObject::*)()> operations = {
            {"ApplicationStarted", &DBusObject::EmitApplicationStarted},
            {"ApplicationClosed", &DBusObject::EmitApplicationClosed},
            {"RegistrationRequest", &DBusObject::EmitRegistrationRequest},
            {"SendReceiveRequest", &DBusObject::EmitSendReceiveRequest},
            {"CheckConnectionRequest", &DBusObject::EmitCheckConnectionRequest}};
        m_lstBusSignals.clear();
        m_pLog->clear();

        (DBusObject::instance()->*operations.value(name))();
        QCOMPARE(m_pLog->lines(), QStringList{"Tarvik::DBusObject::Emit" + name});
        QTRY_COMPARE(m_lstBusSignals.size(), 1);
        const QDBusMessage& msg = m_lstBusSignals.first();
        QCOMPARE(msg.member(), name);
        QCOMPARE(msg.path(), DBusObject::objectPath());
        QCOMPARE(msg.interface(), QString("com.qel.TarvikClient"));
        QCOMPARE(msg.service(), QDBusConnection::sessionBus().baseService());
        QVERIFY(msg.arguments().isEmpty());
    }

public Q_SLOTS:
    void onBusSignal(const QDBusMessage& message) { m_lstBusSignals << message; }

private:
    QList<QDBusMessage> m_lstBusSignals;
};

QTEST_GUILESS_MAIN(TestDBusObject)
#include "tst_dbusobject.moc"
