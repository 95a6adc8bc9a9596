// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cdaemonlog.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>
#include <cstdio>

namespace Dravo {

namespace {

bool g_bVerbose = false;

void daemonMessageHandler(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtDebugMsg && !g_bVerbose) {
        return;
    }
    const QByteArray line = message.toLocal8Bit() + '\n';
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stderr);
    std::fflush(stderr);
}

}  // namespace

void installDaemonLog(bool verbose)
{
    g_bVerbose = verbose;
    qInstallMessageHandler(daemonMessageHandler);
}

}  // namespace Dravo
