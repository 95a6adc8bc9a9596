// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cprivatebus.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>

namespace Dravo {
namespace Test {

namespace {

// Either type of bus with an allow-all policy; a session bus starts the services it finds
// in the service directory.
const char* const kConfig =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>%1</type>
  <listen>unix:path=%2</listen>
  <auth>EXTERNAL</auth>
  <servicedir>%3</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

}  // namespace

CPrivateBus::CPrivateBus(eType type) : m_eType(type) {}

CPrivateBus::~CPrivateBus()
{
    stop();
}

bool CPrivateBus::start(int timeoutMs)
{
    if (m_daemon.process().state() == QProcess::Running) {
        return true;
    }
    if (!m_tmpDir.isValid()) {
        m_strError = QStringLiteral("no temporary directory");
        return false;
    }
    QDir().mkpath(serviceDir());
    const QString config = QString::fromLatin1(kConfig).arg(
        m_eType == eSystem ? QStringLiteral("system") : QStringLiteral("session"),
        m_tmpDir.filePath(QStringLiteral("bus")), serviceDir());
    const QString configPath = m_tmpDir.filePath(QStringLiteral("bus.conf"));
    QFile file(configPath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(config.toUtf8()) < 0) {
        m_strError = QStringLiteral("cannot write ") + configPath;
        return false;
    }
    file.close();
    // Up once it has printed its address, a line.
    if (!m_daemon.start(QStringLiteral("dbus-daemon"),
                        {QStringLiteral("--config-file=") + configPath, QStringLiteral("--nofork"),
                         QStringLiteral("--print-address=1")},
                        QStringLiteral("\n"), timeoutMs)) {
        m_strError = QStringLiteral("dbus-daemon printed no address: ") +
                     QString::fromUtf8(m_daemon.process().readAllStandardError());
        m_daemon.stop();
        return false;
    }
    m_strAddress = QString::fromUtf8(m_daemon.output().trimmed());
    return true;
}

void CPrivateBus::exportAddress() const
{
    qputenv(m_eType == eSystem ? "DBUS_SYSTEM_BUS_ADDRESS" : "DBUS_SESSION_BUS_ADDRESS",
            m_strAddress.toUtf8());
}

CPrivateBuses::CPrivateBuses() : m_session(CPrivateBus::eSession), m_system(CPrivateBus::eSystem) {}

bool CPrivateBuses::start()
{
    if (!m_session.start() || !m_system.start()) {
        return false;
    }
    m_session.exportAddress();
    m_system.exportAddress();
    return true;
}

QString CPrivateBuses::errorString() const
{
    return m_session.errorString() + QLatin1Char(' ') + m_system.errorString();
}

CHelperProcess::~CHelperProcess()
{
    stop();
}

bool CHelperProcess::start(const QString& program, const QStringList& args,
                           const QString& readyMarker, int timeoutMs,
                           const QProcessEnvironment& env)
{
    stop();
    m_baOutput.clear();
    m_process.setProcessEnvironment(env);
    m_process.setProcessChannelMode(QProcess::SeparateChannels);
    m_process.setReadChannel(QProcess::StandardOutput);
    m_process.start(program, args);
    if (!m_process.waitForStarted(timeoutMs)) {
        return false;
    }
    if (readyMarker.isEmpty()) {
        return true;
    }
    const QByteArray marker = readyMarker.toUtf8();
    QDeadlineTimer deadline(timeoutMs);
    while (!m_baOutput.contains(marker) && !deadline.hasExpired()) {
        if (m_process.waitForReadyRead(
                static_cast<int>(qMax<qint64>(1, deadline.remainingTime())))) {
            m_baOutput += m_process.readAllStandardOutput();
        } else if (m_process.state() != QProcess::Running) {
            break;
        }
    }
    return m_baOutput.contains(marker);
}

void CHelperProcess::stop()
{
    // Terminated, and killed when it does not end in time.
    if (m_process.state() != QProcess::NotRunning) {
        m_process.terminate();
        if (!m_process.waitForFinished(3000)) {
            m_process.kill();
            m_process.waitForFinished(3000);
        }
    }
}

namespace {
bool runCommand(const QString& program, const QStringList& args)
{
    QProcess process;
    process.start(program, args);
    return process.waitForFinished(10000) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}
}  // namespace

CScopedMount::CScopedMount(const QString& path, const QString& size)
    : m_strPath(path),
      m_bMounted(QDir().mkpath(path) &&
                 runCommand(QStringLiteral("mount"),
                            {QStringLiteral("-t"), QStringLiteral("tmpfs"), QStringLiteral("-o"),
                             "size=" + size, QStringLiteral("tmpfs"), path}))
{
}

CScopedMount::~CScopedMount()
{
    if (m_bMounted) {
        runCommand(QStringLiteral("umount"), {QStringLiteral("-l"), m_strPath});
    }
}

bool CScopedMount::remountReadOnly() const
{
    return runCommand(QStringLiteral("mount"),
                      {QStringLiteral("-o"), QStringLiteral("remount,ro"), m_strPath});
}

QString binaryPath(const QString& name)
{
#ifdef TARVIK_BIN_DIR
    const QString dir = QStringLiteral(TARVIK_BIN_DIR);
#else
    const QString dir = QCoreApplication::applicationDirPath();
#endif
    return QDir(dir).filePath(name);
}

}  // namespace Test
}  // namespace Dravo
