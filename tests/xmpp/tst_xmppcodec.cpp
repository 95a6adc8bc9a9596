// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Addresses and the <message> stanza: what a message becomes on the wire and what comes back
// from our own clients and from other XMPP clients, hostile ones included.
#include <QRegularExpression>
#include <QTest>
#include <QXmlStreamReader>

#include "cstanzacodec.h"
#include "cxmppaddress.h"
#include "storagefixture.h"

using namespace Dravo;
using namespace Dravo::Test;

namespace {

const QString s_strDomain = QStringLiteral("tarvik.localhost");
const QString s_strOwn = QStringLiteral("+3725550009");
const QDateTime s_dtNow = QDateTime(QDate(2026, 5, 6), QTime(7, 8, 9), Qt::UTC);

CStanzaCodec::CIncoming decode(const QString& xml)
{
    return CStanzaCodec::fromStanza(xml, s_strDomain, s_strOwn, s_dtNow);
}

// What the server adds on delivery: the sender's full address.
QString delivered(const QString& stanza, const QString& from)
{
    QString xml = stanza;
    return xml.replace(QLatin1String("<message "),
                       QStringLiteral("<message from=\"%1\" ").arg(from));
}

// The text of the stanza's <body>.
QString bodyOf(const QString& xml)
{
    QXmlStreamReader reader(xml);
    while (reader.readNextStartElement()) {
        if (reader.name() == QLatin1String("body")) {
            return reader.readElementText();
        }
        if (reader.name() != QLatin1String("message")) {
            reader.skipCurrentElement();
        }
    }
    return QStringLiteral("<no body>");
}

// A foreign stanza from bob, with `children` inside.
QString foreign(const QString& children, const QString& attributes = QStringLiteral("type='chat'"))
{
    return QStringLiteral(
               "<message xmlns='jabber:client' from='bob@Example.org/x' to='3725550009@"
               "tarvik.localhost' id='f1' %1>%2</message>")
        .arg(attributes, children);
}

}  // namespace

class XmppCodecTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void roundTrip_data();
    void roundTrip();
    void bodyForms_data();
    void bodyForms();
    void geoUri_data();
    void geoUri();
    void recipients_data();
    void recipients();
    void senders_data();
    void senders();
    void foreignStanzas_data();
    void foreignStanzas();
    void messageIds_data();
    void messageIds();
};

void XmppCodecTest::roundTrip_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("note");
    QTest::addColumn<QString>("screenname");
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");

    QTest::newRow("plain") << QStringLiteral("Lunch") << QStringLiteral("At the corner")
                           << QStringLiteral("Alice") << 59.4369608 << 24.7535747;
    QTest::newRow("markup and line ends")
        << QStringLiteral("<b>x</b> & \"y\" 'z' ]]>") << QStringLiteral("one\r\ntwo\rthree\n\tfour")
        << QStringLiteral("A&amp;B <c/>") << -33.868820123456789 << -151.2092955;
    QTest::newRow("non-latin, extremes")
        << QStringLiteral("Привет 🌍") << QStringLiteral("  ") << QString() << -90.0 << 180.0;
    QTest::newRow("no texts") << QString() << QString() << QString() << 0.0 << -0.0;
}

// Everything but the IMEI, the sender, the row id and the flag arrives as it was sent;
// the IMEI and the local sender never appear on the wire.
void XmppCodecTest::roundTrip()
{
    QFETCH(QString, title);
    QFETCH(QString, note);
    QFETCH(QString, screenname);
    QFETCH(double, latitude);
    QFETCH(double, longitude);

    CTarvik sent = makeFullTarvik();
    sent.setTitle(title);
    sent.setNote(note);
    sent.setScreenname(screenname);
    sent.setLatitude(latitude);
    sent.setLongitude(longitude);
    const QString id = CStanzaCodec::messageId(sent);
    const QString stanza =
        CStanzaCodec::toStanza(sent, QStringLiteral("3725550009@tarvik.localhost"), id);
    QVERIFY(!stanza.contains(sent.reg()));
    QVERIFY(!stanza.contains(sent.from()));

    const CStanzaCodec::CIncoming in =
        decode(delivered(stanza, QStringLiteral("3725550001@tarvik.localhost/phone")));
    QVERIFY2(in.m_bTarvik, qPrintable(in.m_strReason));
    QCOMPARE(in.m_strId, id);
    QCOMPARE(fields(in.m_tarvik), fields(asReceived(sent, QStringLiteral("+3725550001"), id)));
}

void XmppCodecTest::bodyForms_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("note");
    QTest::addColumn<QString>("body");

    QTest::newRow("title and note") << QStringLiteral("Lunch") << QStringLiteral("At <noon>")
                                    << QStringLiteral("Lunch\nAt <noon>\ngeo:59.437,24.7536");
    QTest::newRow("only note") << QString() << QStringLiteral("At noon")
                               << QStringLiteral("At noon\ngeo:59.437,24.7536");
    QTest::newRow("only title") << QStringLiteral("Lunch") << QString()
                                << QStringLiteral("Lunch\ngeo:59.437,24.7536");
    QTest::newRow("neither") << QString() << QString() << QStringLiteral("geo:59.437,24.7536");
}

void XmppCodecTest::bodyForms()
{
    QFETCH(QString, title);
    QFETCH(QString, note);
    QFETCH(QString, body);

    CTarvik tarvik = makeFullTarvik();
    tarvik.setTitle(title);
    tarvik.setNote(note);
    tarvik.setLatitude(59.437);
    tarvik.setLongitude(24.7536);
    QCOMPARE(bodyOf(CStanzaCodec::toStanza(tarvik, QStringLiteral("a@b.c"), QStringLiteral("1"))),
             body);
}

void XmppCodecTest::geoUri_data()
{
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<QString>("uri");

    QTest::newRow("plain") << 59.437 << 24.7536 << QStringLiteral("geo:59.437,24.7536");
    QTest::newRow("negative") << -33.8688 << -151.2093 << QStringLiteral("geo:-33.8688,-151.2093");
    QTest::newRow("zero") << 0.0 << 0.0 << QStringLiteral("geo:0,0");
    QTest::newRow("minus zero") << -0.0 << -0.0 << QStringLiteral("geo:0,0");
    QTest::newRow("rounds to minus zero")
        << -0.00000001 << -0.00000004 << QStringLiteral("geo:0,0");
    QTest::newRow("many decimals")
        << 59.123456789 << -24.98765432 << QStringLiteral("geo:59.1234568,-24.9876543");
    QTest::newRow("trailing zeros") << 10.5 << 20.0 << QStringLiteral("geo:10.5,20");
    QTest::newRow("rounds up to whole")
        << 89.99999999 << -179.99999996 << QStringLiteral("geo:90,-180");
}

void XmppCodecTest::geoUri()
{
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QFETCH(QString, uri);
    QCOMPARE(CStanzaCodec::geoUri(latitude, longitude), uri);
}

void XmppCodecTest::recipients_data()
{
    QTest::addColumn<QString>("to");
    QTest::addColumn<QStringList>("jids");

    const QString jid = QStringLiteral("3725550001@tarvik.localhost");
    QTest::newRow("international") << QStringLiteral("+372 555 0001") << QStringList{jid};
    QTest::newRow("00 prefix, dash") << QStringLiteral("00372-5550001") << QStringList{jid};
    QTest::newRow("local number") << QStringLiteral("5550001")
                                  << QStringList{QStringLiteral("5550001@tarvik.localhost")};
    QTest::newRow("address") << QStringLiteral("a@b.c") << QStringList{QStringLiteral("a@b.c")};
    QTest::newRow("address trimmed, case kept")
        << QStringLiteral("  A@B.C ") << QStringList{QStringLiteral("A@B.C")};
    QTest::newRow("address with resource")
        << QStringLiteral("a@b.c/phone") << QStringList{QStringLiteral("a@b.c/phone")};
    QTest::newRow("letters") << QStringLiteral("abc") << QStringList{QString()};
    QTest::newRow("plus alone") << QStringLiteral("+") << QStringList{QString()};
    QTest::newRow("two digits") << QStringLiteral("12") << QStringList{QString()};
    QTest::newRow("21 digits") << QStringLiteral("+123456789012345678901")
                               << QStringList{QString()};
    QTest::newRow("plus inside") << QStringLiteral("555+0001") << QStringList{QString()};
    QTest::newRow("other script's digits") << QStringLiteral("٥٥٥٠٠٠١") << QStringList{QString()};
    QTest::newRow("space in address") << QStringLiteral("a b@c.d") << QStringList{QString()};
    QTest::newRow("no local part") << QStringLiteral("@c.d") << QStringList{QString()};
    QTest::newRow("no domain") << QStringLiteral("a@/r") << QStringList{QString()};
    QTest::newRow("slash before at") << QStringLiteral("a/b@c.d") << QStringList{QString()};
    QTest::newRow("control character") << QStringLiteral("a\x01@c.d") << QStringList{QString()};
    QTest::newRow("too long") << QStringLiteral("a@") + QString(3070, QLatin1Char('x'))
                              << QStringList{QString()};
    QTest::newRow("empty") << QString() << QStringList{};
    QTest::newRow("list") << QStringLiteral("+372 555 0001, a@b.c,, abc ,")
                          << QStringList{jid, QStringLiteral("a@b.c"), QString()};
}

// The message's recipient list, each entry to its address (empty when it cannot be sent to).
void XmppCodecTest::recipients()
{
    QFETCH(QString, to);
    QFETCH(QStringList, jids);
    QStringList got;
    for (const QString& recipient : CXmppAddress::splitRecipients(to)) {
        got << CXmppAddress::jidForRecipient(recipient, s_strDomain);
    }
    QCOMPARE(got, jids);
}

void XmppCodecTest::senders_data()
{
    QTest::addColumn<QString>("jid");
    QTest::addColumn<QString>("sender");

    QTest::newRow("number on our domain")
        << QStringLiteral("3725550001@tarvik.localhost/phone") << QStringLiteral("+3725550001");
    QTest::newRow("our domain in capitals")
        << QStringLiteral("3725550001@Tarvik.LOCALHOST") << QStringLiteral("+3725550001");
    QTest::newRow("number on another domain")
        << QStringLiteral("3725550001@example.org") << QStringLiteral("3725550001@example.org");
    QTest::newRow("name on our domain")
        << QStringLiteral("bob7@tarvik.localhost") << QStringLiteral("bob7@tarvik.localhost");
    QTest::newRow("other domain lower-cased, local part kept")
        << QStringLiteral("Bob@Example.ORG/Home") << QStringLiteral("Bob@example.org");
    QTest::newRow("our domain as a suffix") << QStringLiteral("123@evil.tarvik.localhost")
                                            << QStringLiteral("123@evil.tarvik.localhost");
}

void XmppCodecTest::senders()
{
    QFETCH(QString, jid);
    QFETCH(QString, sender);
    QCOMPARE(CXmppAddress::senderForJid(jid, s_strDomain), sender);
}

void XmppCodecTest::foreignStanzas_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("reason");  // part of the reason; empty: it is a message
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("note");
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<QDateTime>("time");
    QTest::addColumn<QString>("nick");

    const QString none;
    const QString geoloc = QStringLiteral(
        "<geoloc xmlns='http://jabber.org/protocol/geoloc'><lat>%1</lat><lon>%2</lon>%3</geoloc>");
    const QString element = QStringLiteral("<tarvik xmlns='urn:x-tarvik:message:1'>%1</tarvik>");
    const QDateTime stamp(QDate(2026, 2, 3), QTime(4, 5, 6, 789), Qt::UTC);

    QTest::newRow("bare geo: body") << foreign(QStringLiteral("<body>geo:59.437,24.7536</body>"))
                                    << none << none << none << 59.437 << 24.7536 << s_dtNow << none;
    QTest::newRow("uri with altitude and uncertainty")
        << foreign(QStringLiteral("<body>\nMeet me\ngeo:-1.5,2.25,35;u=12.5 by the door\n"
                                  "bring coffee\n</body>"))
        << none << QStringLiteral("Meet me") << QStringLiteral("by the door\nbring coffee") << -1.5
        << 2.25 << s_dtNow << none;
    QTest::newRow("geoloc only")
        << foreign(geoloc.arg(QStringLiteral("10.25"), QStringLiteral("-20.5"),
                              QStringLiteral("<timestamp>2026-03-01T10:00:00+02:00</timestamp>")),
                   QString())
        << none << none << none << 10.25 << -20.5
        << QDateTime(QDate(2026, 3, 1), QTime(8, 0), Qt::UTC) << none;
    QTest::newRow("element wins over geoloc and body")
        << foreign(QStringLiteral("<body>Body title\ngeo:1,2</body>") +
                   geoloc.arg(QStringLiteral("5"), QStringLiteral("6"), none) +
                   element.arg(QStringLiteral("<title>T</title><note>N</note><lat>3</lat>"
                                              "<lon>4</lon><time>2026-04-01T00:00:00Z</time>")) +
                   QStringLiteral("<delay xmlns='urn:xmpp:delay' stamp='2026-02-03T04:05:06Z'/>"))
        << none << QStringLiteral("T") << QStringLiteral("N") << 3.0 << 4.0
        << QDateTime(QDate(2026, 4, 1), QTime(0, 0), Qt::UTC) << none;
    QTest::newRow("delay before geoloc time, nick")
        << foreign(
               QStringLiteral("<body>geo:1,2</body><nick "
                              "xmlns='http://jabber.org/protocol/nick'>Bob &lt;3</nick>"
                              "<delay xmlns='urn:xmpp:delay' stamp='2026-02-03T04:05:06.789Z'/>") +
                   geoloc.arg(QStringLiteral("1"), QStringLiteral("2"),
                              QStringLiteral("<timestamp>2026-03-01T10:00:00Z</timestamp>")),
               QStringLiteral("type='normal'"))
        << none << none << none << 1.0 << 2.0 << stamp << QStringLiteral("Bob <3");
    QTest::newRow("markup in body kept as text")
        << foreign(QStringLiteral("<body>&lt;b&gt;x&lt;/b&gt; &amp;amp;\ngeo:1,2</body>")) << none
        << QStringLiteral("<b>x</b> &amp;") << none << 1.0 << 2.0 << s_dtNow << none;
    QTest::newRow("error type") << foreign(QStringLiteral("<body>geo:1,2</body>"),
                                           QStringLiteral("type='error'"))
                                << QStringLiteral("error") << none << none << 0.0 << 0.0
                                << QDateTime() << none;
    QTest::newRow("groupchat type")
        << foreign(QStringLiteral("<body>geo:1,2</body>"), QStringLiteral("type='groupchat'"))
        << QStringLiteral("groupchat") << none << none << 0.0 << 0.0 << QDateTime() << none;
    QTest::newRow("no position") << foreign(QStringLiteral("<body>geo: hello, at 1,2</body>"))
                                 << QStringLiteral("position") << none << none << 0.0 << 0.0
                                 << QDateTime() << none;
    QTest::newRow("position only in a forwarded copy")
        << foreign(QStringLiteral("<forwarded xmlns='urn:xmpp:forward:0'><message "
                                  "xmlns='jabber:client'><body>geo:1,2</body></message>"
                                  "</forwarded>"))
        << QStringLiteral("position") << none << none << 0.0 << 0.0 << QDateTime() << none;
    QTest::newRow("latitude 91") << foreign(
                                        element.arg(QStringLiteral("<lat>91</lat><lon>0</lon>")) +
                                        QStringLiteral("<body>geo:1,2</body>"))
                                 << QStringLiteral("position") << none << none << 0.0 << 0.0
                                 << QDateTime() << none;
    QTest::newRow("geoloc NaN") << foreign(
                                       geoloc.arg(QStringLiteral("NaN"), QStringLiteral("0"), none))
                                << QStringLiteral("position") << none << none << 0.0 << 0.0
                                << QDateTime() << none;
    QTest::newRow("no sender")
        << QStringLiteral("<message xmlns='jabber:client'><body>geo:1,2</body></message>")
        << QStringLiteral("sender") << none << none << 0.0 << 0.0 << QDateTime() << none;
    QTest::newRow("not a message")
        << QStringLiteral("<iq xmlns='jabber:client' from='a@b'><body>geo:1,2</body></iq>")
        << QStringLiteral("message") << none << none << 0.0 << 0.0 << QDateTime() << none;
    QTest::newRow("malformed") << foreign(QStringLiteral("<body>geo:1,2</message>"))
                               << QStringLiteral("malformed") << none << none << 0.0 << 0.0
                               << QDateTime() << none;
    QTest::newRow("entity declarations")
        << QStringLiteral("<!DOCTYPE message [<!ENTITY a 'aaaaaaaa'>]>") +
               foreign(QStringLiteral("<body>&a;&a; geo:1,2</body>"))
        << QStringLiteral("document type") << none << none << 0.0 << 0.0 << QDateTime() << none;
    QTest::newRow("oversize")
        << foreign(QStringLiteral("<body>geo:1,2 %1</body>").arg(QString(70000, QLatin1Char('x'))))
        << QStringLiteral("large") << none << none << 0.0 << 0.0 << QDateTime() << none;
    QTest::newRow("oversize in UTF-8 bytes")
        << foreign(QStringLiteral("<body>geo:1,2 %1</body>").arg(QString(40000, QChar(0xE4))))
        << QStringLiteral("large") << none << none << 0.0 << 0.0 << QDateTime() << none;
}

// Stanzas from other clients, and what must be refused.
void XmppCodecTest::foreignStanzas()
{
    QFETCH(QString, xml);
    QFETCH(QString, reason);

    const CStanzaCodec::CIncoming in = decode(xml);
    if (!reason.isEmpty()) {
        QVERIFY2(!in.m_bTarvik, qPrintable(xml.left(200)));
        QVERIFY2(in.m_strReason.contains(reason), qPrintable(in.m_strReason));
        return;
    }
    QFETCH(QString, title);
    QFETCH(QString, note);
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QFETCH(QDateTime, time);
    QFETCH(QString, nick);
    QVERIFY2(in.m_bTarvik, qPrintable(in.m_strReason));
    const CTarvik& got = in.m_tarvik;
    QCOMPARE(got.from(), QStringLiteral("bob@example.org"));
    QCOMPARE(got.to(), s_strOwn);
    QCOMPARE(in.m_strId, QStringLiteral("f1"));
    QCOMPARE(got.title(), title);
    QCOMPARE(got.note(), note);
    QCOMPARE(got.latitude(), latitude);
    QCOMPARE(got.longitude(), longitude);
    QCOMPARE(got.dateTime(), time);
    QCOMPARE(got.screenname(), nick);
    QCOMPARE(got.carrier(), QStringLiteral("n/a"));
    QCOMPARE(got.flag(), 1);
}

void XmppCodecTest::messageIds_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<bool>("same");

    QTest::newRow("outbox rewrite: row id and flag") << QStringLiteral("row") << true;
    QTest::newRow("IMEI") << QStringLiteral("reg") << true;
    QTest::newRow("note") << QStringLiteral("note") << false;
    QTest::newRow("time") << QStringLiteral("time") << false;
    QTest::newRow("longitude") << QStringLiteral("lon") << false;
    QTest::newRow("recipients") << QStringLiteral("to") << false;
}

// The id must survive the client rewriting the outbox row, and an incoming stanza without
// an id gets the same content id each time it is read (duplicates are recognised).
void XmppCodecTest::messageIds()
{
    QFETCH(QString, change);
    QFETCH(bool, same);

    const CTarvik original = makeFullTarvik();
    CTarvik copy = original;
    if (change == QLatin1String("row")) {
        copy.setId(original.id() + 40);
        copy.setFlag(original.flag() + 1);
    } else if (change == QLatin1String("reg")) {
        copy.setReg(QStringLiteral("490154203237518"));
    } else if (change == QLatin1String("note")) {
        copy.setNote(original.note() + QLatin1Char('!'));
    } else if (change == QLatin1String("time")) {
        copy.setDateTime(original.dateTime().addSecs(1));
    } else if (change == QLatin1String("lon")) {
        copy.setLongitude(original.longitude() + 1e-9);
    } else if (change == QLatin1String("to")) {
        copy.setTo(QStringLiteral("+3725550009"));
    }
    const QString id = CStanzaCodec::messageId(original);
    QVERIFY(QRegularExpression(QStringLiteral("^[0-9a-f]{32}$")).match(id).hasMatch());
    QCOMPARE(CStanzaCodec::messageId(copy) == id, same);

    copy.setGuid(QStringLiteral("guid-1"));
    QCOMPARE(CStanzaCodec::messageId(copy), QStringLiteral("guid-1"));

    // The same stanza without an id read twice.
    QString stanza = CStanzaCodec::toStanza(original, QStringLiteral("a@b.c"), QStringLiteral("X"));
    stanza.replace(QLatin1String(" id=\"X\""), QLatin1String(" from=\"bob@b.c\""));
    const CStanzaCodec::CIncoming first = decode(stanza);
    QVERIFY2(first.m_bTarvik, qPrintable(first.m_strReason));
    QCOMPARE(first.m_strId.size(), 32);
    QCOMPARE(decode(stanza).m_strId, first.m_strId);
}

QTEST_GUILESS_MAIN(XmppCodecTest)
#include "tst_xmppcodec.moc"
