// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Start-up probe for benchmarks and scripted demos, off unless asked for.
// TARVIK_REPORT_SHOWN=1: print "tarvik: main window shown at <epoch seconds.micro>" on
// stdout once the first top-level window has been exposed and painted.
// With TARVIK_REPORT_SHOWN the line is preceded by "tarvik: window shows: " and the
// accessible names of what the window shows (labels, list rows, buttons), " | " between.
// TARVIK_EXIT_WHEN_SHOWN=1: the time line only, then quit normally.
// It hooks itself in when the application object is made, so main() stays untouched;
// the start-up benchmark links the same file into its bare reference program.
#include <QAccessible>
#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <QTimer>
#include <QWindow>
#include <cstdio>
#include <ctime>

namespace {

void collectShown(QAccessibleInterface* pIface, QStringList& lstNames, int iDepth)
{
    if (!pIface || iDepth > 16 || lstNames.size() > 200 || pIface->state().invisible) {
        return;
    }
    const QString strName = pIface->text(QAccessible::Name).simplified();
    if (!strName.isEmpty()) {
        lstNames << strName;
    }
    for (int i = 0; i < pIface->childCount(); ++i) {
        collectShown(pIface->child(i), lstNames, iDepth + 1);
    }
}

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
                m_pWindow = pWindow;
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
        if (!m_bExit && m_pWindow) {
            QStringList lstNames;
            collectShown(m_pWindow->accessibleRoot(), lstNames, 0);
            std::printf("tarvik: window shows: %s\n",
                        lstNames.join(QStringLiteral(" | ")).toLocal8Bit().constData());
        }
        std::printf("tarvik: main window shown at %lld.%06ld\n", static_cast<long long>(now.tv_sec),
                    now.tv_nsec / 1000);
        std::fflush(stdout);
        if (m_bExit) {
            QCoreApplication::quit();
        }
    }

    bool m_bExit;
    bool m_bDone;
    QPointer<QWindow> m_pWindow;
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
