// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

class QSocketNotifier;

namespace Dravo {

// Ends the event loop normally on SIGTERM, SIGINT and SIGHUP (session end, Ctrl+C), so
// that quitting runs the same path as closing the window and the daemon is told.
// The signal handler only writes one byte to a socket pair; the quit happens in the
// event loop.
class CQuitOnSignal : public QObject
{
    Q_OBJECT
public:
    explicit CQuitOnSignal(QObject* parent = nullptr);
    ~CQuitOnSignal() override;

private Q_SLOTS:
    void onSignalReceived();

private:
    static void handler(int iSignal);
    static int s_fds[2];
    QSocketNotifier* m_pNotifier;
};

}  // namespace Dravo
