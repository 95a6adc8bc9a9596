// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <signal.h>

#include <QFile>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "caddressbook.h"
#include "ccontactchooser.h"
#include "ccontactchooserdialog.h"
#include "clogcapture.h"
#include "cprivatebus.h"

using namespace Dravo;
using namespace Dravo::Test;

// The address book cannot be read (no Evolution Data Server on the session bus, or the
// helper missing, crashing, hanging): start-up logs it, the chooser returns empty at once.
class TestContactChooserNoEds : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_home;
    CPrivateBuses m_buses;

    // A shell script in place of the helper, in a directory TARVIK_PLUGIN_DIR names.
    static void useHelper(const QTemporaryDir& dir, const QString& script)
    {
        QFile file(dir.filePath(QStringLiteral("tarvik-addressbook")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\ncd " + dir.path().toUtf8() + "\n" + script.toUtf8() + "\n");
        file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        qputenv("TARVIK_PLUGIN_DIR", dir.path().toUtf8());
    }

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("HOME", m_home.path().toUtf8());
        qputenv("XDG_DATA_HOME", m_home.filePath(QStringLiteral("data")).toUtf8());
        qputenv("XDG_CONFIG_HOME", m_home.filePath(QStringLiteral("config")).toUtf8());
        qputenv("GSETTINGS_BACKEND", "memory");
        QVERIFY2(m_buses.start(), qPrintable(m_buses.errorString()));
    }

    void chooserReturnsEmptyAtOnce_data()
    {
        QTest::addColumn<QString>("script");  // empty: the real helper; "-": none there
        QTest::addColumn<QString>("logged");  // start of the line that says why
        QTest::newRow("no address book on the bus") << ""
                                                    << "CAddressBook: ";
        QTest::newRow("helper missing") << "-"
                                        << "CAddressBook: cannot run ";
        QTest::newRow("helper crashes") << "echo '{\"uid\"'; kill -SEGV $$"
                                        << "CAddressBook: the address-book helper crashed";
        QTest::newRow("helper reports an error")
            << "echo '{\"error\":\"no system address book\"}'; exit 1"
            << "CAddressBook: no system address book";
        QTest::newRow("helper hangs") << "echo $$ >pid; exec sleep 60"
                                      << "CAddressBook: the address-book helper did not answer";
    }

    void chooserReturnsEmptyAtOnce()
    {
        QFETCH(QString, script);
        QFETCH(QString, logged);
        QTemporaryDir dir;
        if (script.isEmpty()) {
            qunsetenv("TARVIK_PLUGIN_DIR");
        } else if (script == QLatin1String("-")) {
            qputenv("TARVIK_PLUGIN_DIR", dir.path().toUtf8());
        } else {
            useHelper(dir, script);
        }
        CAddressBook* book = CAddressBook::instance();
        book->setHelperTimeout(script.contains(QLatin1String("sleep")) ? 1000 : 20000);
        CLogCapture log;
        QSignalSpy initialized(book, &CAddressBook::initialized);
        book->initialize();
        QTRY_COMPARE_WITH_TIMEOUT(initialized.count(), 1, 25000);
        QCOMPARE(initialized.first().at(0).toBool(), false);
        QVERIFY(log.contains(QStringLiteral("main: osso abook initialization failed!")));
        QVERIFY2(log.containsPrefix(logged), qPrintable(log.lines().join('\n')));
        if (QFile::exists(dir.filePath(QStringLiteral("pid")))) {
            QFile pid(dir.filePath(QStringLiteral("pid")));
            QVERIFY(pid.open(QIODevice::ReadOnly));
            QVERIFY(::kill(pid.readAll().trimmed().toInt(), 0) != 0);  // killed and reaped
        }

        CContactChooser chooser;
        QSignalSpy finished(&chooser, &CContactChooser::finished);
        chooser.start();
        QPointer<CContactChooserDialog> dialog = chooser.chooserDialog();
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 25000);
        QCOMPARE(finished.at(0).at(0).toString(), QString());
        QVERIFY(log.contains(
            QStringLiteral("CComposeTarvikForm::onBtnContactsClick can't create chooser dialog")));
        QTRY_VERIFY(dialog.isNull());
    }

    // Quitting ends a read under way at once.
    void quitKillsTheHelper()
    {
        QTemporaryDir dir;
        useHelper(dir, QStringLiteral("echo $$ >pid; exec sleep 60"));
        CAddressBook::instance()->setHelperTimeout(60000);
        CAddressBook::instance()->initialize();
        QFile pid(dir.filePath(QStringLiteral("pid")));
        QTRY_VERIFY(pid.size() > 0);
        QVERIFY(pid.open(QIODevice::ReadOnly));
        CAddressBook::instance()->onAppQuit();
        QVERIFY(::kill(pid.readAll().trimmed().toInt(), 0) != 0);
    }
};

QTEST_MAIN(TestContactChooserNoEds)
#include "tst_ccontactchoosernoeds.moc"
