// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace Dravo {
namespace Test {

// A helper program (a fake service, the daemon simulator, a bus) run for the length of a
// test. It is considered up once it prints a line containing `readyMarker` on stdout.
class CHelperProcess
{
public:
    CHelperProcess() = default;
    ~CHelperProcess();
    CHelperProcess(const CHelperProcess&) = delete;
    CHelperProcess& operator=(const CHelperProcess&) = delete;

    bool start(const QString& program, const QStringList& args,
               const QString& readyMarker = QStringLiteral("ready"), int timeoutMs = 10000,
               const QProcessEnvironment& env = QProcessEnvironment::systemEnvironment());
    void stop();
    QByteArray output() const { return m_baOutput; }
    QProcess& process() { return m_process; }

private:
    QProcess m_process;
    QByteArray m_baOutput;
};

// A private dbus-daemon for tests: either a session bus or a bus that plays the
// system bus (its own config file with <type>system</type> and an allow-all policy).
// start() spawns the daemon and reads its address; the destructor kills it.
class CPrivateBus
{
public:
    enum eType
    {
        eSession,
        eSystem
    };

    explicit CPrivateBus(eType type);
    ~CPrivateBus();
    CPrivateBus(const CPrivateBus&) = delete;
    CPrivateBus& operator=(const CPrivateBus&) = delete;

    bool start(int timeoutMs = 5000);
    void stop() { m_daemon.stop(); }
    QString address() const { return m_strAddress; }
    // Where a session bus looks for the service files of names it may start.
    QString serviceDir() const { return m_tmpDir.filePath(QStringLiteral("services")); }
    QString errorString() const { return m_strError; }

    // Exports the address as DBUS_SESSION_BUS_ADDRESS or DBUS_SYSTEM_BUS_ADDRESS.
    // Qt caches the bus connections, so this must run before the first
    // QDBusConnection::sessionBus()/systemBus() call of the process.
    void exportAddress() const;

private:
    eType m_eType;
    QTemporaryDir m_tmpDir;
    CHelperProcess m_daemon;
    QString m_strAddress;
    QString m_strError;
};

// Both private buses, started and exported together; the usual fixture of a
// test suite that talks D-Bus.
class CPrivateBuses
{
public:
    CPrivateBuses();
    bool start();
    CPrivateBus& session() { return m_session; }
    CPrivateBus& system() { return m_system; }
    QString errorString() const;

private:
    CPrivateBus m_session;
    CPrivateBus m_system;
};

// A small tmpfs mounted at `path` while it lives (needs root), to make a read-only or a
// full disk. mounted() says whether the mount worked.
class CScopedMount
{
public:
    CScopedMount(const QString& path, const QString& size);
    ~CScopedMount();
    CScopedMount(const CScopedMount&) = delete;
    CScopedMount& operator=(const CScopedMount&) = delete;
    bool mounted() const { return m_bMounted; }
    bool remountReadOnly() const;

private:
    QString m_strPath;
    bool m_bMounted;
};

// Path of a program built by this project (fake services, simulator, client).
QString binaryPath(const QString& name);

}  // namespace Test
}  // namespace Dravo
