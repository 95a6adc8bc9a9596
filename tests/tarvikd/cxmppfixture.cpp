// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cxmppfixture.h"

#include "storagefixture.h"

#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusReply>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

namespace Dravo {
namespace Test {

namespace {

QString script(const QString& name)
{
    return QStringLiteral(TARVIK_SOURCE_DIR "/tools/xmpp/") + name;
}

}  // namespace

CLocalServer::CLocalServer() : m_uPort(0) {}

CLocalServer::~CLocalServer()
{
    stop();
}

bool CLocalServer::run(const QStringList& args, QByteArray* pOutput)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::SeparateChannels);
    process.start(script(QStringLiteral("localprosody.sh")), args);
    const bool finished = process.waitForFinished(60000);
    const QByteArray output = process.readAllStandardOutput();
    if (pOutput) {
        *pOutput = output;
    }
    if (!finished || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        m_strError = QStringLiteral("localprosody.sh %1 failed: %2")
                         .arg(args.join(QLatin1Char(' ')),
                              QString::fromLocal8Bit(process.readAllStandardError()));
        return false;
    }
    return true;
}

bool CLocalServer::start()
{
    QByteArray output;
    if (!run({QStringLiteral("start"), m_dir.path()}, &output)) {
        return false;
    }
    m_uPort = quint16(output.trimmed().split('\n').last().toUInt());
    return m_uPort != 0;
}

bool CLocalServer::stop()
{
    return m_uPort == 0 || run({QStringLiteral("stop"), m_dir.path()});
}

bool CLocalServer::kill()
{
    return run({QStringLiteral("kill"), m_dir.path()});
}

bool CLocalServer::restart()
{
    return run({QStringLiteral("restart"), m_dir.path()});
}

bool CLocalServer::pause(bool paused)
{
    QFile pidFile(m_dir.filePath(QStringLiteral("pid")));
    if (!pidFile.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QString pid = QString::fromLatin1(pidFile.readAll().trimmed());
    return QProcess::execute(QStringLiteral("kill"),
                             {paused ? QStringLiteral("-STOP") : QStringLiteral("-CONT"), pid}) ==
           0;
}

bool CLocalServer::addAccount(const QString& user, const QString& password)
{
    return run({QStringLiteral("register"), m_dir.path(), user, password});
}

bool runForeignClient(const CLocalServer& server, const QStringList& args, QByteArray* pOutput,
                      int timeoutMs)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::SeparateChannels);
    process.start(QStringLiteral("/usr/bin/python3"),
                  QStringList{script(QStringLiteral("xmppclient.py")), args.first(),
                              QStringLiteral("--dir"), server.directory()} +
                      args.mid(1));
    const bool finished = process.waitForFinished(timeoutMs);
    if (pOutput) {
        *pOutput = process.readAllStandardOutput();
    }
    if (!finished || process.exitCode() != 0) {
        qWarning().noquote() << "xmppclient.py: " +
                                    QString::fromLocal8Bit(process.readAllStandardError());
        process.kill();
        process.waitForFinished();
        return false;
    }
    return true;
}

CXmppUser::CXmppUser(const QString& number, const QString& screenname)
    : m_strNumber(number),
      m_strScreenname(screenname),
      m_bus(CPrivateBus::eSession),
      m_strConnection(QStringLiteral("user-") + number)
{
}

CXmppUser::~CXmppUser()
{
    stopDaemon();
    QDBusConnection::disconnectFromBus(m_strConnection);
}

template <typename F>
auto CXmppUser::inHome(F f) const
{
    // The storage finds its file from HOME at every call.
    const QByteArray previous = qgetenv("HOME");
    qputenv("HOME", m_home.path().toUtf8());
    auto result = f();
    qputenv("HOME", previous);
    return result;
}

bool CXmppUser::start(const CLocalServer& server, const QString& caFile, const QString& systemBus)
{
    return prepare(server, caFile, systemBus) && startDaemon();
}

bool CXmppUser::prepare(const CLocalServer& server, const QString& caFile, const QString& systemBus)
{
    if (!m_bus.start()) {
        qWarning().noquote() << m_bus.errorString();
        return false;
    }
    QDBusConnection bus = QDBusConnection::connectToBus(m_bus.address(), m_strConnection);
    if (!bus.registerObject(QStringLiteral("/com/qel/tarvik"), &m_recorder,
                            QDBusConnection::ExportScriptableSlots) ||
        !bus.registerService(QStringLiteral("com.qel.tarvik"))) {
        return false;
    }
    m_env = QProcessEnvironment::systemEnvironment();
    m_env.insert(QStringLiteral("HOME"), m_home.path());
    m_env.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home.filePath(QStringLiteral(".config")));
    m_env.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_bus.address());
    if (!systemBus.isEmpty()) {
        m_env.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), systemBus);
    }
    m_env.insert(QStringLiteral("TARVIK_XMPP_DOMAIN"), server.domain());
    m_env.insert(QStringLiteral("TARVIK_XMPP_SERVER"),
                 QStringLiteral("127.0.0.1:%1").arg(server.port()));
    m_env.insert(QStringLiteral("TARVIK_XMPP_CA_FILE"),
                 caFile.isEmpty() ? server.caFile() : caFile);
    return true;
}

namespace {

bool writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(content) == content.size();
}

}  // namespace

bool CXmppUser::offerDaemonByActivation()
{
    QFile installed(QStringLiteral(TARVIK_BINARY_DIR "/dist/com.qel.tarvikdaemon.service"));
    if (!installed.open(QIODevice::ReadOnly)) {
        return false;
    }
    QList<QByteArray> lines = installed.readAll().split('\n');
    for (QByteArray& line : lines) {
        if (line.startsWith("Exec=")) {
            line = "Exec=" + binaryPath(QStringLiteral("tarvikd")).toUtf8();
        }
    }
    const QByteArray content = lines.join('\n');
    // What a session manager does at login (dbus-update-activation-environment).
    QMap<QString, QString> environment;
    for (const QString& key : m_env.keys()) {
        if (key == QLatin1String("HOME") || key.startsWith(QLatin1String("XDG_")) ||
            key.startsWith(QLatin1String("TARVIK_"))) {
            environment.insert(key, m_env.value(key));
        }
    }
    qDBusRegisterMetaType<QMap<QString, QString>>();
    const QDBusMessage reply = connection().call(
        QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("UpdateActivationEnvironment"))
        << QVariant::fromValue(environment));
    return reply.type() == QDBusMessage::ReplyMessage &&
           writeFile(m_bus.serviceDir() + QStringLiteral("/com.qel.tarvikdaemon.service"), content);
}

bool CXmppUser::offerClientByActivation(const QString& callLog)
{
    return writeFile(m_bus.serviceDir() + QStringLiteral("/com.qel.tarvik.service"),
                     "[D-BUS Service]\nName=com.qel.tarvik\nExec=" +
                         binaryPath(QStringLiteral("tarvik-fakes")).toUtf8() + " --client " +
                         callLog.toUtf8() + "\n");
}

void CXmppUser::clientLeaves()
{
    emitSignal(QStringLiteral("ApplicationClosed"));
    connection().unregisterService(QStringLiteral("com.qel.tarvik"));
}

qint64 CXmppUser::daemonPid() const
{
    const QDBusReply<uint> pid =
        connection().interface()->servicePid(QStringLiteral("com.qel.tarvikdaemon"));
    return pid.isValid() ? qint64(pid.value()) : 0;
}

bool CXmppUser::startDaemon()
{
    if (!m_daemon.start(binaryPath(QStringLiteral("tarvikd")), {}, QStringLiteral("ready"), 10000,
                        m_env)) {
        return false;
    }
    // As the client does when it starts.
    callDaemon(QStringLiteral("OnClientStarted"));
    return true;
}

QStringList& CXmppUser::uncleanExits()
{
    static QStringList exits;
    return exits;
}

void CXmppUser::stopDaemon()
{
    QProcess& process = m_daemon.process();
    if (process.state() == QProcess::Running) {
        m_daemon.stop();
        m_strLog += QString::fromLocal8Bit(process.readAllStandardError());
        if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
            uncleanExits() << QStringLiteral("tarvikd of %1 ended with status %2:\n%3")
                                  .arg(m_strNumber)
                                  .arg(process.exitCode())
                                  .arg(m_strLog.right(4000));
        }
    }
    daemonLog();
}

QString CXmppUser::daemonLog()
{
    // A daemon the bus started writes elsewhere.
    if (m_daemon.process().isOpen()) {
        m_strLog += QString::fromLocal8Bit(m_daemon.process().readAllStandardError());
    }
    return m_strLog;
}

QString CXmppUser::registerAccount(int timeoutMs)
{
    const bool saved = inHome([this]() {
        CTarvikStorage storage(QStringLiteral("fixture_settings"));
        CTSettings values;
        values.setMynumber(m_strNumber);
        values.setScreenname(m_strScreenname);
        values.setRegflag(0);
        return storage.saveSettings(values, CTSettings::eMaskMynumber |
                                                CTSettings::eMaskScreenname |
                                                CTSettings::eMaskRegflag);
    });
    if (!saved) {
        return QString();
    }
    const int before = m_recorder.m_lstCalls.size();
    emitSignal(QStringLiteral("RegistrationRequest"));
    const bool answered = QTest::qWaitFor(
        [&]() {
            for (int i = before; i < m_recorder.m_lstCalls.size(); ++i) {
                if (m_recorder.m_lstCalls.at(i).startsWith(QLatin1String("OnRegistration"))) {
                    return true;
                }
            }
            return false;
        },
        timeoutMs);
    for (int i = before; answered && i < m_recorder.m_lstCalls.size(); ++i) {
        if (m_recorder.m_lstCalls.at(i).startsWith(QLatin1String("OnRegistration"))) {
            return m_recorder.m_lstCalls.at(i);
        }
    }
    return QString();
}

void CXmppUser::emitSignal(const QString& name)
{
    QDBusConnection(m_strConnection)
        .send(QDBusMessage::createSignal(QStringLiteral("/com/qel/tarvik"),
                                         QStringLiteral("com.qel.TarvikClient"), name));
}

QDBusMessage CXmppUser::callDaemon(const QString& method)
{
    return QDBusConnection(m_strConnection)
        .call(QDBusMessage::createMethodCall(QStringLiteral("com.qel.tarvikdaemon"),
                                             QStringLiteral("/com/qel/tarvikdaemon"),
                                             QStringLiteral("com.qel.TarvikDaemon"), method));
}

bool CXmppUser::waitForCall(const QString& method, int count, int timeoutMs)
{
    return QTest::qWaitFor([&]() { return m_recorder.m_lstCalls.count(method) >= count; },
                           timeoutMs);
}

QList<CTarvik> CXmppUser::folder(CTarvikStorage::eFolderName name) const
{
    return inHome([name]() {
        CTarvikStorage storage(QStringLiteral("fixture_reader"));
        QList<CTarvik> tarviks;
        storage.getTarviks(name, tarviks);
        return tarviks;
    });
}

CTSettings CXmppUser::settings() const
{
    return inHome([]() {
        CTarvikStorage storage(QStringLiteral("fixture_reader"));
        CTSettings values;
        storage.getSettings(values);
        return values;
    });
}

void CXmppUser::queue(const CTarvik& tarvik)
{
    inHome([&tarvik]() {
        CTarvikStorage storage(QStringLiteral("fixture_writer"));
        CTarvik queued = tarvik;
        queued.setId(-1);
        queued.setFlag(1);
        int tid = -1;
        return storage.saveTarvik(queued, CTarvikStorage::eFolderOutbox, tid);
    });
}

CTarvik CXmppUser::message(const QString& to, const QString& title) const
{
    CTarvik tarvik = makeFullTarvik();
    tarvik.setId(-1);
    tarvik.setFrom(m_strNumber);
    tarvik.setTo(to);
    tarvik.setTitle(title);
    tarvik.setScreenname(m_strScreenname);
    return tarvik;
}

QString CXmppUser::jid(const CLocalServer& server) const
{
    QString digits = m_strNumber;
    digits.remove(QRegularExpression(QStringLiteral("[^0-9]")));
    return digits + QLatin1Char('@') + server.domain();
}

}  // namespace Test
}  // namespace Dravo
