// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QApplication>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusReply>
#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

#include "cdevicemodeguard.h"
#include "cprivatebus.h"

using namespace Dravo;
using namespace Dravo::Test;

Q_DECLARE_METATYPE(Dravo::CDeviceModeGuard::eModeSource)

namespace {

const QString kPrefix = QStringLiteral("CComposeTarvikForm::onBtnSendClick");

QDBusInterface control(const QString& service, const QString& path)
{
    return QDBusInterface(service, path, QStringLiteral("org.tarvik.Fake.Control"),
                          QDBusConnection::systemBus());
}

QVariant nmProperty(const char* name)
{
    QDBusInterface nm(QStringLiteral("org.freedesktop.NetworkManager"),
                      QStringLiteral("/org/freedesktop/NetworkManager"),
                      QStringLiteral("org.freedesktop.NetworkManager"),
                      QDBusConnection::systemBus());
    return nm.property(name);
}

QStringList mceRequestedModes()
{
    QDBusReply<QStringList> reply =
        control(QStringLiteral("com.nokia.mce"), QStringLiteral("/com/nokia/mce/request"))
            .call(QStringLiteral("RequestedModes"));
    return reply.isValid() ? reply.value() : QStringList{QStringLiteral("<no answer>")};
}

}  // namespace

class TestDeviceModeGuard : public QObject
{
    Q_OBJECT

private:
    CPrivateBuses m_buses;

private Q_SLOTS:
    void initTestCase() { QVERIFY2(m_buses.start(), qPrintable(m_buses.errorString())); }

    void guard_data()
    {
        QTest::addColumn<QStringList>("fakes");  // tarvik-fakes arguments; empty: no service
        QTest::addColumn<QString>("mode");
        QTest::addColumn<CDeviceModeGuard::eModeSource>("source");
        QTest::addColumn<QString>("answer");  // "", "yes", "no", "close", "parent gone"
        QTest::addColumn<bool>("proceed");

        const auto mce = CDeviceModeGuard::eSourceMce;
        const auto nm = CDeviceModeGuard::eSourceNetworkManager;
        const auto row = [](const char* pTag, const char* pFakes) -> QTestData& {
            return QTest::newRow(pTag)
                   << QString::fromLatin1(pFakes).split(' ', Qt::SkipEmptyParts);
        };
        row("MCE normal", "--mce normal") << "normal" << mce << "" << true;
        row("MCE Offline in capitals", "--mce Offline") << "Offline" << mce << "" << true;
        row("MCE offline, yes", "--mce offline") << "offline" << mce << "yes" << true;
        row("MCE flight, no", "--mce flight") << "flight" << mce << "no" << false;
        row("MCE offline, box closed", "--mce offline") << "offline" << mce << "close" << false;
        row("MCE offline, parent gone", "--mce offline")
            << "offline" << mce << "parent gone" << false;
        row("MCE asked before NetworkManager", "--mce normal --nm asleep")
            << "normal" << mce << "" << true;
        row("NetworkManager asleep, yes", "--nm asleep") << "offline" << nm << "yes" << true;
        row("NetworkManager radios off, no", "--nm online --nm-radios-off")
            << "flight" << nm << "no" << false;
        row("NetworkManager online", "--nm online") << "normal" << nm << "" << true;
        row("neither service", "") << "normal" << CDeviceModeGuard::eSourceNone << "" << true;
    }

    void guard()
    {
        QFETCH(QStringList, fakes);
        QFETCH(QString, mode);
        QFETCH(CDeviceModeGuard::eModeSource, source);
        QFETCH(QString, answer);
        QFETCH(bool, proceed);

        CHelperProcess helper;
        if (!fakes.isEmpty()) {
            QVERIFY(helper.start(binaryPath(QStringLiteral("tarvik-fakes")), fakes));
        }
        QScopedPointer<QWidget> parent(new QWidget);
        CDeviceModeGuard guard(kPrefix, parent.data());
        QSignalSpy finished(&guard, &CDeviceModeGuard::finished);
        guard.start();
        if (answer.isEmpty()) {
            QTRY_COMPARE(finished.count(), 1);
            QVERIFY(!guard.prompt());
        } else {
            QTRY_VERIFY(guard.prompt());
            QMessageBox* box = guard.prompt();
            QVERIFY(box->isVisible());
            QCOMPARE(box->windowModality(), Qt::ApplicationModal);
            QCOMPARE(box->text(), QStringLiteral("Exit offline mode?"));
            QCOMPARE(box->windowTitle(), QStringLiteral(" "));
            QCOMPARE(box->icon(), QMessageBox::NoIcon);
            QCOMPARE(box->standardButtons(), QMessageBox::Yes | QMessageBox::No);
            QTest::qWait(50);
            QCOMPARE(finished.count(), 0);  // waits for the user
            if (answer == QLatin1String("yes")) {
                QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton);
            } else if (answer == QLatin1String("no")) {
                QTest::mouseClick(box->button(QMessageBox::No), Qt::LeftButton);
            } else if (answer == QLatin1String("close")) {
                QTest::keyClick(box, Qt::Key_Escape);
            } else {
                parent.reset();
            }
            QTRY_COMPARE(finished.count(), 1);
        }
        QCOMPARE(finished.at(0).at(0).toBool(), proceed);
        QCOMPARE(guard.mayProceed(), proceed);
        QCOMPARE(guard.deviceMode(), mode);
        QCOMPARE(guard.modeSource(), source);

        // Yes asks for "normal"; No leaves the device as it was. The guard asks over the
        // same bus connection as the control call, so the fake has seen any request of the
        // guard before it answers that call: no need, and no use, to poll for nothing.
        if (source == CDeviceModeGuard::eSourceMce) {
            if (answer == QLatin1String("yes"))
                QTRY_COMPARE(mceRequestedModes(), QStringList{QStringLiteral("normal")});
            else
                QCOMPARE(mceRequestedModes(), QStringList());
        } else if (source == CDeviceModeGuard::eSourceNetworkManager && !answer.isEmpty()) {
            if (proceed) {
                QTRY_VERIFY(nmProperty("NetworkingEnabled").toBool());
                QTRY_VERIFY(nmProperty("WirelessEnabled").toBool());
                QTRY_VERIFY(nmProperty("WwanEnabled").toBool());
                QDBusReply<int> calls = control(QStringLiteral("org.freedesktop.NetworkManager"),
                                                QStringLiteral("/org/freedesktop/NetworkManager"))
                                            .call(QStringLiteral("EnableCalls"));
                QCOMPARE(calls.value(), 1);
            } else {
                QTest::qWait(100);
                QVERIFY(!nmProperty("WirelessEnabled").toBool());
                QVERIFY(!nmProperty("WwanEnabled").toBool());
            }
        }
    }
};

QTEST_MAIN(TestDeviceModeGuard)
#include "tst_cdevicemodeguard.moc"
