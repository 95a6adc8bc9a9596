// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QDesktopServices>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QTest>
#include <QUrl>

#include "caboutform.h"
#include "clogcapture.h"
#include "cmainformstack.h"
#include "cmainmenuform.h"
#include "cmainwindow.h"
#include "ctexts.h"
#include "shellfixture.h"

using namespace Dravo;
using TarvikTest::factoryCalls;

// Stands in for the desktop's browser.
class CUrlCatcher : public QObject
{
    Q_OBJECT
public:
    QList<QUrl> m_lstUrls;
public Q_SLOTS:
    void openUrl(const QUrl& url) { m_lstUrls << url; }
};

class TestCMainMenuForm : public QObject
{
    Q_OBJECT

private:
    TarvikTest::CShellFixture m_fixture;
    CMainWindow* m_pWindow = nullptr;
    CUrlCatcher m_urls;

    CMainFormStack* stack() const { return m_pWindow->formStack(); }
    CMainMenuForm* menu() const { return qobject_cast<CMainMenuForm*>(stack()->widget(0)); }
    CAsyncTStorage* storage() const { return CAsyncTStorage::getInstance(1); }

    void clickRow(int iRow)
    {
        QListWidget* pList = menu()->listWidget();
        const QRect rect = pList->visualItemRect(pList->item(iRow));
        QTest::mouseClick(pList->viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());
    }

    // Saves settings through the storage and waits for the save to land.
    void storeSettings(const QString& strNumber, const QString& strName)
    {
        CTSettings s;
        s.setMynumber(strNumber);
        s.setScreenname(strName);
        s.setRegflag(1);
        QSignalSpy spy(storage(), &CAsyncTStorage::signalSettingsSaved);
        QVERIFY(storage()->saveSettings(s, CTSettings::eMaskAll));
        QVERIFY(spy.wait(5000));
        QVERIFY(spy.at(0).at(0).toBool());
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_fixture.start());
        QDesktopServices::setUrlHandler("https", &m_urls, "openUrl");
        QDesktopServices::setUrlHandler("http", &m_urls, "openUrl");
    }

    void init()
    {
        factoryCalls().clear();
        m_urls.m_lstUrls.clear();
        m_pWindow = new CMainWindow();
        // The stack's own start-up read is not under test here.
        disconnect(storage(), &CAsyncTStorage::signalSettingsGotten, stack(), nullptr);
        m_pWindow->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_pWindow));
    }

    void cleanup()
    {
        delete m_pWindow;
        m_pWindow = nullptr;
    }

    void folderRows_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("kind");
        QTest::newRow("send") << 0 << "compose";
        QTest::newRow("inbox") << 1 << "inbox";
        QTest::newRow("outbox") << 2 << "outbox";
        QTest::newRow("sent") << 3 << "sent";
    }

    void folderRows()
    {
        QFETCH(int, row);
        QFETCH(QString, kind);
        clickRow(row);
        QCOMPARE(factoryCalls().size(), 1);
        const TarvikTest::FactoryCall& call = factoryCalls().first();
        QCOMPARE(call.strKind, kind);
        if (kind == "compose") {
            QCOMPARE(call.iType, int(CFormFactory::eComposeNew));
            QCOMPARE(call.lstArgs, QStringList({"", "", "", "0", "0"}));
        }
        QCOMPARE(call.pForm->parentWidget(), stack());
        QCOMPARE(stack()->count(), 2);
        QCOMPARE(stack()->currentWidget(), call.pForm);
        QCOMPARE(m_pWindow->windowTitle(), kind);
    }

    void feedbackOpensBrowserOnly()
    {
        clickRow(CMainMenuForm::eRowFeedback);
        QCOMPARE(m_urls.m_lstUrls, QList<QUrl>{QUrl("https://tarvik.example.org/feedback")});
        QCOMPARE(stack()->count(), 1);
        QVERIFY(factoryCalls().isEmpty());
    }

    // Settings reads the stored number and name and opens re-registration with them.
    void settingsOpensReRegistration()
    {
        storeSettings("+15550002", "Bo <b>");
        clickRow(CMainMenuForm::eRowSettings);
        QTRY_COMPARE(factoryCalls().size(), 1);
        QCOMPARE(factoryCalls().first().strKind, QString("register"));
        QCOMPARE(factoryCalls().first().iType, int(CFormFactory::eRegisterAgain));
        QCOMPARE(factoryCalls().first().lstArgs, QStringList({"+15550002", "Bo <b>"}));
        QCOMPARE(stack()->count(), 2);
    }

    void aboutShowsStoredVersion()
    {
        clickRow(CMainMenuForm::eRowAbout);
        QTRY_COMPARE(stack()->count(), 2);
        auto* pAbout = qobject_cast<CAboutForm*>(stack()->currentWidget());
        QVERIFY(pAbout);
        // The version the database was made with.
        QCOMPARE(pAbout->versionText(), QString("tarvik v 1.0.5 by QEL Communications"));
        QCOMPARE(pAbout->contactText(), "E-mail: " + CAboutForm::contactEmail());
        QCOMPARE(m_pWindow->windowTitle(), QString("About tarvik"));
        QVERIFY(QDir().mkpath(TARVIK_BINARY_DIR "/screenshots"));
        QVERIFY(m_pWindow->grab().save(TARVIK_BINARY_DIR "/screenshots/about.png"));

        // Back closes it and the menu's title returns.
        QPointer<CAboutForm> guard(pAbout);
        QTest::mouseClick(pAbout->findChild<CTWPushButton*>(), Qt::LeftButton);
        QTRY_VERIFY(guard.isNull());
        QCOMPARE(stack()->count(), 1);
        QCOMPARE(m_pWindow->windowTitle(), QString("tarvik"));
    }

    // The version shows as text even when it looks like markup (the stored version is
    // checked above).
    void versionLine()
    {
        const QString line = "tarvik v <i>9</i> by QEL Communications";
        CAboutForm about("<i>9</i>");
        QCOMPARE(about.versionText(), line);
        int nFound = 0;
        for (QLabel* pLabel : about.findChildren<QLabel*>()) {
            if (pLabel->text() == line) {
                QCOMPARE(pLabel->textFormat(), Qt::PlainText);
                ++nFound;
            }
        }
        QCOMPARE(nFound, 1);
    }

    // The last of two quick clicks decides what opens, and only one screen opens.
    void lastClickWins()
    {
        clickRow(CMainMenuForm::eRowSettings);
        clickRow(CMainMenuForm::eRowAbout);
        QTRY_COMPARE(stack()->count(), 2);
        QVERIFY(qobject_cast<CAboutForm*>(stack()->currentWidget()));
        QVERIFY(factoryCalls().isEmpty());
    }

    // A failed answer opens nothing and leaves no connection: a later answer is ignored.
    void failedAnswer()
    {
        Test::CLogCapture log;
        menu()->settingsGotten(false, CTSettings());
        QVERIFY(log.contains("CMainMenuForm::settingsGotten: failed to get settings from db"));
        QCOMPARE(stack()->count(), 1);

        clickRow(CMainMenuForm::eRowAbout);
        // A failed answer overtakes the real one, which then finds no listener.
        Q_EMIT storage()->signalSettingsGotten(false, CTSettings());
        Q_EMIT storage()->signalSettingsGotten(true, CTSettings());  // delivered at once
        QCOMPARE(stack()->count(), 1);
    }
};

QTEST_MAIN(TestCMainMenuForm)
#include "tst_cmainmenuform.moc"
