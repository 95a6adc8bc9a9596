// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Map benchmark: from the "Show on map" click to the map's tiles shown, against a loopback
// tile server, for the first map (plugin and web engine loaded on the way) and for later
// ones; and the resident memory of this process plus its web engine processes while a map
// is shown and after it is closed. Figures are printed; nothing is asserted.
//
// Run under Xvfb or QT_QPA_PLATFORM=offscreen: tarvik-bench-map [repetitions]
#include <unistd.h>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <functional>

#include "capplicationstyle.h"
#include "cfakemapservers.h"
#include "cformstack.h"
#include "cmapmodule.h"
#include "cplaceholderform.h"
#include "ctarvik.h"
#include "ctexts.h"
#include "ctwpushbutton.h"
#include "uiresources.h"

using namespace Dravo;

namespace {
QElapsedTimer g_clock;
qint64 g_iTilesAt = -1;
QtMessageHandler g_previous = nullptr;

void handler(QtMsgType type, const QMessageLogContext& context, const QString& msg)
{
    if (msg == QLatin1String("CMapForm::onMapTilesLoaded") && g_iTilesAt < 0)
        g_iTilesAt = g_clock.nsecsElapsed();
    if (qEnvironmentVariableIsSet("TARVIK_BENCH_VERBOSE") && g_previous)
        g_previous(type, context, msg);
}

qint64 residentKb(qint64 pid)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLongLong();
    return 0;
}

// This process and all its descendants (the web engine's zygote, renderer and utility
// processes).
qint64 treeResidentKb(qint64 root)
{
    QHash<qint64, qint64> parents;
    for (const QString& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        bool bOk = false;
        const qint64 pid = entry.toLongLong(&bOk);
        if (!bOk)
            continue;
        QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
        if (!stat.open(QIODevice::ReadOnly))
            continue;
        const QByteArray text = stat.readAll();
        parents.insert(pid, text.mid(text.lastIndexOf(')') + 2).split(' ').value(1).toLongLong());
    }
    qint64 iTotal = 0;
    for (auto it = parents.begin(); it != parents.end(); ++it) {
        for (qint64 p = it.key(); p > 1; p = parents.value(p, 0)) {
            if (p == root) {
                iTotal += residentKb(it.key());
                break;
            }
        }
    }
    return iTotal;
}

// QTest's waits sleep between rounds of events, which holds up the web engine's work on
// this thread; these keep the event loop running.
void spin(int iMs)
{
    QEventLoop loop;
    QTimer::singleShot(iMs, &loop, &QEventLoop::quit);
    loop.exec();
}

bool spinUntil(const std::function<bool()>& done, int iTimeoutMs)
{
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done())
            loop.quit();
    });
    poll.start(2);
    QTimer::singleShot(iTimeoutMs, &loop, &QEventLoop::quit);
    loop.exec();
    return done();
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0.0 : values.at(values.size() / 2);
}
}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    if (geteuid() == 0 && qEnvironmentVariableIsEmpty("QTWEBENGINE_DISABLE_SANDBOX"))
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    // No system bus: the network counts as up, as on a desktop without NetworkManager.
    if (qEnvironmentVariableIsEmpty("DBUS_SYSTEM_BUS_ADDRESS"))
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/tarvik-bench-bus");
    if (qEnvironmentVariableIsEmpty("TARVIK_PLUGIN_DIR"))
        qputenv("TARVIK_PLUGIN_DIR", QByteArray(TARVIK_BINARY_DIR "/lib/tarvik"));
    QApplication app(argc, argv);
    const int iRepetitions = argc > 1 ? qMax(1, atoi(argv[1])) : 5;
    g_previous = qInstallMessageHandler(handler);
    initUiResources();
    CApplicationStyle::install();

    TarvikTest::CFakeTileServer tiles;
    if (!tiles.start()) {
        fprintf(stderr, "cannot start the tile server\n");
        return 1;
    }
    qputenv("TARVIK_TILE_URL", tiles.tileUrl().toUtf8());

    CFormStack stack;
    stack.resize(800, 424);
    auto* pView = new CPlaceholderForm(&stack, QStringLiteral("view"), QString());
    auto* pButton = new CTWPushButton(CTexts::showOnMap(), pView);
    CTarvik tarvik;
    tarvik.setLatitude(59.4420);
    tarvik.setLongitude(24.7600);
    QObject::connect(pButton, &CTWPushButton::clicked, &stack,
                     [&] { stack.showForm(CMapModule::createMapForm(&stack, tarvik, 0)); });
    stack.showForm(pView);
    stack.show();
    spin(300);
    const qint64 iIdleKb = treeResidentKb(QCoreApplication::applicationPid());

    QList<double> lstLater;
    double dFirstMs = 0.0;
    qint64 iShownKb = 0;
    qint64 iClosedKb = 0;
    for (int i = 0; i <= iRepetitions; ++i) {
        g_iTilesAt = -1;
        g_clock.start();
        QTest::mouseClick(pButton, Qt::LeftButton);
        if (!spinUntil([] { return g_iTilesAt >= 0; }, 20000)) {
            fprintf(stderr, "no tiles within 20 s (map %d)\n", i + 1);
            return 1;
        }
        const double dMs = g_iTilesAt / 1e6;
        if (i == 0)
            dFirstMs = dMs;
        else
            lstLater << dMs;
        spin(500);
        if (i == 0)
            iShownKb = treeResidentKb(QCoreApplication::applicationPid());
        // Back to the view: close everything above it.
        while (stack.count() > 1)
            stack.closeForm(true, stack.currentForm());
        spin(1000);
        if (i == 0)
            iClosedKb = treeResidentKb(QCoreApplication::applicationPid());
    }

    printf("map benchmark (loopback tiles, %d later maps)\n", iRepetitions);
    printf("  first map, click to tiles shown:  %8.1f ms  (target < 1500)\n", dFirstMs);
    printf("  later maps, median:               %8.1f ms  (target < 500)\n", median(lstLater));
    printf("  later maps, max:                  %8.1f ms\n",
           lstLater.isEmpty() ? 0.0 : *std::max_element(lstLater.begin(), lstLater.end()));
    printf("  resident memory, no map yet:      %8.1f MB\n", iIdleKb / 1024.0);
    printf("  resident memory, map shown:       %8.1f MB  (client + web engine processes)\n",
           iShownKb / 1024.0);
    printf("  resident memory, map closed:      %8.1f MB\n", iClosedKb / 1024.0);
    printf("  tile requests served:             %8d\n", tiles.requestCount());
    return 0;
}
