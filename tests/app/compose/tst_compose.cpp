// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QDBusConnection>
#include <QDateTime>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include "ccomposetarvikform.h"
#include "cconnectionmanager.h"
#include "cformfactory.h"
#include "clocationengine.h"
#include "clocationpopupform.h"
#include "clogcapture.h"
#include "cnmeastreamer.h"
#include "composefixture.h"
#include "csendreceivepopupform.h"
#include "ctexts.h"
#include "cviewtarvikform.h"

using namespace Dravo;
using TarvikTest::CComposeFixture;

namespace {

QList<QByteArray> sentencesOf(const QString& name)
{
    QFile file(QStringLiteral(TARVIK_SOURCE_DIR "/tests/gps/data/") + name);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<QByteArray> lst;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (!line.trimmed().isEmpty())
            lst << line.trimmed();
    }
    return lst;
}

// The first fix of the recorded track, decoded independently of Qt.
QPair<double, double> firstFix()
{
    for (const QByteArray& sentence : sentencesOf("track.nmea")) {
        const QList<QByteArray> f = sentence.split(',');
        if (!f.at(0).endsWith("GGA"))
            continue;
        return {f.at(2).left(2).toDouble() + f.at(2).mid(2).toDouble() / 60.0,
                f.at(4).left(3).toDouble() + f.at(4).mid(3).toDouble() / 60.0};
    }
    return {};
}

// A location engine reading an NMEA file stamped with the current time, with short
// timers; the popups use it instead of the process-wide engine.
class CTestEngine
{
public:
    explicit CTestEngine(const QString& strTrack, int giveUpMs = 3000)
    {
        QFile file(m_dir.filePath(strTrack));
        if (file.open(QIODevice::WriteOnly)) {
            const QDateTime start = QDateTime::currentDateTimeUtc();
            const QList<QByteArray> lst = sentencesOf(strTrack);
            for (int i = 0; i < lst.size(); ++i)
                file.write(Test::CNmeaStreamer::retimed(lst.at(i), start.addSecs(i / 2)) + "\r\n");
        }
        qputenv("TARVIK_NMEA_SOURCE", file.fileName().toUtf8());
        CLocationTimings timings;
        timings.iGiveUpMs = giveUpMs;
        timings.iSettleMs = 200;
        m_pEngine.reset(new CLocationEngine(timings));
        CLocationPopupForm::setLocationEngine(m_pEngine.data());
    }
    ~CTestEngine() { CLocationPopupForm::setLocationEngine(nullptr); }
    CLocationEngine* engine() const { return m_pEngine.data(); }

private:
    QTemporaryDir m_dir;
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

template <class T>
T* topForm(CFormStack& stack)
{
    return qobject_cast<T*>(stack.currentWidget());
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

    void sendWithoutRecipientDoesNothing()
    {
        CComposeTarvikForm* pForm = openCompose(0, "", "subject", "note");
        QTest::mouseClick(pForm->btnSend(), Qt::LeftButton);
        settle();
        QCOMPARE(topForm<CComposeTarvikForm>(m_fixture.stack()), pForm);
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
        Test::CLogCapture log(true);
        QSignalSpy request(Tarvik::DBusObject::instance(), &Tarvik::DBusObject::SendReceiveRequest);
        CComposeTarvikForm* pForm = openCompose();
        QPointer<CComposeTarvikForm> pGuard(pForm);
        QTest::keyClicks(pForm->lineEditTo(), "+15550111,bo@example.org");
        QTest::keyClicks(pForm->lineEditSubject(), "Lunch?");
        QTest::keyClicks(pForm->textEditMessage(), "At the corner.");
        const QDateTime before = QDateTime::currentDateTimeUtc();
        QTest::mouseClick(pForm->btnSend(), Qt::LeftButton);

        auto* pPopup = topForm<CLocationPopupForm>(m_fixture.stack());
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
        QCOMPARE(sent.flag(), 1);
        QCOMPARE(sent.to(), QString("+15550111,bo@example.org"));
        QCOMPARE(sent.title(), QString("Lunch?"));
        QCOMPARE(sent.note(), QString("At the corner."));
        QCOMPARE(sent.from(), QString(TarvikTest::kNumber));
        QCOMPARE(sent.reg(), QString(TarvikTest::kImei));
        QCOMPARE(sent.screenname(), QString(TarvikTest::kScreenName));
        CTSettings settings;
        QVERIFY(m_fixture.storage().getSettings(settings));
        QVERIFY(!settings.version().isEmpty());
        QCOMPARE(sent.version(), settings.version());
        const QPair<double, double> fix = firstFix();
        QVERIFY(qAbs(sent.latitude() - fix.first) < 1e-6);
        QVERIFY(qAbs(sent.longitude() - fix.second) < 1e-6);
        QVERIFY(sent.dateTime() >= before.addSecs(-1));
        QVERIFY(sent.dateTime() <= QDateTime::currentDateTimeUtc().addSecs(1));

        // The simulator's answer closes popup and compose form.
        QTRY_VERIFY_WITH_TIMEOUT(!pGuard, 5000);
        QCOMPARE(m_fixture.stack().count(), 0);
        QVERIFY(log.contains(
            "CLocationPopupForm::closeLocationPopupForm close both popup and compose tarvik form"));
        QTRY_COMPARE(m_fixture.folder(CAsyncTStorage::eFolderSent).size(), 2);
        QVERIFY(m_fixture.folder(CAsyncTStorage::eFolderOutbox).isEmpty());
    }

    // A daemon that never answers: the timer closes both after 4000 ms; the message
    // stays queued.
    void daemonSilent()
    {
        CTestEngine engine("track.nmea");
        QVERIFY(m_fixture.startSimulator({"--send", "silent"}));
        QSignalSpy request(Tarvik::DBusObject::instance(), &Tarvik::DBusObject::SendReceiveRequest);
        CComposeTarvikForm* pForm = openCompose(0, "+15550111", "quiet", "nobody answers");
        QPointer<CComposeTarvikForm> pGuard(pForm);
        QElapsedTimer clock;
        qint64 iRequestMs = -1;
        qint64 iClosedMs = -1;
        QObject context;  // ends both connections with this function
        connect(Tarvik::DBusObject::instance(), &Tarvik::DBusObject::SendReceiveRequest, &context,
                [&] { iRequestMs = clock.elapsed(); });
        connect(pForm, &QObject::destroyed, &context, [&] { iClosedMs = clock.elapsed(); });
        clock.start();
        QTest::mouseClick(pForm->btnSend(), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(request.count(), 1, 10000);
        QTRY_VERIFY_WITH_TIMEOUT(!pGuard, CLocationPopupForm::CLOSE_TIMEOUT + 2000);
        QVERIFY2(iClosedMs - iRequestMs >= CLocationPopupForm::CLOSE_TIMEOUT - 50,
                 qPrintable(QString::number(iClosedMs - iRequestMs)));
        const QList<CTarvik> outbox = m_fixture.folder(CAsyncTStorage::eFolderOutbox);
        QCOMPARE(outbox.size(), 1);
        QCOMPARE(outbox.at(0).flag(), 1);
        QCOMPARE(outbox.at(0).note(), QString("nobody answers"));
    }

    // No fix: the failure text; a tap closes the popup alone and the text stays.
    void noFixKeepsText()
    {
        CTestEngine engine("nofix.nmea", 800);
        Test::CLogCapture log(true);
        CComposeTarvikForm* pForm =
            openCompose(0, "+15550111", "Ünïcødé 🙂", "line 1\nline 2");
        QTest::mouseClick(pForm->btnSend(), Qt::LeftButton);
        auto* pPopup = topForm<CLocationPopupForm>(m_fixture.stack());
        QVERIFY(pPopup);
        QTRY_COMPARE_WITH_TIMEOUT(pPopup->text(), CTexts::unableToDetermineLocation(), 8000);
        QVERIFY(log.contains("CLocationPopupForm::onLocation: invalid location gotten"));
        QVERIFY(pPopup->progressWidget()->isHidden());
        m_fixture.shoot("popup-failed");
        QTest::mouseClick(pPopup->popup(), Qt::LeftButton);
        QTRY_COMPARE(topForm<CComposeTarvikForm>(m_fixture.stack()), pForm);
        QCOMPARE(pForm->lineEditTo()->text(), QString("+15550111"));
        QCOMPARE(pForm->lineEditSubject()->text(), QString("Ünïcødé 🙂"));
        QCOMPARE(pForm->textEditMessage()->toPlainText(), QString("line 1\nline 2"));
        QVERIFY(m_fixture.folder(CAsyncTStorage::eFolderOutbox).isEmpty());
    }

    void offlineMode_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<QString>("answer");
        QTest::newRow("offline, No") << "offline"
                                     << "No";
        QTest::newRow("flight, No") << "flight"
                                    << "No";
        QTest::newRow("offline, Yes") << "offline"
                                      << "Yes";
        QTest::newRow("flight, Yes") << "flight"
                                     << "Yes";
    }

    void offlineMode()
    {
        QFETCH(QString, mode);
        QFETCH(QString, answer);
        CTestEngine engine("track.nmea");
        Test::CLogCapture log(true);
        m_fixture.mce().setMode(mode);
        QString strAsked;
        CComposeFixture::answerNextMessageBox(answer, &strAsked);
        CComposeTarvikForm* pForm = openCompose(0, "+15550111", "s", "n");
        QTest::mouseClick(pForm->btnSend(), Qt::LeftButton);
        QCOMPARE(strAsked, CTexts::exitOfflineMode());
        QVERIFY(log.contains("CComposeTarvikForm::onBtnSendClick: Exit offline mode: " + answer));
        if (answer == "No") {
            QCOMPARE(topForm<CComposeTarvikForm>(m_fixture.stack()), pForm);
            QCOMPARE(pForm->textEditMessage()->toPlainText(), QString("n"));
            QVERIFY(m_fixture.mce().requestedModes().isEmpty());
        } else {
            QVERIFY(topForm<CLocationPopupForm>(m_fixture.stack()));
            QTRY_COMPARE(m_fixture.mce().requestedModes(), QStringList{"normal"});
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
        QPointer<CLocationPopupForm> pPopup = topForm<CLocationPopupForm>(m_fixture.stack());
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
        QCOMPARE(topForm<CComposeTarvikForm>(m_fixture.stack()), pForm);
        QCOMPARE(pForm->lineEditSubject()->text(), QString("s"));
        QVERIFY(m_fixture.folder(CAsyncTStorage::eFolderOutbox).isEmpty());
    }

    // Reply and forward opened from the message view: the fields follow the prefill
    // table to the byte, and a forward takes the message's position into the outbox
    // without asking for a fix.
    void fromMessageView_data()
    {
        QTest::addColumn<int>("viewType");
        QTest::addColumn<bool>("reply");
        QTest::newRow("reply to a received message") << 0 << true;
        QTest::newRow("forward a received message") << 0 << false;
        QTest::newRow("forward a sent message") << 1 << false;
    }

    void fromMessageView()
    {
        QFETCH(int, viewType);
        QFETCH(bool, reply);
        CTestEngine engine("track.nmea");
        CFormFactory::setComposeCreator(
            [](QWidget* p, int t, const QString& to, const QString& s, const QString& n, double lat,
               double lon) -> CForm* { return new CComposeTarvikForm(p, t, to, s, n, lat, lon); });
        CTarvik message;
        message.setFrom(viewType ? TarvikTest::kNumber : "+15550177");
        message.setScreenname(viewType ? "" : "Bob");
        message.setTo(viewType ? "+15550188,+15550199" : TarvikTest::kNumber);
        message.setTitle("Lunch <b>?</b>");
        message.setNote("Come & see\nthe <i>view</i>");
        message.setDateTime(QDateTime(QDate(2026, 11, 2), QTime(8, 30), Qt::UTC));
        message.setLatitude(-33.856784);
        message.setLongitude(151.215297);
        auto* pView = new CViewTarvikForm(&m_fixture.stack(), message, viewType);
        m_fixture.stack().showForm(pView);
        QTest::qWait(20);
        QTest::mouseClick(reply ? pView->buttonReply() : pView->buttonForward(), Qt::LeftButton);
        CComposeTarvikForm* pForm = nullptr;
        QTRY_VERIFY((pForm = topForm<CComposeTarvikForm>(m_fixture.stack())));

        const QString strSent =
            QLocale::system().toString(message.dateTime().toLocalTime(), QLocale::ShortFormat);
        const QString strOwn = QString(TarvikTest::kScreenName) + " ( ";
        // What the view shows in its From/To line. A sent message offers no Reply.
        const QString strShown = viewType ? message.to() : QString("Bob ( +15550177 )");
        const bool bAsSent = viewType != 0;
        const QString strFrom = bAsSent ? strOwn + message.from() + " )" : strShown;
        const QString strTo = bAsSent ? strShown : strOwn + message.to() + " )";
        const QString strNote =
            "\n\n-------------------- Original message --------------------\nFrom: " + strFrom +
            "\nSent: " + strSent + "\nTo: " + strTo + "\nSubject: Lunch <b>?</b>\n\n" +
            message.note();
        QCOMPARE(pForm->composeType(), reply ? 1 : 2);
        QCOMPARE(pForm->lineEditTo()->text(), reply ? message.from() : QString());
        QCOMPARE(pForm->lineEditSubject()->text(),
                 QString(reply ? "RE: " : "FW: ") + "Lunch <b>?</b>");
        QCOMPARE(pForm->textEditMessage()->toPlainText(), strNote);
        if (reply)
            return;

        QSignalSpy request(Tarvik::DBusObject::instance(), &Tarvik::DBusObject::SendReceiveRequest);
        pForm->lineEditTo()->setText("+15550111");
        QTest::mouseClick(pForm->btnSend(), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(request.count(), 1, 5000);
        QVERIFY(!engine.engine()->isInitialized());
        const QList<CTarvik> outbox = m_fixture.folder(CAsyncTStorage::eFolderOutbox);
        QCOMPARE(outbox.size(), 1);
        QCOMPARE(outbox.at(0).latitude(), message.latitude());
        QCOMPARE(outbox.at(0).longitude(), message.longitude());
        QCOMPARE(outbox.at(0).note(), strNote);
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

    // A database that refuses the write: the failure text, the compose form keeps
    // everything, nothing is asked of the daemon.
    void writeRefused_data()
    {
        QTest::addColumn<QString>("trigger");
        QTest::addColumn<bool>("withOld");
        QTest::newRow("read-only")
            << "CREATE TRIGGER refuse BEFORE INSERT ON outbox BEGIN "
               "SELECT RAISE(ABORT, 'attempt to write a readonly database'); END"
            << false;
        QTest::newRow("full, on the retried message")
            << "CREATE TRIGGER refuse BEFORE UPDATE ON outbox BEGIN "
               "SELECT RAISE(ABORT, 'database or disk is full'); END"
            << true;
    }

    void writeRefused()
    {
        QFETCH(QString, trigger);
        QFETCH(bool, withOld);
        CTestEngine engine("track.nmea");
        if (withOld) {
            int iTid = -1;
            QVERIFY(m_fixture.storage().saveTarvik(failedTarvik("old"),
                                                   CAsyncTStorage::eFolderOutbox, iTid));
        }
        {
            QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "refuse");
            db.setDatabaseName(m_fixture.dbPath());
            QVERIFY(db.open());
            QSqlQuery query(db);
            QVERIFY(query.exec(trigger));
        }
        QSqlDatabase::removeDatabase("refuse");
        Test::CLogCapture log(true);
        QSignalSpy request(Tarvik::DBusObject::instance(), &Tarvik::DBusObject::SendReceiveRequest);
        CComposeTarvikForm* pForm = openCompose(0, "+15550111", "kept", "every word");
        QTest::mouseClick(pForm->btnSend(), Qt::LeftButton);
        auto* pPopup = topForm<CLocationPopupForm>(m_fixture.stack());
        QVERIFY(pPopup);
        QTRY_COMPARE_WITH_TIMEOUT(pPopup->text(), CTexts::sendingFailed(), 8000);
        QVERIFY(log.contains("CLocationPopupForm::tarvikSaved: failed to save tarvik to outbox"));
        QTest::mouseClick(pPopup->popup(), Qt::LeftButton);
        QTRY_COMPARE(topForm<CComposeTarvikForm>(m_fixture.stack()), pForm);
        QCOMPARE(pForm->textEditMessage()->toPlainText(), QString("every word"));
        QCOMPARE(request.count(), 0);
        QVERIFY(m_fixture.storage().isOpen());
        QSqlQuery drop(QSqlDatabase::database("test_check"));
        QVERIFY(drop.exec("DROP TRIGGER refuse"));
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
