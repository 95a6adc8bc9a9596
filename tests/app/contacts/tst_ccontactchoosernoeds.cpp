// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "ccontactchooser.h"
#include "ccontactchooserdialog.h"
#include "clogcapture.h"
#include "cprivatebus.h"

using namespace Dravo;
using namespace Dravo::Test;

// A session bus without Evolution Data Server: the chooser logs it and returns empty at once.
// (The address book's own failure to start there is the contacts-module test's part.)
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

    void chooserReturnsEmptyAtOnce()
    {
        CLogCapture log;
        CContactChooser chooser;
        QSignalSpy finished(&chooser, &CContactChooser::finished);
        chooser.start();
        QPointer<CContactChooserDialog> dialog = chooser.chooserDialog();
        QVERIFY(finished.wait(30000));
        QCOMPARE(finished.at(0).at(0).toString(), QString());
        QVERIFY(log.contains(
            QStringLiteral("CComposeTarvikForm::onBtnContactsClick can't create chooser dialog")));
        QTRY_VERIFY(dialog.isNull());
    }
};

QTEST_MAIN(TestContactChooserNoEds)
#include "tst_ccontactchoosernoeds.moc"
