// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Loading the contacts plugin: found next to the executable, loaded off the GUI
// thread, and a missing plugin reported without taking the client down.
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "ccontactsmodule.h"
#include "clogcapture.h"
#include "cprivatebus.h"

using namespace Dravo;

class AppContactsModuleTest : public QObject
{
    Q_OBJECT

private:
    Test::CPrivateBuses m_buses;

private Q_SLOTS:
    void initTestCase()
    {
        // The plugin's address book is read on a bus of the test's own.
        QVERIFY2(m_buses.start(), qPrintable(m_buses.errorString()));
    }

    void loadsInBackgroundAndInitializes()
    {
        qunsetenv("TARVIK_PLUGIN_DIR");
        CContactsModule module;
        QSignalSpy loaded(&module, &CContactsModule::loaded);
        module.loadInBackground();
        module.loadInBackground();
        QVERIFY(loaded.wait(10000));
        QCOMPARE(loaded.count(), 1);
        QVERIFY2(loaded.first().at(0).toBool(), qPrintable(module.errorString()));
        QVERIFY(module.module() != nullptr);
    }

    void missingPluginIsReported()
    {
        QTemporaryDir empty;
        qputenv("TARVIK_PLUGIN_DIR", empty.path().toUtf8());
        Test::CLogCapture log;
        CContactsModule background;
        QSignalSpy loaded(&background, &CContactsModule::loaded);
        background.loadInBackground();
        QVERIFY(loaded.wait(5000));
        QCOMPARE(loaded.first().at(0).toBool(), false);
        QVERIFY(log.contains(QStringLiteral("main: osso abook initialization failed!")));
        QVERIFY(log.containsPrefix(
            QStringLiteral("CContactsModule: cannot load the contacts plugin: ")));

        CContactsModule onDemand;
        QVERIFY(onDemand.module() == nullptr);
        QVERIFY(onDemand.errorString().contains(empty.path()));
        qunsetenv("TARVIK_PLUGIN_DIR");
    }
};

QTEST_MAIN(AppContactsModuleTest)
#include "tst_ccontactsmodule.moc"
