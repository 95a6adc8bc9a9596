// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QClipboard>
#include <QDesktopServices>
#include <QMenu>
#include <QMimeData>

#include "clineedit.h"
#include "ctextedit.h"
#include "ctsettings.h"
#include "ctwpushbutton.h"
#include "cviewtarvikform.h"
#include "folderfixture.h"

using namespace Dravo;
using TarvikTest::factoryCalls;
using TarvikTest::makeTarvik;

// Stands in for the system's map application.
class CUrlRecorder : public QObject
{
    Q_OBJECT
public:
    QList<QUrl> m_lstUrls;
public Q_SLOTS:
    void handle(const QUrl& url) { m_lstUrls << url; }
};

class TestViewTarvikForm : public QObject
{
    Q_OBJECT

    TarvikTest::CShellFixture m_fixture;

    static QString shortDate(const CTarvik& tarvik)
    {
        return QLocale::system().toString(tarvik.dateTime().toLocalTime(), QLocale::ShortFormat);
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_fixture.start());
        CTSettings settings;
        settings.setScreenname("Me");
        CAsyncTStorage* pStorage = CAsyncTStorage::getInstance(1);
        QSignalSpy saved(pStorage, &CAsyncTStorage::signalSettingsSaved);
        QVERIFY(pStorage->saveSettings(settings, CTSettings::eMaskScreenname));
        QVERIFY(saved.wait(5000));
    }

    void init() { factoryCalls().clear(); }

    void fields_data()
    {
        QTest::addColumn<int>("viewType");
        QTest::addColumn<QString>("screenName");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<bool>("received");
        QTest::newRow("received, named")
            << 0 << "Aino" << QString("Aino ( +447700900111 )") << true;
        QTest::newRow("received, no name") << 0 << "" << QString("+447700900111") << true;
        QTest::newRow("sent") << 1 << "Aino" << QString("+447700900222") << false;
    }

    // The From/To line, and which buttons a received and a sent message offer.
    void fields()
    {
        QFETCH(int, viewType);
        QFETCH(QString, screenName);
        QFETCH(QString, shown);
        QFETCH(bool, received);
        CTarvik tarvik = makeTarvik("<b>Hi</b>");
        tarvik.setScreenname(screenName);
        CViewTarvikForm form(nullptr, tarvik, viewType);
        QCOMPARE(form.title(), QString("tarvik - Message"));
        QCOMPARE(form.lineEditFromTo()->text(), shown);
        QCOMPARE(form.lineEditSubject()->text(), QString("<b>Hi</b>"));
        QCOMPARE(form.textEditMessage()->toPlainText(), tarvik.note());
        QCOMPARE(form.lineEditDate()->text(),
                 QLocale::system().toString(tarvik.dateTime().toLocalTime(), QLocale::LongFormat));
        QCOMPARE(form.lineEditFromTo()->accessibleName(),
                 received ? QString("From") : QString("To"));
        QCOMPARE(form.buttonShowOnMap() != nullptr, received);
        QCOMPARE(form.buttonViewRoute() != nullptr, received);
        QCOMPARE(form.buttonReply() != nullptr, received);
        QVERIFY(form.buttonForward() && form.buttonBack());
        QVERIFY(!form.lineEditFromTo()->testAttribute(Qt::WA_InputMethodEnabled));
        QVERIFY(form.textEditMessage()->isReadOnly());
    }

    void prefill_data()
    {
        // A reply goes to the sender; a forward goes to whoever is typed in and carries the
        // message's position.
        QTest::addColumn<int>("viewType");
        QTest::addColumn<int>("composeType");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("subject");
        QTest::addColumn<QString>("fromLine");
        QTest::addColumn<QString>("toLine");
        QTest::newRow("reply to received")
            << 0 << 1 << "+447700900111" << QString("RE: Lunch") << "From: Aino ( +447700900111 )\n"
            << QString("To: Me ( +447700900222 )\n");
        QTest::newRow("forward received")
            << 0 << 2 << "" << QString("FW: Lunch") << "From: Aino ( +447700900111 )\n"
            << QString("To: Me ( +447700900222 )\n");
        QTest::newRow("forward sent")
            << 1 << 2 << "" << QString("FW: Lunch") << "From: Me ( +447700900111 )\n"
            << QString("To: +447700900222\n");
    }

    // Reply and Forward read the settings and open the compose form with the quoted
    // original, byte for byte.
    void prefill()
    {
        QFETCH(int, viewType);
        QFETCH(int, composeType);
        QFETCH(QString, to);
        QFETCH(QString, subject);
        QFETCH(QString, fromLine);
        QFETCH(QString, toLine);
        const bool reply = composeType == 1;
        const CTarvik tarvik = makeTarvik("Lunch");
        CViewTarvikForm form(nullptr, tarvik, viewType);
        QSignalSpy shown(&form, &CForm::showForm);
        if (reply)
            form.onBtnReplyClick();
        else
            form.onBtnForwardClick();
        QVERIFY(shown.wait(5000));
        QCOMPARE(factoryCalls().size(), 1);
        const TarvikTest::FactoryCall& call = factoryCalls().first();
        QCOMPARE(call.strKind, QString("compose"));
        QCOMPARE(call.iType, composeType);
        const QString strNote = "\n\n-------------------- Original message --------------------\n" +
                                fromLine + "Sent: " + shortDate(tarvik) + "\n" + toLine +
                                "Subject: Lunch\n\nNote of Lunch";
        const QStringList expected{to, subject, strNote,
                                   reply ? QString("0") : QString("60.169857"),
                                   reply ? QString("0") : QString("24.938379")};
        QCOMPARE(call.lstArgs, expected);
    }

    // An answer to another screen's settings request is not taken for this form's, and a
    // form closed before its answer arrives is not touched by it.
    void foreignAndLateAnswers()
    {
        auto* pForm = new CViewTarvikForm(nullptr, makeTarvik("Lunch"), 0);
        QSignalSpy shown(pForm, &CForm::showForm);
        CAsyncTStorage* pStorage = CAsyncTStorage::getInstance(1);
        CTarvikStorage::CUserData other;
        QSignalSpy answers(pStorage, &CAsyncTStorage::signalSettingsGotten);
        QVERIFY(pStorage->getSettings(&other));
        pForm->onBtnForwardClick();
        QTRY_COMPARE_WITH_TIMEOUT(answers.size(), 2, 5000);
        QCOMPARE(shown.size(), 1);
        QCOMPARE(factoryCalls().size(), 1);

        QTest::qWait(CForm::UNLOCK_INTERVAL + 50);
        pForm->onBtnReplyClick();
        delete pForm;
        QTRY_COMPARE_WITH_TIMEOUT(answers.size(), 3, 5000);
        QCOMPARE(factoryCalls().size(), 1);
    }

    void mapButtons_data()
    {
        QTest::addColumn<bool>("route");
        QTest::addColumn<int>("mapType");
        QTest::newRow("show on map") << false << 0;
        QTest::newRow("view route") << true << 2;
    }

    void mapButtons()
    {
        QFETCH(bool, route);
        QFETCH(int, mapType);
        CViewTarvikForm form(nullptr, makeTarvik("Lunch"), 0);
        if (route)
            form.onBtnViewRouteClick();
        else
            form.onBtnShowOnMapClick();
        QTRY_COMPARE_WITH_TIMEOUT(factoryCalls().size(), 1, 6000);
        QCOMPARE(factoryCalls().first().strKind, QString("map"));
        QCOMPARE(factoryCalls().first().iType, mapType);
    }

    // Right click and long press offer the position to other applications: a geo: link
    // for the map application, and text plus link on the clipboard.
    void positionOutOfApp()
    {
        CTarvik tarvik = makeTarvik("Lunch");
        tarvik.setLatitude(-33.8567844);
        tarvik.setLongitude(151.2152967);
        CViewTarvikForm form(nullptr, tarvik, 0);
        form.resize(800, 450);
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        CUrlRecorder recorder;
        QDesktopServices::setUrlHandler("geo", &recorder, "handle");

        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 440),
                                form.mapToGlobal(QPoint(5, 440)));
        QCoreApplication::sendEvent(&form, &event);
        QMenu* pMenu = form.findChild<QMenu*>();
        QVERIFY(pMenu && pMenu->isVisible());
        const QList<QAction*> actions = pMenu->actions();
        QCOMPARE(actions.size(), 2);
        QCOMPARE(actions.at(0)->text(), QString("Open in map application"));
        actions.at(0)->trigger();
        QCOMPARE(recorder.m_lstUrls, QList<QUrl>{QUrl("geo:-33.856784,151.215297")});
        actions.at(1)->trigger();
        const QMimeData* pData = QGuiApplication::clipboard()->mimeData();
        QVERIFY(pData);
        QCOMPARE(pData->text(), QString("-33.856784, 151.215297"));
        QCOMPARE(pData->urls(), QList<QUrl>{QUrl("geo:-33.856784,151.215297")});
        pMenu->close();
        QTRY_VERIFY(!form.findChild<QMenu*>());

        // The message text keeps its own menu and gains the two entries.
        Q_EMIT form.textEditMessage()->customContextMenuRequested(QPoint(10, 10));
        pMenu = form.findChild<QMenu*>();
        QVERIFY(pMenu && pMenu->actions().size() > 3);
        QCOMPARE(pMenu->actions().last()->text(), QString("Copy coordinates"));
        pMenu->close();
        QTRY_VERIFY(!form.findChild<QMenu*>());

        QTest::mousePress(&form, Qt::LeftButton, {}, QPoint(5, 440));
        QTRY_VERIFY_WITH_TIMEOUT(form.findChild<QMenu*>() && form.findChild<QMenu*>()->isVisible(),
                                 CViewTarvikForm::LONG_PRESS_MS * 3);
        QTest::mouseRelease(&form, Qt::LeftButton, {}, QPoint(5, 440));
        form.findChild<QMenu*>()->close();
        QTRY_VERIFY(!form.findChild<QMenu*>());

        // A finger held on the message text, which takes touch to scroll, does the same.
        QPointingDevice* pTouch = QTest::createTouchDevice();
        QWidget* pViewport = form.textEditMessage()->viewport();
        QTest::touchEvent(pViewport, pTouch).press(0, QPoint(20, 20), pViewport);
        QTRY_VERIFY_WITH_TIMEOUT(form.findChild<QMenu*>() && form.findChild<QMenu*>()->isVisible(),
                                 CViewTarvikForm::LONG_PRESS_MS * 3);
        QTest::touchEvent(pViewport, pTouch).release(0, QPoint(20, 20), pViewport);
        delete pTouch;
        QDesktopServices::unsetUrlHandler("geo");
    }
};

QTEST_MAIN(TestViewTarvikForm)
#include "tst_viewtarvikform.moc"
