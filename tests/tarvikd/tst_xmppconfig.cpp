// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Where the daemon finds its server: the configuration file, overridden by the environment.
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "cxmppconfig.h"

using namespace Dravo;

class XmppConfigTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void load_data();
    void load();
};

void XmppConfigTest::load_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("environment");  // NAME=value;NAME=value
    QTest::addColumn<QString>("domain");
    QTest::addColumn<QString>("host");
    QTest::addColumn<int>("port");
    QTest::addColumn<int>("problems");

    const QString none;
    QTest::newRow("file")
        << "# the service\nxmpp_domain = Example.ORG\nxmpp_server=xmpp.example.org:5223\n"
        << none << "example.org"
        << "xmpp.example.org" << 5223 << 0;
    QTest::newRow("environment wins")
        << "xmpp_domain=example.org\nxmpp_server=a:1\n"
        << QString("TARVIK_XMPP_DOMAIN=other.net;TARVIK_XMPP_SERVER=[::1]:5222") << "other.net"
        << "::1" << 5222 << 0;
    QTest::newRow("no file") << QString() << QString("TARVIK_XMPP_DOMAIN=example.org")
                             << "example.org" << none << 0 << 0;
    QTest::newRow("bad server") << "xmpp_domain=example.org\nxmpp_server=example.org\n"
                                << none << "example.org" << none << 0 << 1;
    QTest::newRow("port out of range") << "xmpp_domain=example.org\nxmpp_server=h:70000\n"
                                       << none << "example.org" << none << 0 << 1;
    QTest::newRow("a JID is not a domain") << "xmpp_domain=me@example.org\n"
                                           << none << none << none << 0 << 1;
    QTest::newRow("unknown key and garbage") << "xmpp_domain=example.org\ncolour=blue\nnonsense\n"
                                             << none << "example.org" << none << 0 << 2;
    QTest::newRow("unreadable CA file")
        << "xmpp_domain=example.org\nxmpp_ca_file=/nonexistent.pem\n"
        << none << "example.org" << none << 0 << 1;
}

void XmppConfigTest::load()
{
    QFETCH(QString, file);
    QFETCH(QString, environment);
    QFETCH(QString, domain);
    QFETCH(QString, host);
    QFETCH(int, port);
    QFETCH(int, problems);

    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
    for (const char* name : {"TARVIK_XMPP_DOMAIN", "TARVIK_XMPP_SERVER", "TARVIK_XMPP_CA_FILE"}) {
        qunsetenv(name);
    }
    for (const QString& pair : environment.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const int equals = pair.indexOf(QLatin1Char('='));
        qputenv(pair.left(equals).toUtf8().constData(), pair.mid(equals + 1).toUtf8());
    }
    if (!file.isNull()) {
        QVERIFY(QDir().mkpath(CXmppConfig::configDirectory()));
        QFile out(CXmppConfig::configFile());
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(file.toUtf8());
    }
    CXmppConfig config;
    QStringList found;
    config.load(&found);
    QCOMPARE(config.m_strDomain, domain);
    QCOMPARE(config.m_strHost, host);
    QCOMPARE(int(config.m_uPort), port);
    QVERIFY(config.m_strCaFile.isEmpty());
    QVERIFY2(found.size() == problems, qPrintable(found.join(QLatin1Char('\n'))));
}

QTEST_GUILESS_MAIN(XmppConfigTest)
#include "tst_xmppconfig.moc"
