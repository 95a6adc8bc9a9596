// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QAbstractItemModelTester>
#include <QPainter>

#include "cinboxform.h"
#include "clogcapture.h"
#include "coutboxform.h"
#include "csentform.h"
#include "ctarvikitemdelegate.h"
#include "ctarviklistmodel.h"
#include "ctarviklistview.h"
#include "folderfixture.h"
#include "storagefixture.h"

using namespace Dravo;
using TarvikTest::factoryCalls;
using TarvikTest::makeTarvik;

namespace {
CFolderForm* makeForm(int iFolder)
{
    switch (iFolder) {
        case CAsyncTStorage::eFolderInbox:
            return new CInboxForm();
        case CAsyncTStorage::eFolderOutbox:
            return new COutboxForm();
        default:
            return new CSentForm();
    }
}

CAsyncTStorage::eFolderName folder(int i)
{
    return CAsyncTStorage::eFolderName(i);
}

bool waitRefreshed(CFolderForm* pForm)
{
    QSignalSpy spy(pForm->listView(), &CTarvikListView::refreshCompleted);
    return spy.wait(5000);
}

// White pixels in a band of an image: how much text was drawn there.
int inkIn(const QImage& image, const QRect& band)
{
    int iInk = 0;
    for (int y = band.top(); y <= band.bottom(); ++y)
        for (int x = band.left(); x <= band.right(); ++x)
            iInk += qGray(image.pixel(x, y)) > 128;
    return iInk;
}
}  // namespace

class TestFolders : public QObject
{
    Q_OBJECT

    TarvikTest::CShellFixture m_fixture;

    void clearFolders()
    {
        CAsyncTStorage* pStorage = CAsyncTStorage::getInstance(1);
        for (int i = 0; i < 3; ++i) {
            QSignalSpy spy(pStorage, &CAsyncTStorage::signalAllTarviksRemoved);
            QVERIFY(pStorage->removeAllTarviks(folder(i)));
            QVERIFY(spy.wait(5000));
        }
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_fixture.start()); }

    void init()
    {
        clearFolders();
        factoryCalls().clear();
    }

    // The model takes only its own folder's answers, announces valid ranges and keeps
    // what it holds when a read fails.
    void modelFollowsOwnFolderOnly()
    {
        QVERIFY(TarvikTest::saveTarviks({makeTarvik("a"), makeTarvik("b"), makeTarvik("c")},
                                        CAsyncTStorage::eFolderInbox));
        CTarvikListModel model(nullptr, CAsyncTStorage::eFolderInbox);
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy started(&model, &CTarvikListModel::fetchingStarted);
        QSignalSpy complete(&model, &CTarvikListModel::fetchingComplete);

        model.refresh();
        QCOMPARE(started.size(), 1);
        QVERIFY(complete.wait(5000));
        QCOMPARE(model.rowCount(), 3);
        QCOMPARE(model.data(model.index(1), Qt::UserRole).value<CTarvik>().title(), QString("b"));
        QVERIFY(!model.data(model.index(1), Qt::UserRole + 1).isValid());
        QVERIFY(!model.data(model.index(3), Qt::UserRole).isValid());

        model.tarviksGotten(true, {makeTarvik("sent")}, CAsyncTStorage::eFolderSent);
        QCOMPARE(complete.size(), 1);
        QCOMPARE(model.rowCount(), 3);

        model.tarviksGotten(false, {}, CAsyncTStorage::eFolderInbox);
        QCOMPARE(complete.size(), 2);
        QCOMPARE(model.rowCount(), 3);

        // A second refresh before the first answer, and someone else reading the folder:
        // only the latest own answer fills the model. The worker answers in order, so the
        // other reader's answer comes last.
        QSignalSpy answers(CAsyncTStorage::getInstance(1), &CAsyncTStorage::signalTarviksGotten);
        model.refresh();
        model.refresh();
        QVERIFY(CAsyncTStorage::getInstance(1)->getTarviks(CAsyncTStorage::eFolderInbox));
        QTRY_COMPARE_WITH_TIMEOUT(answers.size(), 3, 5000);
        QCOMPARE(complete.size(), 3);
        QCOMPARE(model.rowCount(), 3);
    }

    void delegateIcon_data()
    {
        QTest::addColumn<int>("folder");
        QTest::addColumn<int>("flag");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("icon");
        QTest::newRow("inbox unread") << 0 << 1 << "+1" << QString("Aino") << "message_unread";
        QTest::newRow("inbox read") << 0 << 0 << "+1" << QString("Aino") << "message_read";
        QTest::newRow("outbox queued") << 1 << 1 << "+1" << QString("+1") << "message_sending";
        QTest::newRow("outbox failed") << 1 << 0 << "+1" << QString("+1") << "message_failed_send";
        QTest::newRow("sent") << 2 << 0 << "+1" << QString("+1") << "message_sent";
        QTest::newRow("draft empty") << 3 << 0 << "" << QString("< empty >") << "message_draft";
    }

    void delegateIcon()
    {
        QFETCH(int, folder);
        QFETCH(int, flag);
        QFETCH(QString, to);
        QFETCH(QString, text);
        QFETCH(QString, icon);
        CTarvikItemDelegate delegate(nullptr, ::folder(folder));
        CTarvik tarvik = makeTarvik("t", flag);
        tarvik.setTo(to);
        QString strText;
        const QIcon* pIcon = nullptr;
        QVERIFY(delegate.firstLineAndIcon(tarvik, strText, &pIcon));
        QCOMPARE(strText, text);
        QVERIFY(pIcon && !pIcon->isNull());
        QCOMPARE(pIcon->pixmap(QSize(32, 32)).toImage(),
                 QPixmap(":/res/img/" + icon + ".png").toImage());

        CTarvikItemDelegate bad(nullptr, ::folder(7));
        QVERIFY(!bad.firstLineAndIcon(tarvik, strText, &pIcon));
        QVERIFY(strText.isEmpty() && !pIcon);
    }

    // Flagged entries are bold; both lines of an entry are drawn.
    void delegatePaintsTwoLines()
    {
        CTarvikListView view(nullptr, CAsyncTStorage::eFolderInbox);
        view.resize(600, 400);
        CTarvikItemDelegate* pDelegate = qobject_cast<CTarvikItemDelegate*>(view.itemDelegate());
        QVERIFY(pDelegate);
        QStyleOptionViewItem option;
        option.font = view.font();
        option.widget = &view;
        option.rect = QRect(0, 0, 600, 80);
        QFont bold = view.font();
        bold.setBold(true);
        const int iLine = QFontMetrics(bold).height();

        int iInk[2];
        for (int iFlag = 0; iFlag < 2; ++iFlag) {
            CTarvikListModel model(nullptr, CAsyncTStorage::eFolderInbox);
            model.tarviksGotten(true, {makeTarvik("Title", iFlag)}, CAsyncTStorage::eFolderInbox);
            QImage image(600, 80, QImage::Format_RGB32);
            image.fill(Qt::black);
            QPainter painter(&image);
            pDelegate->paint(&painter, option, model.index(0));
            painter.end();
            iInk[iFlag] = inkIn(image, QRect(80, 5, 500, iLine));
            QVERIFY(iInk[iFlag] > 0);
            QVERIFY(inkIn(image, QRect(80, 5 + iLine + 3, 500, iLine - 2)) > 0);
        }
        QVERIFY2(iInk[1] > iInk[0] * 11 / 10, "an unread entry is not bolder than a read one");
    }

    void familyButtons_data()
    {
        QTest::addColumn<int>("folder");
        QTest::addColumn<QString>("title");
        QTest::addColumn<bool>("hasOpen");
        QTest::addColumn<bool>("hasSendReceive");
        QTest::newRow("inbox") << 0 << "tarvik - Inbox" << true << true;
        QTest::newRow("outbox") << 1 << "tarvik - Outbox" << false << false;
        QTest::newRow("sent") << 2 << "tarvik - Sent" << true << false;
    }

    // Which buttons each folder screen has and when they are enabled.
    void familyButtons()
    {
        QFETCH(int, folder);
        QFETCH(QString, title);
        QFETCH(bool, hasOpen);
        QFETCH(bool, hasSendReceive);

        std::unique_ptr<CFolderForm> pEmpty(makeForm(folder));
        QVERIFY(!pEmpty->buttonBack()->isEnabled());
        QVERIFY(waitRefreshed(pEmpty.get()));
        QCOMPARE(pEmpty->title(), title);
        QCOMPARE(pEmpty->buttonOpen() != nullptr, hasOpen);
        QCOMPARE(pEmpty->buttonDeleteAll() != nullptr, hasOpen);
        QCOMPARE(pEmpty->buttonSendReceive() != nullptr, hasSendReceive);
        QVERIFY(pEmpty->buttonBack()->isEnabled());
        if (hasOpen)
            QVERIFY(!pEmpty->buttonDeleteAll()->isEnabled());
        if (hasSendReceive)
            QVERIFY(pEmpty->buttonSendReceive()->isEnabled());

        // The queued message comes first: still being sent, it cannot be deleted.
        QSignalSpy emptyRefreshed(pEmpty->listView(), &CTarvikListView::refreshCompleted);
        QVERIFY(TarvikTest::saveTarviks({makeTarvik("queued", 1), makeTarvik("failed", 0)},
                                        ::folder(folder)));
        QTRY_VERIFY_WITH_TIMEOUT(!emptyRefreshed.isEmpty(), 5000);
        // A second screen of the same folder would take this one's answers too.
        pEmpty.reset();
        std::unique_ptr<CFolderForm> pForm(makeForm(folder));
        QVERIFY(waitRefreshed(pForm.get()));
        QCOMPARE(pForm->title(), title + " (2)");
        if (hasOpen) {
            QVERIFY(pForm->buttonDeleteAll()->isEnabled());
            QVERIFY(!pForm->buttonOpen()->isEnabled());
        }
        QVERIFY(!pForm->buttonDelete()->isEnabled());

        QAbstractItemModel* pModel = pForm->listView()->model();
        for (int iRow = 0; iRow < 2; ++iRow) {
            pForm->itemClicked(pModel->index(iRow, 0));
            QCOMPARE(pForm->currentTarvik().title(),
                     pModel->index(iRow, 0).data(Qt::UserRole).value<CTarvik>().title());
            const bool bQueued = pForm->currentTarvik().flag() != 0;
            QCOMPARE(pForm->buttonDelete()->isEnabled(), !(folder == 1 && bQueued));
            if (hasOpen)
                QVERIFY(pForm->buttonOpen()->isEnabled());
        }

        pForm->itemClicked(pModel->index(5, 0));  // no such row: the selection stays
        QCOMPARE(pForm->currentTarvik().title(), QString("failed"));

        pForm->refresh();
        QCOMPARE(pForm->currentTarvik().id(), -1);
        QVERIFY(waitRefreshed(pForm.get()));
        QVERIFY(!pForm->buttonDelete()->isEnabled());
    }

    void openMessage_data()
    {
        QTest::addColumn<int>("folder");
        QTest::addColumn<int>("viewType");
        QTest::addColumn<int>("flagAfter");
        QTest::newRow("inbox unread") << 0 << 0 << 0;
        QTest::newRow("sent") << 2 << 1 << 1;
    }

    // Open shows the message view; only the inbox marks an unread message read.
    void openMessage()
    {
        QFETCH(int, folder);
        QFETCH(int, viewType);
        QFETCH(int, flagAfter);
        QVERIFY(TarvikTest::saveTarviks({makeTarvik("m", 1)}, ::folder(folder)));
        std::unique_ptr<CFolderForm> pForm(makeForm(folder));
        QVERIFY(waitRefreshed(pForm.get()));
        QSignalSpy shown(pForm.get(), &CForm::showForm);
        QSignalSpy refreshed(pForm->listView(), &CTarvikListView::refreshCompleted);
        pForm->itemDoubleClicked(pForm->listView()->model()->index(0, 0));
        QCOMPARE(shown.size(), 1);
        QCOMPARE(factoryCalls().size(), 1);
        QCOMPARE(factoryCalls().first().strKind, QString("view"));
        QCOMPARE(factoryCalls().first().iType, viewType);
        QCOMPARE(factoryCalls().first().lstArgs.at(1), QString("m"));
        if (flagAfter == 0)
            QVERIFY(refreshed.wait(5000));
        CTarvikListModel model(nullptr, ::folder(folder));
        QSignalSpy complete(&model, &CTarvikListModel::fetchingComplete);
        model.refresh();
        QVERIFY(complete.wait(5000));
        QCOMPARE(model.itemAt(0).flag(), flagAfter);
    }

    // Delete acts on the form's own folder, and only answers for that folder refresh it
    // (Delete All through the real client is a black-box test).
    void deleteAndForeignAnswers()
    {
        QVERIFY(TarvikTest::saveTarviks({makeTarvik("x"), makeTarvik("y")},
                                        CAsyncTStorage::eFolderInbox));
        QVERIFY(TarvikTest::saveTarviks({makeTarvik("s")}, CAsyncTStorage::eFolderSent));
        CInboxForm inbox;
        QVERIFY(waitRefreshed(&inbox));
        QSignalSpy started(inbox.listView()->tarvikModel(), &CTarvikListModel::fetchingStarted);

        // A removal in the sent folder: the inbox would refresh before the answer to
        // its own removal that follows, so one refresh in all proves it ignored it.
        CAsyncTStorage* pStorage = CAsyncTStorage::getInstance(1);
        QVERIFY(pStorage->removeAllTarviks(CAsyncTStorage::eFolderSent));
        inbox.itemClicked(inbox.listView()->model()->index(0, 0));
        const QString strDeleted = inbox.currentTarvik().title();
        inbox.onBtnDeleteClick();
        QVERIFY(waitRefreshed(&inbox));
        QCOMPARE(started.size(), 1);
        QCOMPARE(inbox.title(), QString("tarvik - Inbox (1)"));
        QVERIFY(inbox.listView()->tarvikModel()->itemAt(0).title() != strDeleted);
    }

    // A removal the database refuses (another process holds it locked) keeps the
    // message listed and logs why.
    void deleteFailureKeepsMessage()
    {
        QVERIFY(TarvikTest::saveTarviks({makeTarvik("kept")}, CAsyncTStorage::eFolderInbox));
        CInboxForm inbox;
        QVERIFY(waitRefreshed(&inbox));
        inbox.itemClicked(inbox.listView()->model()->index(0, 0));
        const int tid = inbox.currentTarvik().id();

        Test::CLogCapture log;
        Test::CSideConnection raw(m_fixture.home() + "/.tarvik/tarvikdb.sqlite");
        QVERIFY(raw.exec("BEGIN EXCLUSIVE"));
        inbox.onBtnDeleteClick();
        QTRY_VERIFY_WITH_TIMEOUT(
            log.contains(QString("CInboxForm::tarvikRemoved failed id = %1").arg(tid)), 10000);
        QVERIFY(raw.exec("ROLLBACK"));
        QCOMPARE(raw.scalar("SELECT COUNT(*) FROM inbox").toInt(), 1);
        QCOMPARE(inbox.listView()->model()->rowCount(), 1);
        QVERIFY(!inbox.listView()->isBusy());
    }

    void daemonSignalsRefresh_data()
    {
        QTest::addColumn<int>("folder");
        QTest::addColumn<QStringList>("refreshing");
        QTest::newRow("inbox") << 0 << QStringList{"OnMessagesReceived"};
        QTest::newRow("outbox") << 1
                                << QStringList{"OnMessagesPartiallySent", "OnMessagesSendFailed",
                                               "OnMessagesSent"};
        QTest::newRow("sent") << 2 << QStringList{"OnMessagesSent"};
    }

    // Each screen refreshes on the daemon's notices for its folder, and on no other.
    void daemonSignalsRefresh()
    {
        QFETCH(int, folder);
        QFETCH(QStringList, refreshing);
        std::unique_ptr<CFolderForm> pForm(makeForm(folder));
        QVERIFY(waitRefreshed(pForm.get()));
        const QStringList all{"OnMessagesReceived", "OnMessagesPartiallySent",
                              "OnMessagesSendFailed", "OnMessagesSent"};
        QSignalSpy started(pForm->listView()->tarvikModel(), &CTarvikListModel::fetchingStarted);
        QSignalSpy completed(pForm->listView(), &CTarvikListView::refreshCompleted);
        for (const QString& strMethod : all) {
            started.clear();
            completed.clear();
            QVERIFY(m_fixture.callClient(strMethod).type() == QDBusMessage::ReplyMessage);
            // A notice that must not refresh is followed by one that must: a refresh of
            // the first would start before the answer to the second.
            if (!refreshing.contains(strMethod))
                QVERIFY(m_fixture.callClient(refreshing.first()).type() ==
                        QDBusMessage::ReplyMessage);
            QTRY_VERIFY_WITH_TIMEOUT(!completed.isEmpty(), 5000);
            QVERIFY2(started.size() == 1, qPrintable(strMethod));
        }
    }

    // Rows no client would write: listed and drawn without a crash, nothing lost.
    void hostileRows()
    {
        Test::CSideConnection raw(m_fixture.home() + "/.tarvik/tarvikdb.sqlite");
        const QString strLong(10000, QChar(0x05D0));
        const QString strNote(1 << 20, 'n');
        QVERIFY(
            raw.exec("INSERT INTO inbox (tfrom, tutcdatetime, tlatitude, tflag) VALUES "
                     "('x', 'yesterday', 'north', 'maybe')"));
        QVERIFY(raw.exec("INSERT INTO inbox (tid) VALUES (NULL)"));
        QVERIFY(raw.exec("INSERT INTO inbox (tscreenname, ttitle, tnote, tutcdatetime) VALUES ('" +
                         strLong + "', 'مرحبا 👋🏽 שלום', '" + strNote + "', 0)"));
        QVERIFY(
            raw.exec("INSERT INTO inbox (tscreenname, ttitle, tutcdatetime, tflag) VALUES "
                     "('Future', 'far', 253402300799000, 1)"));
        CInboxForm inbox;
        inbox.resize(800, 450);
        QVERIFY(waitRefreshed(&inbox));
        QCOMPARE(inbox.listView()->model()->rowCount(), 4);
        inbox.show();
        QVERIFY(!inbox.grab().isNull());
        QCOMPARE(raw.scalar("SELECT COUNT(*) FROM inbox").toInt(), 4);
    }
};

QTEST_MAIN(TestFolders)
#include "tst_folders.moc"
