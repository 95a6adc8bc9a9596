// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace Dravo {

// The plain text log: every message goes, as it stands and followed by one "\n", to
// $HOME/.tarvik/tarvik.log. The file is reopened for each message so nothing is lost
// when the process dies, and it is emptied at every start.
class CLogWriter
{
public:
    CLogWriter() = delete;

    static QString logDirectory();   // "$HOME/.tarvik/"
    static QString logFilePath();    // logDirectory() + "tarvik.log"
    static QString consoleSwitch();  // "logtoconsole"

    // True unless an argument after the program name is exactly the console switch.
    static bool fileLoggingWanted(const QStringList& arguments);
    static bool fileLoggingWanted(int argc, char** argv);

    // Creates the log directory when missing, deletes the previous log and installs
    // the handler. When the directory cannot be made, reports "main::failed to create
    // logs path" on standard error and leaves the default handler in place.
    // Returns whether file logging is on.
    static bool install();

    // Appends one message to the log file; drops it silently when the file cannot be
    // opened. The message type is ignored.
    static void messageHandler(QtMsgType type, const QMessageLogContext& context,
                               const QString& message);
};

}  // namespace Dravo
