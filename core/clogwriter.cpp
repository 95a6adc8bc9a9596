// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "clogwriter.h"

#include <QDir>
#include <QFile>
#include <QMutex>
#include <QMutexLocker>

namespace Dravo {

QString CLogWriter::logDirectory()
{
    return QDir::homePath() + QStringLiteral("/.tarvik/");
}

QString CLogWriter::logFilePath()
{
    return logDirectory() + QStringLiteral("tarvik.log");
}

QString CLogWriter::consoleSwitch()
{
    return QStringLiteral("logtoconsole");
}

bool CLogWriter::fileLoggingWanted(const QStringList& arguments)
{
    for (int i = 1; i < arguments.size(); ++i) {
        if (arguments.at(i) == consoleSwitch())
            return false;
    }
    return true;
}

bool CLogWriter::fileLoggingWanted(int argc, char** argv)
{
    QStringList lstArgs;
    for (int i = 0; i < argc && argv && argv[i]; ++i)
        lstArgs << QString::fromLocal8Bit(argv[i]);
    return fileLoggingWanted(lstArgs);
}

bool CLogWriter::install()
{
    const QString strDir = logDirectory();
    if (!QDir().mkpath(strDir)) {
        qCritical("main::failed to create logs path");
        return false;
    }
    QFile::remove(logFilePath());
    qInstallMessageHandler(&CLogWriter::messageHandler);
    return true;
}

void CLogWriter::messageHandler(QtMsgType, const QMessageLogContext&, const QString& message)
{
    // The storage worker logs too; one writer at a time keeps lines whole.
    static QMutex s_mutex;
    QMutexLocker locker(&s_mutex);
    QFile file(logFilePath());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
        return;
    QByteArray baLine = message.toUtf8();
    baLine.append('\n');
    file.write(baLine);
    file.close();
}

}  // namespace Dravo
