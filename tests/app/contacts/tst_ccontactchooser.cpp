// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <signal.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalSpy>
#include <QtTest>

#include "caddressbook.h"
#include "ccontactchooser.h"
#include "ccontactchooserdialog.h"
#include "ccontactdetaildialog.h"
#include "cedsfixture.h"
#include "clogcapture.h"

using namespace Dravo;
using namespace Dravo::Test;

class TestContactChooser : public QObject
{
    Q_OBJECT

private:
    CEdsFixture m_eds;
    // Everything logged: the helper's diagnostics, e.g. the vCard library's warnings
    // for multi-valued attributes read as one value, must not show.
    CLogCapture m_log;

    // Whether the helper script of unreadable() that wrote its process id runs.
    static bool isRunning(const QTemporaryDir& dir)
    {
        QFile file(dir.filePath(QStringLiteral("pid")));
        const int pid = file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toInt() : 0;
        return pid > 0 && ::kill(pid, 0) == 0;
    }

    // Opens the chooser and waits until the address book has been read.
    CContactChooserDialog* openChooser(CContactChooser& chooser)
    {
        chooser.start();
        CContactChooserDialog* dialog = chooser.chooserDialog();
        if (!dialog) {
            return nullptr;
        }
        if (!QTest::qWaitFor([dialog]() { return dialog->isLoaded(); }, 20000)) {
            return nullptr;
        }
        return dialog;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(m_eds.start(), qPrintable(m_eds.errorString()));
        const auto vcard = &CEdsFixture::vcard;
        const QStringList contacts{
            vcard(QStringLiteral("Ann One-Phone"), {QStringLiteral("TEL;TYPE=CELL:+3725550001")}),
            vcard(QStringLiteral("Bob Phone-And-Mail"),
                  {QStringLiteral("TEL;TYPE=CELL:+3725550002"),
                   QStringLiteral("EMAIL;TYPE=INTERNET:bob@example.org")}),
            vcard(QStringLiteral("Cid No-Address"),
                  {QStringLiteral("N:No-Address;Cid;;;"), QStringLiteral("ORG:Harbour;Office"),
                   QStringLiteral("ADR;TYPE=WORK:;;Sadama 1;Tallinn;;10111;EE"),
                   QStringLiteral("NOTE:met at the harbour")}),
            vcard(QStringLiteral("Dan One-Mail"), {QStringLiteral("EMAIL:dan@example.org")}),
            vcard(QStringLiteral("Eve Two-Phones"), {QStringLiteral("TEL;TYPE=HOME:+3726000001"),
                                                     QStringLiteral("TEL;TYPE=WORK:+3726000002")}),
            vcard(QStringLiteral("Õie Ümarik"), {QStringLiteral("TEL:+3725550099")}),
        };
        QVERIFY2(m_eds.addContacts(contacts), qPrintable(m_eds.errorString()));
    }

    void initializeConnectsToRegistry()
    {
        CLogCapture log;
        QSignalSpy spy(CAddressBook::instance(), &CAddressBook::initialized);
        CAddressBook::instance()->initialize();
        QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, 20000);
        QVERIFY2(spy.at(0).at(0).toBool(), qPrintable(spy.at(0).at(1).toString()));
        QVERIFY(!log.contains(QStringLiteral("main: osso abook initialization failed!")));
    }

    void choose_data()
    {
        QTest::addColumn<QStringList>("chosen");     // empty: nothing selected
        QTest::addColumn<QString>("chooserAction");  // "ok", "cancel" or "parent gone"
        QTest::addColumn<int>("detailRow");          // -1: no detail dialog expected
        QTest::addColumn<QString>("detailAction");   // "ok", "ok-none", "cancel", "parent gone"
        QTest::addColumn<QString>("result");

        const auto row = [](const char* pTag, const QStringList& chosen) -> QTestData& {
            return QTest::newRow(pTag) << chosen;
        };
        const QString none;
        row("one phone", {"Ann One-Phone"}) << "ok" << -1 << none << "+3725550001";
        row("one e-mail", {"Dan One-Mail"}) << "ok" << -1 << none << "dan@example.org";
        row("phone and e-mail, pick e-mail", {"Bob Phone-And-Mail"}) << "ok" << 1 << "ok"
                                                                     << "bob@example.org";
        row("two phones, pick first", {"Eve Two-Phones"}) << "ok" << 0 << "ok"
                                                          << "+3726000001";
        row("detail cancelled", {"Bob Phone-And-Mail"}) << "ok" << 0 << "cancel" << none;
        row("detail: parent window gone", {"Bob Phone-And-Mail"})
            << "ok" << 0 << "parent gone" << none;
        row("detail without selection", {"Bob Phone-And-Mail"}) << "ok" << 0 << "ok-none" << none;
        row("neither phone nor e-mail", {"Cid No-Address"}) << "ok" << -1 << none << none;
        row("several chosen: the first shown", {"Eve Two-Phones", "Ann One-Phone"})
            << "ok" << -1 << none << "+3725550001";
        row("chooser cancelled", {"Ann One-Phone"}) << "cancel" << -1 << none << none;
        row("chooser: parent window gone", {"Ann One-Phone"})
            << "parent gone" << -1 << none << none;
        row("chooser without selection", {}) << "ok" << -1 << none << none;
        row("non-ASCII name", {"Õie Ümarik"}) << "ok" << -1 << none << "+3725550099";
    }

    void choose()
    {
        QFETCH(QStringList, chosen);
        QFETCH(QString, chooserAction);
        QFETCH(int, detailRow);
        QFETCH(QString, detailAction);
        QFETCH(QString, result);

        QScopedPointer<QWidget> parent(new QWidget);
        CContactChooser chooser(parent.data());
        QSignalSpy finished(&chooser, &CContactChooser::finished);
        CContactChooserDialog* dialog = openChooser(chooser);
        QVERIFY(dialog);
        QVERIFY(dialog->isVisible());
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Choose a contact"));
        QCOMPARE(dialog->visibleCount(), 6);
        dialog->selectByName(chosen);
        QCOMPARE(dialog->selectedContacts().size(), chosen.size());
        if (chooserAction == QLatin1String("ok")) {
            dialog->accept();
        } else if (chooserAction == QLatin1String("cancel")) {
            QTest::keyClick(dialog, Qt::Key_Escape);
        } else {
            parent.reset();
        }
        if (detailRow >= 0) {
            QTRY_VERIFY(chooser.detailDialog() && chooser.detailDialog()->isVisible());
            CContactDetailDialog* detail = chooser.detailDialog();
            QCOMPARE(detail->windowTitle(), chosen.first());
            QCOMPARE(detail->listWidget()->count(), 2);
            QCOMPARE(finished.count(), 0);
            if (detailAction == QLatin1String("cancel")) {
                detail->reject();
            } else if (detailAction == QLatin1String("parent gone")) {
                parent.reset();
            } else {
                if (detailAction == QLatin1String("ok")) {
                    detail->selectRow(detailRow);
                    // Each address is shown with its kind: "Phone: ...", "E-mail: ...".
                    QVERIFY(detail->listWidget()->item(detailRow)->text().endsWith(": " + result));
                } else {
                    detail->listWidget()->clearSelection();
                }
                detail->accept();
            }
        }
        QTRY_COMPARE(finished.count(), 1);
        QCOMPARE(finished.at(0).at(0).toString(), result);
        QCOMPARE(chooser.result(), result);
        if (detailRow < 0) {
            QVERIFY(!chooser.detailDialog());
        }
        QVERIFY(!m_log.containsPrefix(QStringLiteral("CAddressBook: tarvik-addressbook: ")));
    }

    void searchFiltersByNameAndAddress_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("shown");
        QTest::newRow("name, any case") << "bob" << 1;
        QTest::newRow("phone digits") << "550001" << 1;
        QTest::newRow("e-mail domain") << "example.org" << 2;
        QTest::newRow("shared prefix") << "+372" << 4;
        QTest::newRow("non-ASCII, other case") << "õie" << 1;
        QTest::newRow("nothing") << "zzz" << 0;
        QTest::newRow("cleared") << "" << 6;
    }

    void searchFiltersByNameAndAddress()
    {
        QFETCH(QString, text);
        QFETCH(int, shown);
        CContactChooser chooser;
        CContactChooserDialog* dialog = openChooser(chooser);
        QVERIFY(dialog);
        bool ascii = true;
        for (const QChar c : text) {
            ascii = ascii && c.unicode() < 0x80;
        }
        if (ascii) {
            QTest::keyClicks(dialog->searchField(), text);
        } else {
            dialog->searchField()->insert(text);  // QTest types ASCII only
        }
        QCOMPARE(dialog->visibleCount(), shown);
        QCOMPARE(dialog->statusLabel()->isVisible(), shown == 0);
        if (shown == 0) {
            QCOMPARE(dialog->statusLabel()->text(), QStringLiteral("No contacts"));
        }
        dialog->reject();
        QTRY_VERIFY(chooser.isFinished());
    }

    // The blocking form waits in a local event loop: timers keep firing.
    void chooseBlocksWithoutFreezing()
    {
        int ticks = 0;
        QTimer ticker;
        connect(&ticker, &QTimer::timeout, this, [&ticks]() { ++ticks; });
        ticker.start(10);
        QTimer driver;
        connect(&driver, &QTimer::timeout, this, [&]() {
            auto* dialog = qobject_cast<CContactChooserDialog*>(QApplication::activeModalWidget());
            if (dialog && dialog->isLoaded() && ticks > 5) {
                dialog->selectByName({QStringLiteral("Dan One-Mail")});
                dialog->accept();
            }
        });
        driver.start(20);
        QCOMPARE(CContactChooser::choose(), QStringLiteral("dan@example.org"));
        QVERIFY(ticks > 5);
    }

    // A contact added while the client runs shows in the next chooser, whatever its texts
    // hold (line breaks, quotes, control characters); a text too long to be an address is
    // left out.
    void addedContactReadIntact()
    {
        const QString name = QStringLiteral("Fay \"},{\"uid\":\n\u00f5");
        QVERIFY2(m_eds.addContacts({CEdsFixture::vcard(
                     QStringLiteral("Fay \"}\\,{\"uid\":\\n\u00f5"),
                     {QStringLiteral("TEL:+372\\n555\x01\x1f"),
                      QStringLiteral("EMAIL:") + QString(5000, QLatin1Char('m'))})}),
                 qPrintable(m_eds.errorString()));
        CContactChooser chooser;
        CContactChooserDialog* dialog = openChooser(chooser);
        QVERIFY(dialog);
        dialog->selectByName({QStringLiteral("Ann One-Phone")});  // kept over the new read
        QTRY_COMPARE_WITH_TIMEOUT(dialog->visibleCount(), 7, 20000);
        QCOMPARE(dialog->selectedContacts().value(0).name(), QStringLiteral("Ann One-Phone"));
        dialog->selectByName({name});
        const QList<CContactEntry::Attribute> expected{
            {QStringLiteral("TEL"), QStringLiteral("+372\n555\x01\x1f")}};
        QCOMPARE(dialog->selectedContacts().value(0).attributes(), expected);
    }

    // The address book cannot be read (the helper missing, crashing, failing or hanging,
    // the session bus gone): start-up logs it, the chooser goes with an empty result.
    void unreadable_data()
    {
        QTest::addColumn<QString>("script");  // in place of the helper; "-": none there
        QTest::addColumn<QString>("logged");  // start of the line that says why
        QTest::newRow("helper missing") << "-"
                                        << "CAddressBook: cannot run ";
        QTest::newRow("helper crashes") << "echo '{\"uid\"'; kill -SEGV $$"
                                        << "CAddressBook: the address-book helper crashed";
        QTest::newRow("helper fails") << "echo '{\"error\":\"no book\"}'; exit 1"
                                      << "CAddressBook: no book";
        QTest::newRow("session bus gone") << ""
                                          << "CAddressBook: ";
        QTest::newRow("helper hangs, then quit")
            << "echo $$ >pid; exec sleep 60"
            << "CAddressBook: the address-book helper did not answer";
    }

    void unreadable()
    {
        QFETCH(QString, script);
        QFETCH(QString, logged);
        QTemporaryDir dir;
        QFile helper(dir.filePath(QStringLiteral("tarvik-addressbook")));
        qputenv("TARVIK_PLUGIN_DIR", dir.path().toUtf8());
        if (script.isEmpty()) {
            qunsetenv("TARVIK_PLUGIN_DIR");
            m_eds.stop();
        } else if (script != QLatin1String("-")) {
            QVERIFY(helper.open(QIODevice::WriteOnly));
            helper.write("#!/bin/sh\ncd " + dir.path().toUtf8() + "\n" + script.toUtf8() + "\n");
            helper.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
            helper.close();
        }
        const bool hangs = script.contains(QLatin1String("sleep"));
        CAddressBook* book = CAddressBook::instance();
        book->setHelperTimeout(hangs ? 1000 : 20000);
        CLogCapture log;
        QSignalSpy initialized(book, &CAddressBook::initialized);
        book->initialize();
        QTRY_COMPARE_WITH_TIMEOUT(initialized.count(), 1, 25000);
        QCOMPARE(initialized.first().at(0).toBool(), false);
        QVERIFY(log.contains(QStringLiteral("main: osso abook initialization failed!")));
        QVERIFY2(log.containsPrefix(logged), qPrintable(log.lines().join('\n')));
        QVERIFY(!isRunning(dir));  // a hanging one killed and reaped
        QCOMPARE(CContactChooser::choose(), QString());
        QVERIFY(log.contains(
            QStringLiteral("CComposeTarvikForm::onBtnContactsClick can't create chooser dialog")));
        if (hangs) {  // the last row: quitting ends a read under way at once
            book->setHelperTimeout(60000);
            book->initialize();
            QTRY_VERIFY(isRunning(dir));
            book->onAppQuit();
            QVERIFY(!isRunning(dir));
        }
    }
};

QTEST_MAIN(TestContactChooser)
#include "tst_ccontactchooser.moc"
