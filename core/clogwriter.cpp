// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "clogwriter.h"

#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QMutex>
#include <QMutexLocker>

namespace Dravo {

namespace {
// One writer at a time keeps lines whole (the storage worker logs too); the path is the one
// of the last install().
QMutex s_mutex;
QByteArray s_path;
}  // namespace

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
    {
        QMutexLocker locker(&s_mutex);
        s_path = QFile::encodeName(logFilePath());
    }
    qInstallMessageHandler(&CLogWriter::messageHandler);
    return true;
}

void CLogWriter::messageHandler(QtMsgType, const QMessageLogContext& context,
                                const QString& message)
{
    Q_UNUSED(context);
    // The file is opened for each line, with plain system calls: the client logs on its
    // start-up path.
    QByteArray baLine = message.toUtf8();
    baLine.append('\n');
    QMutexLocker locker(&s_mutex);
    if (s_path.isEmpty())
        s_path = QFile::encodeName(logFilePath());
    const int fd = ::open(s_path.constData(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0)
        return;
    for (qsizetype written = 0; written < baLine.size();) {
        const ssize_t n =
            ::write(fd, baLine.constData() + written, size_t(baLine.size() - written));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        written += n;
    }
    ::close(fd);
}

}  // namespace Dravo
