// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>

class QCommandLineParser;

namespace Dravo {

// What the daemon simulator does, as chosen on its command line.
class CSimOptions
{
public:
    enum eRegisterMode
    {
        eRegisterSucceed,  // regflag 1, OnRegistrationSucceed
        eRegisterFail,     // regflag 0, OnRegistrationFailed
        eRegisterSilent    // no answer at all
    };

    enum eSendMode
    {
        eSendAll,      // every queued message goes to the sent folder, OnMessagesSent
        eSendPartial,  // every second one fails, OnMessagesPartiallySent
        eSendFail,     // all fail (tflag 0), OnMessagesSendFailed
        eSendSilent    // the request is ignored, nothing is answered
    };

    CSimOptions();

    // Declares every option (with its help text) on the parser.
    static void addOptions(QCommandLineParser& parser);
    // Reads the options of an already parsed command line; false with a reason on
    // a value that makes no sense.
    bool read(const QCommandLineParser& parser, QString* pError);
    // Convenience for tests: parse `arguments` (program name first) and read them.
    bool parse(const QStringList& arguments, QString* pError);

    static QString registerModeName(eRegisterMode mode);
    static QString sendModeName(eSendMode mode);

    eRegisterMode m_eRegisterMode;
    eSendMode m_eSendMode;
    int m_iDelayMs;              // before each answer to the client
    int m_iIncoming;             // scripted messages delivered per send/receive
    int m_iPollSeconds;          // periodic delivery, 0 = off
    int m_iOpenInboxAfterMs;     // OpenInbox this long after the client started, -1 = off
    bool m_bOpenInboxOnReceive;  // OpenInbox after every delivery
    QString m_strIncomingFile;   // scripted messages from a JSON file
    uint m_uSeed;                // first scripted message
    bool m_bSeedDemo;            // demo folders for a fresh database
    bool m_bRegisterAtStart;     // registered account before the client starts
    QString m_strNumber;         // own number for --register-at-start
    QString m_strScreenname;     // screen name for --register-at-start
    bool m_bVerbose;             // storage debug lines on stderr too
};

}  // namespace Dravo
