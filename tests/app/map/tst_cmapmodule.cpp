// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The map plugin as the client uses it: loaded on the first map, never at start-up, and
// the connection placeholder in front of the map while the network is down.
#include <QAbstractButton>
#include <QApplication>
#include <QDBusConnection>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include "capplicationstyle.h"
#include "cbuscall.h"
#include "cconnectionmanager.h"
#include "cformstack.h"
#include "clogcapture.h"
#include "cmapmodule.h"
#include "cplaceholderform.h"
#include "cprivatebus.h"
#include "ctarvik.h"
#include "ctexts.h"
#include "imapmodule.h"
#include "uiresources.h"

using namespace Dravo;
using namespace Dravo::Test;

namespace {
bool isA(QObject* pObject, const char* pszClass)
{
    return pObject && qstrcmp(pObject->metaObject()->className(), pszClass) == 0;
}
}  // namespace

class TestMapModule : public QObject
{
    Q_OBJECT

private:
    CPrivateBuses m_buses;
    CHelperProcess m_fakes;
    std::unique_ptr<CLogCapture> m_pLog;
    CFormStack* m_pStack = nullptr;

    void setNetworkState(uint state)
    {
        QVERIFY(setFakeNetworkState(QDBusConnection::systemBus(), state));
    }

    QWidget* openFromView()
    {
        m_pStack->showForm(new CPlaceholderForm(m_pStack, QStringLiteral("view"), QString()));
        CTarvik tarvik;
        tarvik.setLatitude(59.442);
        tarvik.setLongitude(24.76);
        CForm* pForm = CMapModule::createMapForm(m_pStack, tarvik, 0);
        m_pStack->showForm(pForm);
        return pForm;
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_pLog = std::make_unique<CLogCapture>(true);
        QVERIFY2(m_buses.start(), qPrintable(m_buses.errorString()));
        QVERIFY(m_fakes.start(QStringLiteral(TARVIK_BIN_DIR "/tarvik-fakes"),
                              {QStringLiteral("--nm"), QStringLiteral("offline")}));
        qputenv("TARVIK_PLUGIN_DIR", QByteArray(TARVIK_BINARY_DIR "/lib/tarvik"));
        // No tile server: the placeholder and the form are what is tested here.
        qputenv("TARVIK_TILE_URL", "http://127.0.0.1:1/{z}/{x}/{y}.png");
        initUiResources();
        CApplicationStyle::install();
        CConnectionManager::instance()->setConnectTimeout(1500);
        m_pStack = new CFormStack();
        m_pStack->resize(800, 424);
        m_pStack->show();
    }

    void cleanupTestCase() { delete m_pStack; }

    void clientStartsWithoutWebEngine()
    {
        QTemporaryDir home;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("HOME"), home.path());
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        QProcess client;
        client.setProcessEnvironment(env);
        client.start(QStringLiteral(TARVIK_BIN_DIR "/tarvik"), {QStringLiteral("logtoconsole")});
        QVERIFY(client.waitForStarted(10000));
        // Start-up is over once the contacts plugin, loaded after the window is up, is in.
        auto mappedNow = [&] {
            QFile maps(QStringLiteral("/proc/%1/maps").arg(client.processId()));
            return maps.open(QIODevice::ReadOnly) ? maps.readAll() : QByteArray();
        };
        QTRY_VERIFY_WITH_TIMEOUT(mappedNow().contains("libtarvikcontacts"), 60000);
        QCOMPARE(client.state(), QProcess::Running);
        const QByteArray mapped = mappedNow();
        QVERIFY(mapped.contains("libQt6Widgets"));
        QVERIFY2(!mapped.contains("WebEngine") && !mapped.contains("WebChannel"), "web engine");
        QVERIFY(!mapped.contains("libtarvikmap"));
        client.terminate();
        if (!client.waitForFinished(5000))
            client.kill();
    }

    void placeholderOpensMapWhenConnected()
    {
        QWidget* pForm = openFromView();
        QVERIFY2(CMapModule::module(), qPrintable(CMapModule::errorString()));
        QVERIFY(isA(pForm, "Dravo::CMapFakeForm"));
        QTRY_VERIFY(
            m_pLog->contains(QStringLiteral("CMapFakeForm::internetConnectionDisconnected 1")));
        QTest::qWait(300);
        QCOMPARE(m_pStack->currentWidget(), pForm);

        setNetworkState(70);
        QTRY_VERIFY_WITH_TIMEOUT(isA(m_pStack->currentWidget(), "Dravo::CMapForm"), 5000);
        QVERIFY(m_pLog->contains(QStringLiteral("CMapFakeForm::internetConnectionConnected")));
        QCOMPARE(m_pStack->count(), 3);

        // Back on the map closes it and the placeholder; the view stays.
        QWidget* pMap = m_pStack->currentWidget();
        QAbstractButton* pBack = nullptr;
        for (QAbstractButton* pButton : pMap->findChildren<QAbstractButton*>())
            if (pButton->accessibleName() == CTexts::back())
                pBack = pButton;
        QVERIFY(pBack);
        QTRY_VERIFY(!static_cast<CForm*>(pMap)->buttonsLocked());
        QTest::mouseClick(pBack, Qt::LeftButton);
        QTRY_COMPARE(m_pStack->count(), 1);
        QCOMPARE(static_cast<CPlaceholderForm*>(m_pStack->currentForm())->title(),
                 QStringLiteral("view"));

        // Connected now: the next map opens at once, and Back takes the view with it.
        pForm = openFromView();
        QVERIFY(isA(pForm, "Dravo::CMapForm"));
        m_pStack->closeForm(true, m_pStack->currentForm());
        while (m_pStack->count() > 0)
            m_pStack->closeForm(true, m_pStack->currentForm());
    }

    void placeholderGivesUpOnSecondDisconnect()
    {
        setNetworkState(20);
        QTRY_VERIFY(!CConnectionManager::instance()->isConnected());
        m_pLog->clear();
        QWidget* pForm = openFromView();
        QVERIFY(isA(pForm, "Dravo::CMapFakeForm"));
        QTRY_VERIFY(
            m_pLog->contains(QStringLiteral("CMapFakeForm::internetConnectionDisconnected 1")));
        QTRY_VERIFY_WITH_TIMEOUT(
            m_pLog->contains(QStringLiteral("CMapFakeForm::internetConnectionDisconnected 2")),
            5000);
        QTRY_COMPARE(m_pStack->count(), 1);
        QVERIFY(!m_pLog->containsPrefix(QStringLiteral("CMapForm::CMapForm")));
        m_pStack->closeForm(true, m_pStack->currentForm());
    }
};

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    TestMapModule test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_cmapmodule.moc"
