#include "clogcapture.h"

#include <QMutex>
#include <QMutexLocker>

namespace Dravo {
namespace Test {

namespace {
QMutex g_mutex;
QStringList g_lines;

void captureHandler(QtMsgType, const QMessageLogContext&, const QString& message)
{
    QMutexLocker locker(&g_mutex);
    g_lines.append(message);
}
}  // namespace

CLogCapture::CLogCapture()
{
    clear();
    m_pPrevious = qInstallMessageHandler(captureHandler);
}

CLogCapture::~CLogCapture()
{
    qInstallMessageHandler(m_pPrevious);
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

int CLogCapture::indexOf(const QString& line, int from) const
{
    return lines().indexOf(line, from);
}

void CLogCapture::clear()
{
    QMutexLocker locker(&g_mutex);
    g_lines.clear();
}

}  // namespace Test
}  // namespace Dravo
