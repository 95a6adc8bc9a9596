// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "csimoptions.h"

#include <QCommandLineParser>

namespace Dravo {

namespace {

const QString kRegister = QStringLiteral("register");
const QString kSend = QStringLiteral("send");
const QString kDelay = QStringLiteral("delay");
const QString kIncoming = QStringLiteral("incoming");
const QString kIncomingFile = QStringLiteral("incoming-file");
const QString kPoll = QStringLiteral("poll");
const QString kOpenInboxAfter = QStringLiteral("open-inbox-after");
const QString kOpenInboxOnReceive = QStringLiteral("open-inbox-on-receive");
const QString kSeed = QStringLiteral("seed");
const QString kSeedDemo = QStringLiteral("seed-demo");
const QString kRegisterAtStart = QStringLiteral("register-at-start");
const QString kNumber = QStringLiteral("number");
const QString kScreenname = QStringLiteral("screen-name");
const QString kVerbose = QStringLiteral("verbose");

const QStringList kRegisterModes = {QStringLiteral("succeed"), QStringLiteral("fail"),
                                    QStringLiteral("silent")};
const QStringList kSendModes = {QStringLiteral("all"), QStringLiteral("partial"),
                                QStringLiteral("fail"), QStringLiteral("silent")};

bool readInt(const QCommandLineParser& parser, const QString& name, int minimum, int& value,
             QString* pError)
{
    if (!parser.isSet(name)) {
        return true;
    }
    bool ok = false;
    const int parsed = parser.value(name).toInt(&ok);
    if (!ok || parsed < minimum) {
        if (pError) {
            *pError = QStringLiteral("--%1 wants a whole number of at least %2, not \"%3\"")
                          .arg(name)
                          .arg(minimum)
                          .arg(parser.value(name));
        }
        return false;
    }
    value = parsed;
    return true;
}

}  // namespace

CSimOptions::CSimOptions()
    : m_eRegisterMode(eRegisterSucceed),
      m_eSendMode(eSendAll),
      m_iDelayMs(800),
      m_iIncoming(1),
      m_iPollSeconds(0),
      m_iOpenInboxAfterMs(-1),
      m_bOpenInboxOnReceive(false),
      m_uSeed(0),
      m_bSeedDemo(false),
      m_bRegisterAtStart(false),
      m_strNumber(QStringLiteral("+447700900100")),
      m_strScreenname(QStringLiteral("Demo")),
      m_bVerbose(false)
{
}

void CSimOptions::addOptions(QCommandLineParser& parser)
{
    parser.addOption({kRegister,
                      QStringLiteral("Answer RegistrationRequest: succeed (regflag 1, "
                                     "OnRegistrationSucceed), fail (regflag 0, "
                                     "OnRegistrationFailed) or silent. Default: succeed."),
                      QStringLiteral("mode"), QStringLiteral("succeed")});
    parser.addOption({kSend,
                      QStringLiteral("Answer SendReceiveRequest for the outbox messages with "
                                     "tflag 1: all (moved to sent, OnMessagesSent), partial "
                                     "(every second one stays in the outbox with tflag 0, "
                                     "OnMessagesPartiallySent), fail (all stay with tflag 0, "
                                     "OnMessagesSendFailed) or silent (nothing changes, no "
                                     "answer). Default: all."),
                      QStringLiteral("mode"), QStringLiteral("all")});
    parser.addOption({kDelay,
                      QStringLiteral("Wait <ms> before working on a request and answering it. "
                                     "Default: 800."),
                      QStringLiteral("ms"), QStringLiteral("800")});
    parser.addOption({kIncoming,
                      QStringLiteral("Deliver <n> scripted incoming messages to the inbox on "
                                     "every SendReceiveRequest (besides messages sent to the own "
                                     "number). Default: 1."),
                      QStringLiteral("n"), QStringLiteral("1")});
    parser.addOption({kIncomingFile,
                      QStringLiteral("Take the scripted incoming messages from a JSON file: an "
                                     "array of objects with from, screenname, title, note, "
                                     "latitude, longitude and optionally address and tz. "
                                     "Default: a built-in set."),
                      QStringLiteral("file")});
    parser.addOption({kPoll,
                      QStringLiteral("Every <s> seconds deliver the --incoming messages and call "
                                     "OnMessagesReceived, as a polling daemon would. "
                                     "Default: 0 (off)."),
                      QStringLiteral("s"), QStringLiteral("0")});
    parser.addOption({kOpenInboxAfter,
                      QStringLiteral("Call OpenInbox <ms> after the client reported its start "
                                     "(ApplicationStarted or OnClientStarted)."),
                      QStringLiteral("ms")});
    parser.addOption(
        {kOpenInboxOnReceive, QStringLiteral("Call OpenInbox after every OnMessagesReceived.")});
    parser.addOption({kSeed,
                      QStringLiteral("Start the scripted messages at entry <n> (they are used "
                                     "in turn). Default: 0."),
                      QStringLiteral("n"), QStringLiteral("0")});
    parser.addOption(
        {kSeedDemo, QStringLiteral("At start, create the database if it is missing and fill "
                                   "empty inbox, sent and outbox folders with demo messages.")});
    parser.addOption({kRegisterAtStart,
                      QStringLiteral("At start, create the database if it is missing and mark "
                                     "the account registered (regflag 1, --number, "
                                     "--screen-name), so the client opens on the main menu.")});
    parser.addOption({kNumber,
                      QStringLiteral("Own phone number written by --register-at-start. "
                                     "Default: +447700900100."),
                      QStringLiteral("number"), QStringLiteral("+447700900100")});
    parser.addOption({kScreenname,
                      QStringLiteral("Screen name written by --register-at-start. "
                                     "Default: Demo."),
                      QStringLiteral("name"), QStringLiteral("Demo")});
    parser.addOption({kVerbose, QStringLiteral("Also print the storage's debug lines.")});
}

bool CSimOptions::read(const QCommandLineParser& parser, QString* pError)
{
    const int reg = kRegisterModes.indexOf(parser.value(kRegister));
    if (reg < 0) {
        if (pError) {
            *pError = QStringLiteral("--register wants one of %1, not \"%2\"")
                          .arg(kRegisterModes.join(QStringLiteral(", ")), parser.value(kRegister));
        }
        return false;
    }
    m_eRegisterMode = static_cast<eRegisterMode>(reg);
    const int send = kSendModes.indexOf(parser.value(kSend));
    if (send < 0) {
        if (pError) {
            *pError = QStringLiteral("--send wants one of %1, not \"%2\"")
                          .arg(kSendModes.join(QStringLiteral(", ")), parser.value(kSend));
        }
        return false;
    }
    m_eSendMode = static_cast<eSendMode>(send);
    int seed = 0;
    if (!readInt(parser, kDelay, 0, m_iDelayMs, pError) ||
        !readInt(parser, kIncoming, 0, m_iIncoming, pError) ||
        !readInt(parser, kPoll, 0, m_iPollSeconds, pError) ||
        !readInt(parser, kOpenInboxAfter, 0, m_iOpenInboxAfterMs, pError) ||
        !readInt(parser, kSeed, 0, seed, pError)) {
        return false;
    }
    m_uSeed = static_cast<uint>(seed);
    m_bOpenInboxOnReceive = parser.isSet(kOpenInboxOnReceive);
    m_strIncomingFile = parser.value(kIncomingFile);
    m_bSeedDemo = parser.isSet(kSeedDemo);
    m_bRegisterAtStart = parser.isSet(kRegisterAtStart);
    m_strNumber = parser.value(kNumber).trimmed();
    m_strScreenname = parser.value(kScreenname).trimmed();
    if (m_bRegisterAtStart && m_strNumber.isEmpty()) {
        if (pError) {
            *pError = QStringLiteral("--register-at-start needs a non-empty --number");
        }
        return false;
    }
    m_bVerbose = parser.isSet(kVerbose);
    return true;
}

bool CSimOptions::parse(const QStringList& arguments, QString* pError)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(arguments)) {
        if (pError) {
            *pError = parser.errorText();
        }
        return false;
    }
    return read(parser, pError);
}

QString CSimOptions::registerModeName(eRegisterMode mode)
{
    return kRegisterModes.value(mode);
}

QString CSimOptions::sendModeName(eSendMode mode)
{
    return kSendModes.value(mode);
}

}  // namespace Dravo
