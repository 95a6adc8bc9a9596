// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include "clogwriter.h"

using Dravo::CLogWriter;

class TestCLogWriter : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_tmpHome;
    QtMessageHandler m_pTestHandler = nullptr;

    static QByteArray readLog()
    {
        QFile file(CLogWriter::logFilePath());
        if (!file.open(QIODevice::ReadOnly))
            return QByteArray();
        return file.readAll();
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_tmpHome.isValid());
        qputenv("HOME", m_tmpHome.path().toLocal8Bit());
        m_pTestHandler = qInstallMessageHandler(nullptr);
        qInstallMessageHandler(m_pTestHandler);
    }

    void cleanup() { qInstallMessageHandler(m_pTestHandler); }

    void consoleSwitch_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<bool>("fileLogging");
        QTest::newRow("no arguments") << QStringList{"tarvik"} << true;
        QTest::newRow("switch first") << QStringList{"tarvik", "logtoconsole"} << false;
        QTest::newRow("switch later") << QStringList{"tarvik", "-x", "y", "logtoconsole"} << false;
        QTest::newRow("other capitals") << QStringList{"tarvik", "LogToConsole"} << true;
        QTest::newRow("part of a word") << QStringList{"tarvik", "logtoconsole2"} << true;
        QTest::newRow("program name only") << QStringList{"logtoconsole"} << true;
        QTest::newRow("empty argv") << QStringList{} << true;
    }

    void consoleSwitch()
    {
        QFETCH(QStringList, args);
        QFETCH(bool, fileLogging);
        QCOMPARE(CLogWriter::fileLoggingWanted(args), fileLogging);

        QList<QByteArray> lstBytes;
        QList<char*> lstArgv;
        for (const QString& str : args)
            lstBytes << str.toLocal8Bit();
        for (QByteArray& ba : lstBytes)
            lstArgv << ba.data();
        QCOMPARE(CLogWriter::fileLoggingWanted(int(lstArgv.size()), lstArgv.data()), fileLogging);
    }

    // Each run starts with an empty log; lines are the text as logged plus one "\n",
    // whatever the message type, and embedded line breaks stay as they are.
    void freshLogEachRun()
    {
        QVERIFY(CLogWriter::install());
        qDebug("first run");
        qCritical("first run critical");
        QCOMPARE(readLog(), QByteArray("first run\nfirst run critical\n"));

        QVERIFY(CLogWriter::install());
        qWarning("second run");
        qDebug("two\nlines");
        qInfo("info too");
        QCOMPARE(readLog(), QByteArray("second run\ntwo\nlines\ninfo too\n"));
    }

    // A log that cannot be opened drops the message silently and does not stop later ones.
    void unwritableLogDropsMessage()
    {
        QVERIFY(CLogWriter::install());
        QVERIFY(QDir().mkpath(CLogWriter::logFilePath()));  // a directory where the file goes
        qDebug("lost");
        QVERIFY(QDir().rmdir(CLogWriter::logFilePath()));
        qDebug("kept");
        QCOMPARE(readLog(), QByteArray("kept\n"));
    }

    // HOME/.tarvik cannot be made (HOME is a file): no handler is installed.
    void directoryCannotBeCreated()
    {
        QTemporaryDir tmp;
        QFile blocker(tmp.path() + "/home");
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        const QByteArray baOldHome = qgetenv("HOME");
        qputenv("HOME", blocker.fileName().toLocal8Bit());
        const bool bInstalled = CLogWriter::install();
        const QtMessageHandler previous = qInstallMessageHandler(m_pTestHandler);
        qputenv("HOME", baOldHome);
        QVERIFY(!bInstalled);
        QVERIFY(previous != &CLogWriter::messageHandler);
    }

    // Messages from several threads never interleave inside a line.
    void concurrentWritersKeepLinesWhole()
    {
        QVERIFY(CLogWriter::install());
        constexpr int nLines = 300;
        auto writer = [](char tag) {
            const QByteArray baLine(120, tag);
            for (int i = 0; i < nLines; ++i)
                qDebug("%s", baLine.constData());
        };
        QThread* pA = QThread::create(writer, 'a');
        QThread* pB = QThread::create(writer, 'b');
        pA->start();
        pB->start();
        QVERIFY(pA->wait(30000));
        QVERIFY(pB->wait(30000));
        delete pA;
        delete pB;
        const QList<QByteArray> lstLines = readLog().split('\n');
        QCOMPARE(lstLines.size(), 2 * nLines + 1);
        for (int i = 0; i < 2 * nLines; ++i) {
            const QByteArray& ba = lstLines.at(i);
            QVERIFY2(ba == QByteArray(120, 'a') || ba == QByteArray(120, 'b'), ba.constData());
        }
    }
};

QTEST_GUILESS_MAIN(TestCLogWriter)
#include "tst_clogwriter.moc"
