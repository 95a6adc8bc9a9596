// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cquitonsignal.h"

#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>

namespace Dravo {

int CQuitOnSignal::s_fds[2] = {-1, -1};

CQuitOnSignal::CQuitOnSignal(QObject* parent) : QObject(parent), m_pNotifier(nullptr)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, s_fds) != 0) {
        qWarning("CQuitOnSignal: no socket pair, signals end the process abruptly");
        return;
    }
    m_pNotifier = new QSocketNotifier(s_fds[1], QSocketNotifier::Read, this);
    connect(m_pNotifier, &QSocketNotifier::activated, this, &CQuitOnSignal::onSignalReceived);

    struct sigaction action = {};
    action.sa_handler = &CQuitOnSignal::handler;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int iSignal : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(iSignal, &action, nullptr);
}

CQuitOnSignal::~CQuitOnSignal()
{
    struct sigaction action = {};
    action.sa_handler = SIG_DFL;
    sigemptyset(&action.sa_mask);
    for (int iSignal : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(iSignal, &action, nullptr);
    delete m_pNotifier;
    for (int& fd : s_fds) {
        if (fd >= 0)
            ::close(fd);
        fd = -1;
    }
}

void CQuitOnSignal::handler(int)
{
    const char c = 1;
    [[maybe_unused]] const ssize_t n = ::write(s_fds[0], &c, 1);
}

void CQuitOnSignal::onSignalReceived()
{
    char c = 0;
    [[maybe_unused]] const ssize_t n = ::read(s_fds[1], &c, 1);
    qDebug("main: quit requested by signal");
    QCoreApplication::quit();
}

}  // namespace Dravo
