// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "clogcapture.h"

#include <QMutex>
#include <QMutexLocker>

namespace Dravo {
namespace Test {

namespace {
QMutex g_mutex;
QStringList g_lines;
QtMessageHandler g_forwardTo = nullptr;

void captureHandler(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    {
        QMutexLocker locker(&g_mutex);
        g_lines.append(message);
    }
    if (g_forwardTo) {
        g_forwardTo(type, context, message);
    }
}
}  // namespace

CLogCapture::CLogCapture(bool forward)
{
    clear();
    m_pPrevious = qInstallMessageHandler(captureHandler);
    g_forwardTo = forward ? m_pPrevious : nullptr;
}

CLogCapture::~CLogCapture()
{
    qInstallMessageHandler(m_pPrevious);
    g_forwardTo = nullptr;
}

QStringList CLogCapture::lines() const
{
    QMutexLocker locker(&g_mutex);
    return g_lines;
}

bool CLogCapture::contains(const QString& line) const
{
    return lines().contains(line);
}

bool CLogCapture::containsPrefix(const QString& prefix) const
{
    const QStringList all = lines();
    for (const QString& line : all) {
        if (line.startsWith(prefix)) {
            return true;
        }
    }
    return false;
}

int CLogCapture::count(const QString& line) const
{
    return lines().count(line);
}

void CLogCapture::clear()
{
    QMutexLocker locker(&g_mutex);
    g_lines.clear();
}

}  // namespace Test
}  // namespace Dravo
