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
        QCOMPARE(m_pLog->lines().mid(0, 2),
                 QStringList({"Tarvik::DBusObject::DBusObject constructor start",
                              "Tarvik::DBusObject::DBusObject constructor end"}));
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
        QTest::addColumn<QString>("interface");
        QTest::addColumn<QString>("method");
        QTest::addColumn<QString>("signal");
        const QString strClient = "com.qel.TarvikClient";
        QTest::newRow("top_application") << "com.qel.TarvikOsso"
                                         << "top_application"
                                         << "TopApplication";
        QTest::newRow("OpenInbox") << strClient << "OpenInbox"
                                   << "OpenInboxRequest";
        QTest::newRow("OnMessagesReceived") << strClient << "OnMessagesReceived"
                                            << "MessagesReceived";
        QTest::newRow("OnMessagesSent") << strClient << "OnMessagesSent"
                                        << "MessagesSent";
        QTest::newRow("OnMessagesPartiallySent") << strClient << "OnMessagesPartiallySent"
                                                 << "MessagesPartiallySent";
        QTest::newRow("OnMessagesSendFailed") << strClient << "OnMessagesSendFailed"
                                              << "MessagesSendFailed";
        QTest::newRow("OnRegistrationSucceed") << strClient << "OnRegistrationSucceed"
                                               << "RegistrationSucceed";
        QTest::newRow("OnRegistrationFailed") << strClient << "OnRegistrationFailed"
                                              << "RegistrationFailed";
        QTest::newRow("OnConnectionCheckSucceed") << strClient << "OnConnectionCheckSucceed"
                                                  << "ConnectionCheckSucceed";
        QTest::newRow("OnConnectionCheckFailed") << strClient << "OnConnectionCheckFailed"
                                                 << "ConnectionCheckFailed";
    }

    // Every bus call is logged under its slot's name and becomes exactly one Qt signal,
    // the matching one, even with nobody listening.
    void incomingCall()
    {
        QFETCH(QString, interface);
        QFETCH(QString, method);
        QFETCH(QString, signal);

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
