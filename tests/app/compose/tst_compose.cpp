// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QDBusConnection>
#include <QDateTime>
#include <QScrollArea>
#include <QScrollBar>
#include <QSqlDatabase>

#include "ccomposetarvikform.h"
#include "cconnectionmanager.h"
#include "clocationengine.h"
#include "clocationpopupform.h"
#include "clogcapture.h"
#include "composefixture.h"
#include "csendreceivepopupform.h"
#include "ctexts.h"
#include "ctwtoolbar.h"
#include "storagefixture.h"

using namespace Dravo;
using TarvikTest::CComposeFixture;

namespace {

// A location engine reading a recorded NMEA file, with short timers; the popups use it
// instead of the process-wide engine.
class CTestEngine
{
public:
    explicit CTestEngine(const QString& strTrack, int giveUpMs = 3000)
    {
        qputenv("TARVIK_NMEA_SOURCE",
                QByteArray(TARVIK_SOURCE_DIR "/tests/gps/data/") + strTrack.toUtf8());
        CLocationTimings timings;
        timings.iGiveUpMs = giveUpMs;
        timings.iSettleMs = 200;
        timings.iMaxAgeS = 500000000;  // the recording is old; its fixes count as fresh
        m_pEngine.reset(new CLocationEngine(timings));
        CLocationPopupForm::setLocationEngine(m_pEngine.data());
    }
    ~CTestEngine() { CLocationPopupForm::setLocationEngine(nullptr); }
    CLocationEngine* engine() const { return m_pEngine.data(); }

private:
    QScopedPointer<CLocationEngine> m_pEngine;
};

CTarvik failedTarvik(const QString& strTitle)
{
    CTarvik tarvik;
    tarvik.setFrom(TarvikTest::kNumber);
    tarvik.setTo("+15550199");
    tarvik.setTitle(strTitle);
    tarvik.setNote("failed earlier");
    tarvik.setDateTime(QDateTime::currentDateTimeUtc().addSecs(-3600));
    tarvik.setLatitude(1.5);
    tarvik.setLongitude(2.5);
    tarvik.setFlag(0);
    return tarvik;
}

}  // namespace

class TestCompose : public QObject
{
    Q_OBJECT

private:
    CComposeFixture m_fixture;

    CComposeTarvikForm* openCompose(int iType = CComposeTarvikForm::eComposeNew,
                                    const QString& strTo = QString(),
                                    const QString& strSubject = QString(),
                                    const QString& strNote = QString(), double dLat = 0.0,
                                    double dLon = 0.0)
    {
        auto* pForm = new CComposeTarvikForm(&m_fixture.stack(), iType, strTo, strSubject, strNote,
                                             dLat, dLon);
        m_fixture.stack().showForm(pForm);
        // Lets the layout give the buttons their size, so clicks land on them.
        QTest::qWait(20);
        return pForm;
    }

    void clearFolders()
    {
        m_fixture.storage().removeAllTarviks(CAsyncTStorage::eFolderOutbox);
        m_fixture.storage().removeAllTarviks(CAsyncTStorage::eFolderSent);
    }

    // Lets the stack finish its queued closes.
    void settle() { QTest::qWait(50); }

private Q_SLOTS:
    void initTestCase()
    {
        // QtTest's marker hides Qt Positioning's nmea plugin.
        qunsetenv("QT_QTESTLIB_RUNNING");
        QVERIFY(m_fixture.start());
    }

    void init()
    {
        // A fresh simulator: no answer to an earlier test's request lands in this one.
        QVERIFY(m_fixture.startSimulator({}));
        clearFolders();
        m_fixture.mce().setMode("normal");
    }

    void cleanup()
    {
        while (m_fixture.stack().count() > 0)
            m_fixture.stack().closeForm(true);
    }

    // The reply's texts arrive as the message view built them and are shown unchanged.
    void replyPrefillShownUnchanged()
    {
        CComposeTarvikForm* pEmpty = openCompose();
        m_fixture.shoot("compose-empty");
        m_fixture.stack().closeForm(true, pEmpty);
        const QString strNote =
            "\n\n-------------------- Original message --------------------\n"
            "From: Bob\nSent: 11/23/26 9:30 AM\nTo: Ann ( +15550100 )\n"
            "Subject: <i>Lunch?</i>\n\nAt the <b>corner</b> &amp; then?";
        CComposeTarvikForm* pForm = openCompose(CComposeTarvikForm::eComposeReply, "+15550111",
                                                "RE: <i>Lunch?</i>", strNote);
        m_fixture.shoot("compose-reply");
        QCOMPARE(pForm->lineEditTo()->text(), QString("+15550111"));
        QCOMPARE(pForm->lineEditTo()->cursorPosition(), 0);
        QCOMPARE(pForm->lineEditSubject()->text(), QString("RE: <i>Lunch?</i>"));
        QCOMPARE(pForm->textEditMessage()->toPlainText(), strNote);
    }

    // Turned upright, the buttons go below the fields and nothing typed is lost; a keyboard
    // that takes most of the window leaves the field being typed in on view.
    void portraitKeepsTextAndFocusedFieldInView()
    {
        CComposeTarvikForm form(nullptr, CComposeTarvikForm::eComposeNew, "+15550111", "Title",
                                "Note");
        form.resize(800, 450);
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        const CTWToolBar* pBar = form.findChild<CTWToolBar*>();
        QVERIFY(pBar && pBar->x() > form.textEditMessage()->mapTo(&form, QPoint()).x());
        form.textEditMessage()->append("typed");

        form.resize(360, 720);
        QTRY_VERIFY(pBar->y() > form.textEditMessage()->mapTo(&form, QPoint()).y());
        QCOMPARE(pBar->width(), 360);
        QCOMPARE(form.textEditMessage()->toPlainText(), QString("Note\ntyped"));
        QCOMPARE(form.lineEditSubject()->text(), QString("Title"));

        // The keyboard opens: what is typed in has to scroll into the space left.
        form.textEditMessage()->setMinimumHeight(400);
        form.resize(360, 200);
        auto* pArea = form.findChild<QScrollArea*>();
        QVERIFY(pArea);
        QScrollBar* pScroll = pArea->verticalScrollBar();
        const auto inView = [pArea](QWidget* pField) {
            const QRect r(pField->mapTo(pArea->viewport(), QPoint()), pField->size());
            return pArea->viewport()->rect().contains(r);
        };
        QTRY_VERIFY(pScroll->maximum() > 0);
        form.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&form));
        pScroll->setValue(pScroll->maximum());
        QVERIFY(!inView(form.lineEditSubject()));
        form.lineEditSubject()->setFocus();
        QTRY_VERIFY(inView(form.lineEditSubject()));
        pScroll->setValue(pScroll->maximum());
        form.resize(360, 190);
        QTRY_VERIFY(inView(form.lineEditSubject()));
    }

    void sendWithoutRecipientDoesNothing()
    {
        CComposeTarvikForm* pForm = openCompose(0, "", "subject", "note");
        QTest::mouseClick(pForm->btnSend(), Qt::LeftButton);
        settle();
        QCOMPARE(m_fixture.top<CComposeTarvikForm>(), pForm);
        QVERIFY(!pForm->buttonsLocked());
    }

    // Two recipients, an earlier failed message in the outbox: both go out with tflag 1,
    // the new one completed from the settings and the fix; the simulator moves them to
    // sent and the compose form closes.
    void sendQueuesWholeOutbox()
    {
        CTestEngine engine("track.nmea");
        QVERIFY(m_fixture.startSimulator({"--delay", "600"}));
        int iOldTid = -1;
        QVERIFY(m_fixture.storage().saveTarvik(failedTarvik("old"), CAsyncTStorage::eFolderOutbox,
                                               iOldTid));
        QSignalSpy request(Tarvik::DBusObject::instance(), &Tarvik::DBusObject::SendReceiveRequest);
        CComposeTarvikForm* pForm = openCompose();
        QPointer<CComposeTarvikForm> pGuard(pForm);
        QTest::keyClicks(pForm->lineEditTo(), "+15550111,bo@example.org");
        QTest::keyClicks(pForm->lineEditSubject(), "Lunch?");
        QTest::keyClicks(pForm->textEditMessage(), "At the corner.");
        QTest::mouseClick(pForm->btnSend(), Qt::LeftButton);

        auto* pPopup = m_fixture.top<CLocationPopupForm>();
        QVERIFY(pPopup);
        QCOMPARE(pPopup->text(), CTexts::requestingLocation());
        m_fixture.shoot("popup-locating");
        QTRY_COMPARE_WITH_TIMEOUT(request.count(), 1, 10000);
        QCOMPARE(pPopup->text(), CTexts::sending());
        m_fixture.shoot("popup-sending");
        // The compose form stays until the daemon has the request.
        QVERIFY(pGuard);

        const QList<CTarvik> outbox = m_fixture.folder(CAsyncTStorage::eFolderOutbox);
        QCOMPARE(outbox.size(), 2);
        const CTarvik& old = outbox.at(0).id() == iOldTid ? outbox.at(0) : outbox.at(1);
        const CTarvik& sent = outbox.at(0).id() == iOldTid ? outbox.at(1) : outbox.at(0);
        QCOMPARE(old.flag(), 1);
        QCOMPARE(old.title(), QString("old"));
        // What the new message holds is the black-box test's part (test_compose).
        QCOMPARE(sent.flag(), 1);
        QCOMPARE(sent.title(), QString("Lunch?"));

        // The simulator's answer closes popup and compose form.
        QTRY_VERIFY_WITH_TIMEOUT(!pGuard, 5000);
        QCOMPARE(m_fixture.stack().count(), 0);
        QTRY_COMPARE(m_fixture.folder(CAsyncTStorage::eFolderSent).size(), 2);
        QVERIFY(m_fixture.folder(CAsyncTStorage::eFolderOutbox).isEmpty());
    }

    void offlineMode_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<QString>("answer");
        // Which device modes ask, and what each answer asks of MCE, is the guard's own
        // test; here what each answer does to the form.
        QTest::newRow("offline, No") << "offline" << QString("No");
        QTest::newRow("flight, Yes") << "flight" << QString("Yes");
    }

    void offlineMode()
    {
        QFETCH(QString, mode);
        QFETCH(QString, answer);
        CTestEngine engine("track.nmea");
        m_fixture.mce().setMode(mode);
        QString strAsked;
        CComposeFixture::answerNextMessageBox(answer, &strAsked);
        CComposeTarvikForm* pForm = openCompose(0, "+15550111", "s", "n");
        QTest::mouseClick(pForm->btnSend(), Qt::LeftButton);
        QCOMPARE(strAsked, CTexts::exitOfflineMode());
        if (answer == "No") {
            QCOMPARE(m_fixture.top<CComposeTarvikForm>(), pForm);
            QCOMPARE(pForm->textEditMessage()->toPlainText(), QString("n"));
        } else {
            QVERIFY(m_fixture.top<CLocationPopupForm>());
        }
    }

    // The connection attempt reports a drop twice before it connects: the popup
    // closes after the second, the compose form keeps everything.
    void connectionLostTwice()
    {
        CTestEngine engine("nofix.nmea", 30000);
        Test::CLogCapture log(true);
        CComposeTarvikForm* pForm = openCompose(0, "+15550111", "s", "n");
        QTest::mouseClick(pForm->btnSend(), Qt::LeftButton);
        QPointer<CLocationPopupForm> pPopup = m_fixture.top<CLocationPopupForm>();
        QVERIFY(pPopup);
        // Before the event loop runs again, so the queued "connected" comes too late.
        Q_EMIT CConnectionManager::instance()->disconnected();
        QCOMPARE(pPopup->disconnects(), 1);
        QVERIFY(!log.containsPrefix("CLocationPopupForm::closeLocationPopupForm"));
        Q_EMIT CConnectionManager::instance()->disconnected();
        QVERIFY(log.contains("CLocationPopupForm::internetConnectionDisconnected 2"));
        QVERIFY(log.contains("CLocationPopupForm::closeLocationPopupForm close popup only"));
        QTRY_VERIFY(!pPopup);
        settle();
        QVERIFY(!engine.engine()->isRunning());
        QCOMPARE(m_fixture.top<CComposeTarvikForm>(), pForm);
        QCOMPARE(pForm->lineEditSubject()->text(), QString("s"));
        QVERIFY(m_fixture.folder(CAsyncTStorage::eFolderOutbox).isEmpty());
    }

    // Hostile and huge input is stored byte for byte and never taken as markup.
    void badInputSavedIntact_data()
    {
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("subject");
        QTest::addColumn<QString>("note");
        QStringList lstMany;
        for (int i = 0; i < 1000; ++i)
            lstMany << QStringLiteral("+1555%1").arg(i, 6, 10, QLatin1Char('0'));
        const QString strHuge(100000, QChar(0x0416));
        QTest::newRow("1000 recipients, 100000 characters")
            << lstMany.join(',') << strHuge << QString(strHuge).replace(0, 1, "x");
        QTest::newRow("every script and emoji")
            << "dan@例え.jp"
            << "Ελληνικά Русский עברית العربية हिन्दी 中文 日本語 한국어 ไทย"
            << "👩‍👩‍👧‍👦 🏳️‍🌈 e\u0301 \u200f\u202e mixed \t tab";
        QTest::newRow("html everywhere")
            << "<b>x</b>@e.org,&amp;"
            << "<img src=x onerror=alert(1)>"
            << "<html><body><h1>Big</h1><a href='http://evil'>&lt;click&gt;</a></body></html>";
    }

    void badInputSavedIntact()
    {
        QFETCH(QString, to);
        QFETCH(QString, subject);
        QFETCH(QString, note);
        CTestEngine engine("track.nmea");
        QSignalSpy request(Tarvik::DBusObject::instance(), &Tarvik::DBusObject::SendReceiveRequest);
        CComposeTarvikForm* pForm =
            openCompose(CComposeTarvikForm::eComposeReply, to, subject, note);
        QCOMPARE(pForm->textEditMessage()->toPlainText(), note);
        QTest::mouseClick(pForm->btnSend(), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(request.count(), 1, 10000);
        const QList<CTarvik> outbox = m_fixture.folder(CAsyncTStorage::eFolderOutbox);
        QCOMPARE(outbox.size(), 1);
        QVERIFY(outbox.at(0).to() == to);
        QVERIFY(outbox.at(0).title() == subject);
        QVERIFY(outbox.at(0).note() == note);
    }

    // Send/Receive: marks every outbox message for sending; an empty outbox still asks
    // the daemon, which answers with received messages.
    void sendReceive_data()
    {
        QTest::addColumn<int>("failed");
        QTest::newRow("empty outbox") << 0;
        QTest::newRow("two failed messages") << 2;
    }

    void sendReceive()
    {
        QFETCH(int, failed);
        QVERIFY(m_fixture.startSimulator({"--send", "fail", "--incoming", "1", "--delay", "300"}));
        for (int i = 0; i < failed; ++i) {
            int iTid = -1;
            QVERIFY(m_fixture.storage().saveTarvik(failedTarvik(QString::number(i)),
                                                   CAsyncTStorage::eFolderOutbox, iTid));
        }
        QSignalSpy request(Tarvik::DBusObject::instance(), &Tarvik::DBusObject::SendReceiveRequest);
        QSignalSpy received(Tarvik::DBusObject::instance(), &Tarvik::DBusObject::MessagesReceived);
        QPointer<CSendReceivePopupForm> pPopup = new CSendReceivePopupForm(&m_fixture.stack());
        m_fixture.stack().showForm(pPopup);
        QCOMPARE(pPopup->text(), CTexts::sendingReceivingTarviks());
        m_fixture.shoot(QString("popup-sendreceive-%1").arg(failed));
        QTRY_COMPARE_WITH_TIMEOUT(request.count(), 1, 5000);
        const QList<CTarvik> outbox = m_fixture.folder(CAsyncTStorage::eFolderOutbox);
        QCOMPARE(outbox.size(), failed);
        for (const CTarvik& tarvik : outbox)
            QCOMPARE(tarvik.flag(), 1);
        // The daemon's first answer closes it before the timer would.
        QTRY_VERIFY_WITH_TIMEOUT(!pPopup, CSendReceivePopupForm::CLOSE_TIMEOUT - 1000);
        QTRY_COMPARE(received.count(), 1);
    }
};

QTEST_MAIN(TestCompose)
#include "tst_compose.moc"
