// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Start-up probe for benchmarks and scripted demos, off unless asked for.
// TARVIK_REPORT_SHOWN=1: print "tarvik: main window shown at <epoch seconds.micro>" on
// stdout once the first top-level window has been exposed and painted.
// TARVIK_EXIT_WHEN_SHOWN=1: the same, then quit normally.
// It hooks itself in when the application object is made, so main() stays untouched;
// the start-up benchmark links the same file into its bare reference program.
#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWindow>
#include <cstdio>
#include <ctime>

namespace {

class CShownProbe : public QObject
{
public:
    CShownProbe(bool bExit, QObject* parent) : QObject(parent), m_bExit(bExit), m_bDone(false) {}

    bool eventFilter(QObject* pObject, QEvent* pEvent) override
    {
        if (!m_bDone && pEvent->type() == QEvent::Expose) {
            auto* pWindow = qobject_cast<QWindow*>(pObject);
            if (pWindow && pWindow->type() == Qt::Window && pWindow->isExposed()) {
                m_bDone = true;
                // Queued: the window paints while the expose event is handled.
                QTimer::singleShot(0, this, &CShownProbe::report);
            }
        }
        return false;
    }

private:
    void report()
    {
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        std::printf("tarvik: main window shown at %lld.%06ld\n", static_cast<long long>(now.tv_sec),
                    now.tv_nsec / 1000);
        std::fflush(stdout);
        if (m_bExit) {
            QCoreApplication::quit();
        }
    }

    bool m_bExit;
    bool m_bDone;
};

void installShownProbe()
{
    const bool bExit = qEnvironmentVariableIntValue("TARVIK_EXIT_WHEN_SHOWN") == 1;
    if (!bExit && qEnvironmentVariableIntValue("TARVIK_REPORT_SHOWN") != 1) {
        return;
    }
    QCoreApplication* pApp = QCoreApplication::instance();
    pApp->installEventFilter(new CShownProbe(bExit, pApp));
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(installShownProbe)
