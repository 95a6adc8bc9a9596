// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QLabel>
#include <QLineEdit>
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

// A session bus without Evolution Data Server: the chooser says so and returns empty.
class TestContactChooserNoEds : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_home;
    CPrivateBuses m_buses;

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("HOME", m_home.path().toUtf8());
        qputenv("XDG_DATA_HOME", m_home.filePath(QStringLiteral("data")).toUtf8());
        qputenv("XDG_CONFIG_HOME", m_home.filePath(QStringLiteral("config")).toUtf8());
        qputenv("GSETTINGS_BACKEND", "memory");
        QVERIFY2(m_buses.start(), qPrintable(m_buses.errorString()));
    }

    void initializeLogsFailure()
    {
        CLogCapture log;
        QSignalSpy spy(CAddressBook::instance(), &CAddressBook::initialized);
        CAddressBook::instance()->initialize();
        QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, 30000);
        QVERIFY(!spy.at(0).at(0).toBool());
        QVERIFY(!spy.at(0).at(1).toString().isEmpty());
        QCOMPARE(log.count(QStringLiteral("main: osso abook initialization failed!")), 1);
    }

    void chooserSaysUnavailableAndReturnsEmpty()
    {
        CLogCapture log;
        CContactChooser chooser;
        QSignalSpy finished(&chooser, &CContactChooser::finished);
        chooser.start();
        CContactChooserDialog* dialog = chooser.chooserDialog();
        QVERIFY(dialog);
        QTRY_VERIFY_WITH_TIMEOUT(dialog->isLoaded(), 30000);
        QVERIFY(dialog->statusLabel()->isVisible());
        QCOMPARE(dialog->statusLabel()->text(),
                 QStringLiteral("The address book is not available."));
        QVERIFY(!dialog->searchField()->isEnabled());
        QCOMPARE(dialog->visibleCount(), 0);
        QVERIFY(log.containsPrefix(
            QStringLiteral("CComposeTarvikForm::onBtnContactsClick address book not available: ")));
        const QString dir = qEnvironmentVariable("TARVIK_SCREENSHOT_DIR");
        if (!dir.isEmpty()) {
            dialog->grab().save(dir + QStringLiteral("/contact-chooser-unavailable.png"));
        }
        dialog->accept();  // OK with nothing to choose
        QTRY_COMPARE(finished.count(), 1);
        QCOMPARE(finished.at(0).at(0).toString(), QString());
        QVERIFY(log.contains(
            QStringLiteral("CComposeTarvikForm::onBtnContactsClick nothing selected")));
    }
};

QTEST_MAIN(TestContactChooserNoEds)
#include "tst_ccontactchoosernoeds.moc"
