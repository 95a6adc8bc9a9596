// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QSignalSpy>
#include <QTest>

#include <memory>

#include "cbuscall.h"
#include "clogcapture.h"
#include "cossocontext.h"
#include "cprivatebus.h"

using Dravo::COssoContext;

namespace {
}  // namespace

class TestCOssoContext : public QObject
{
    Q_OBJECT

private:
    Dravo::Test::CPrivateBuses m_buses;
    QDBusConnection m_caller = QDBusConnection(QString());
    std::unique_ptr<Dravo::Test::CLogCapture> m_pLog;

    // Sends one call from a second connection and waits for its reply without blocking
    // the loop that serves the context.
    QDBusMessage call(const QString& interface, const QString& method, const QList<QVariant>& args)
    {
        QDBusMessage msg = QDBusMessage::createMethodCall(
            COssoContext::serviceName(), COssoContext::objectPath(), interface, method);
        msg.setArguments(args);
        return Dravo::Test::callAndWait(m_caller, msg);
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(m_buses.start(), qPrintable(m_buses.errorString()));
        m_caller = QDBusConnection::connectToBus(m_buses.session().address(), "caller");
        QVERIFY(m_caller.isConnected());
        m_pLog = std::make_unique<Dravo::Test::CLogCapture>(true);
        QVERIFY(COssoContext::instance()->isInitialized());
        QVERIFY(m_pLog->lines().contains("COssoContext::init: Initialization..."));
        QVERIFY(m_pLog->lines().contains("COssoContext::init: Initialized"));
        QCOMPARE(QDBusConnection::sessionBus()
                     .interface()
                     ->serviceOwner(COssoContext::serviceName())
                     .value(),
                 QDBusConnection::sessionBus().baseService());
    }

    void cleanupTestCase() { m_pLog.reset(); }

    void conversion_data()
    {
        QTest::addColumn<QList<QVariant>>("sent");
        QTest::addColumn<QList<QVariant>>("expected");
        QTest::addColumn<int>("unknownLines");

        QTest::newRow("no arguments") << QList<QVariant>{} << QList<QVariant>{} << 0;
        QTest::newRow("int32") << QList<QVariant>{-42} << QList<QVariant>{-42} << 0;
        QTest::newRow("bool") << QList<QVariant>{true, false} << QList<QVariant>{true, false} << 0;
        QTest::newRow("double truncated") << QList<QVariant>{2.9} << QList<QVariant>{2u} << 0;
        QTest::newRow("double negative") << QList<QVariant>{-3.5} << QList<QVariant>{0u} << 0;
        QTest::newRow("double huge") << QList<QVariant>{1e12} << QList<QVariant>{4294967295u} << 0;
        QTest::newRow("string") << QList<QVariant>{QString("x <&> ü")}
                                << QList<QVariant>{QString("x <&> ü")} << 0;
        QTest::newRow("uint32") << QList<QVariant>{4000000000u} << QList<QVariant>{4000000000u}
                                << 0;
        QTest::newRow("array keeps its place")
            << QList<QVariant>{1, QVariant::fromValue(QStringList{"a", "b"}), QString("z")}
            << QList<QVariant>{1, QVariant(), QString("z")} << 1;
        QTest::newRow("int64 byte path variant")
            << QList<QVariant>{QVariant::fromValue(qint64(7)), QVariant::fromValue(uchar(3)),
                               QVariant::fromValue(QDBusObjectPath("/a")),
                               QVariant::fromValue(QDBusVariant(5))}
            << QList<QVariant>{QVariant(), QVariant(), QVariant(), QVariant()} << 4;
        QTest::newRow("dictionary") << QList<QVariant>{QVariant::fromValue(QVariantMap{{"k", 1}})}
                                    << QList<QVariant>{QVariant()} << 1;
    }

    void conversion()
    {
        QFETCH(QList<QVariant>, sent);
        QFETCH(QList<QVariant>, expected);
        QFETCH(int, unknownLines);

        QSignalSpy spy(COssoContext::instance(), &COssoContext::onOssoEvent);
        m_pLog->clear();
        const QDBusMessage reply = call("org.example.Activate", "open_view", sent);
        QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
        QVERIFY(reply.arguments().isEmpty());
        QCOMPARE(spy.count(), 1);

        const auto event = spy.at(0).at(0).value<COssoContext::OssoEvent>();
        QCOMPARE(event.interface, QString("org.example.Activate"));
        QCOMPARE(event.method, QString("open_view"));
        QCOMPARE(event.arguments.size(), expected.size());
        for (int i = 0; i < expected.size(); ++i) {
            const QVariant& got = event.arguments.at(i);
            const QVariant& want = expected.at(i);
            QVERIFY2(got.metaType() == want.metaType(),
                     qPrintable(QString("argument %1 is %2").arg(i).arg(got.typeName())));
            QCOMPARE(got, want);
        }
        QVERIFY(
            m_pLog->lines().contains("COssoContext::DBus messageorg.example.Activate, open_view"));
        QCOMPARE(m_pLog->lines().filter("COssoContext::DBus message Unknown type:").size(),
                 unknownLines);
    }

    // A call on another path is not the context's: the caller gets an error and no
    // event is emitted.
    void otherPathIsNotTaken()
    {
        QSignalSpy spy(COssoContext::instance(), &COssoContext::onOssoEvent);
        QDBusMessage msg = QDBusMessage::createMethodCall(COssoContext::serviceName(), "/other",
                                                          "org.example.X", "y");
        QCOMPARE(Dravo::Test::callAndWait(m_caller, msg).type(), QDBusMessage::ErrorMessage);
        QCOMPARE(spy.count(), 0);
    }
};

QTEST_GUILESS_MAIN(TestCOssoContext)
#include "tst_cossocontext.moc"
