// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "caddressbook.h"

#include "cplugindirectory.h"

#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTimer>
#include <QtDebug>

namespace Dravo {

namespace {
const char* const kHelperName = "tarvik-addressbook";
}  // namespace

CAddressBook::CAddressBook()
{
    qRegisterMetaType<Dravo::CContactEntryList>("Dravo::CContactEntryList");
}

CAddressBook::~CAddressBook()
{
    stopHelper();
}

QString CAddressBook::helperPath()
{
    return pluginFile(QLatin1String(kHelperName));
}

void CAddressBook::initialize()
{
    m_bInitPending = true;
    runHelper();
}

void CAddressBook::requestContacts()
{
    m_bRequestPending = true;
    m_bAnswered = m_bHaveContacts;
    if (m_bHaveContacts) {
        Q_EMIT contactsLoaded(m_lstContacts, QString());
    }
    runHelper();
}

void CAddressBook::runHelper()
{
    if (m_pHelper) {
        // The read under way may have missed changes made since it began: one more
        // follows it and answers.
        m_bRerun = true;
        return;
    }
    if (m_bQuitting) {
        return;
    }
    auto* process = new QProcess(this);
    m_pHelper = process;
    process->setProgram(helperPath());
    // The helper dies with the client, even when the client is killed.
    const pid_t parent = getpid();
    process->setChildProcessModifier([parent]() {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) {
            _exit(127);
        }
    });
    auto* timer = new QTimer(process);
    timer->setSingleShot(true);
    connect(timer, &QTimer::timeout, this, [this, process]() {
        qWarning().noquote() << QStringLiteral(
                                    "CAddressBook: %1 did not answer within %2 ms; killed")
                                    .arg(process->program())
                                    .arg(m_iTimeoutMs);
        onHelperDone(process, QStringLiteral("the address-book helper did not answer"));
    });
    // Its diagnostics (libebook's warnings among them) go to the client's log.
    connect(process, &QProcess::readyReadStandardError, this, [process]() {
        while (process->canReadLine()) {
            qWarning().noquote() << QStringLiteral("CAddressBook: %1: %2")
                                        .arg(QLatin1String(kHelperName),
                                             QString::fromUtf8(process->readLine().trimmed()));
        }
    });
    process->setReadChannel(QProcess::StandardError);
    connect(process, &QProcess::errorOccurred, this, [this, process](QProcess::ProcessError e) {
        if (e == QProcess::FailedToStart) {
            onHelperDone(process, QStringLiteral("cannot run %1: %2")
                                      .arg(process->program(), process->errorString()));
        }
    });
    connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            [this, process]() { onHelperDone(process, QString()); });
    timer->start(m_iTimeoutMs);
    process->start(QIODevice::ReadOnly);
}

void CAddressBook::onHelperDone(QProcess* process, const QString& failure)
{
    if (process != m_pHelper) {
        return;  // already handled
    }
    m_pHelper = nullptr;
    process->disconnect(this);
    QString error = failure;
    CContactEntryList contacts;
    if (error.isEmpty()) {
        int rejected = 0;
        const QList<QByteArray> lines = process->readAllStandardOutput().split('\n');
        for (const QByteArray& line : lines) {
            CContactEntry entry;
            if (line.isEmpty()) {
                continue;
            } else if (CContactEntry::fromWireLine(line, &entry, &error)) {
                contacts.append(entry);
            } else if (error.isEmpty()) {
                ++rejected;
            }
        }
        if (rejected > 0) {
            qWarning("CAddressBook: %d unreadable lines from the address-book helper", rejected);
        }
        if (process->exitStatus() != QProcess::NormalExit) {
            error = QStringLiteral("the address-book helper crashed");
        } else if (process->exitCode() != 0 && error.isEmpty()) {
            error = QStringLiteral("the address-book helper failed (exit code %1)")
                        .arg(process->exitCode());
        }
    }
    if (process->state() != QProcess::NotRunning) {
        process->kill();
        process->waitForFinished(1000);
    }
    process->deleteLater();

    const bool ok = error.isEmpty();
    const bool changed = !m_bHaveContacts || contacts != m_lstContacts;
    m_lstContacts = ok ? contacts : CContactEntryList();
    m_bHaveContacts = ok;
    if (ok) {
        qDebug("CAddressBook: %d contacts read", int(contacts.size()));
    } else {
        qWarning().noquote() << "CAddressBook: " + error;
    }
    if (m_bInitPending) {
        m_bInitPending = false;
        if (!ok) {
            qCritical() << "main: osso abook initialization failed!";
        }
        Q_EMIT initialized(ok, error);
    }
    if (m_bRerun) {
        m_bRerun = false;
        m_bAnswered = m_bAnswered && !changed;  // what was answered is out of date
        runHelper();
    } else if (m_bRequestPending) {
        m_bRequestPending = false;
        if (!ok || !m_bAnswered || changed) {
            Q_EMIT contactsLoaded(m_lstContacts, error);
        }
    }
}

void CAddressBook::onAppQuit()
{
    m_bQuitting = true;
    stopHelper();
}

void CAddressBook::stopHelper()
{
    if (QProcess* process = m_pHelper) {
        m_pHelper = nullptr;
        process->disconnect(this);
        process->kill();
        if (!process->waitForFinished(1000)) {
            qWarning("CAddressBook: the address-book helper did not end at exit");
        }
        delete process;
    }
}

}  // namespace Dravo
