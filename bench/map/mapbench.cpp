// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Map benchmark: from the "Show on map" click to the map's tiles shown, against a loopback
// tile server, for the first map (plugin loaded on the way) and for later ones; and the
// resident memory of this process plus every process it started (the map view helper and
// its web engine processes) while a map is shown and after it is closed. Figures are
// printed with their targets.
//
// Run under Xvfb or QT_QPA_PLATFORM=offscreen: tarvik-bench-map [repetitions]
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
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

// "VmRSS:" and the like from /proc/<pid>/status or smaps_rollup, in kB.
qint64 procKb(const QString& strFile, const QByteArray& key)
{
    QFile file(strFile);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : file.readAll().split('\n'))
        if (line.startsWith(key))
            return line.mid(key.size()).trimmed().split(' ').value(0).toLongLong();
    return 0;
}

struct Tree
{
    qint64 iResidentKb = 0;
    qint64 iProportionalKb = 0;
    qint64 iPrivateDirtyKb = 0;
    QStringList lstProcesses;
};

// This process and all its descendants (the map view helper, the web engine's renderer
// and utility processes): resident memory summed over them, the proportional set size, where a page
// shared by several of them counts once in all, and the private dirty memory (what the
// system cannot take back without swap; mapped library text, for one, it can).
Tree processTree(qint64 root)
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
    Tree tree;
    for (auto it = parents.begin(); it != parents.end(); ++it) {
        for (qint64 p = it.key(); p > 1; p = parents.value(p, 0)) {
            if (p != root)
                continue;
            const QString strDir = QStringLiteral("/proc/%1/").arg(it.key());
            const qint64 iKb = procKb(strDir + QStringLiteral("status"), "VmRSS:");
            // A process that has ended and is not yet reaped holds no memory.
            if (iKb == 0)
                break;
            tree.iResidentKb += iKb;
            tree.iProportionalKb += procKb(strDir + QStringLiteral("smaps_rollup"), "Pss:");
            tree.iPrivateDirtyKb +=
                procKb(strDir + QStringLiteral("smaps_rollup"), "Private_Dirty:");
            QFile cmdline(strDir + QStringLiteral("cmdline"));
            QByteArray args = cmdline.open(QIODevice::ReadOnly) ? cmdline.readAll() : QByteArray();
            const int iType = args.indexOf("--type=");
            // The web engine's processes rewrite their command line into one string; the
            // others are named by their program.
            QByteArray name = "client";
            if (iType >= 0)
                name = args.mid(iType + 7).replace('\0', ' ').split(' ').value(0);
            else if (it.key() != root)
                name = QFileInfo(QString::fromLocal8Bit(args.split('\0').value(0)))
                           .fileName()
                           .toLocal8Bit();
            tree.lstProcesses << QStringLiteral("%1 %2 MB")
                                     .arg(QString::fromLatin1(name))
                                     .arg(iKb / 1024.0, 0, 'f', 1);
            break;
        }
    }
    tree.lstProcesses.sort();
    return tree;
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

// Targets: the first map (plugin loaded on the way) and later ones, click
// to tiles; resident memory once the maps are closed (measured after kSettleMs), against
// before the first.
const int kFirstTargetMs = 1500;
const int kLaterTargetMs = 500;
const int kGivenBackTargetMb = 60;
const int kSettleMs = 2000;

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0.0 : values.at(values.size() / 2);
}
}  // namespace

int main(int argc, char** argv)
{
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
    const qint64 iPid = QCoreApplication::applicationPid();
    const Tree idle = processTree(iPid);

    QList<double> lstLater;
    double dFirstMs = 0.0;
    Tree shown;
    Tree firstClosed;
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
            shown = processTree(iPid);
        // Back to the view: close everything above it.
        while (stack.count() > 1)
            stack.closeForm(true, stack.currentForm());
        spin(kSettleMs);
        if (i == 0)
            firstClosed = processTree(iPid);
    }
    const Tree lastClosed = processTree(iPid);

    const double dLaterMedian = median(lstLater);
    const double dLaterMax =
        lstLater.isEmpty() ? 0.0 : *std::max_element(lstLater.begin(), lstLater.end());
    const qint64 iClosedKb = qMax(firstClosed.iResidentKb, lastClosed.iResidentKb);
    const double dGivenBackMb = (iClosedKb - idle.iResidentKb) / 1024.0;
    const auto verdict = [](bool bPass) { return bPass ? "PASS" : "FAIL"; };
    const auto row = [](const char* pszWhat, const Tree& tree) {
        printf("  %-34s %8.1f MB  (proportional %.1f MB, private dirty %.1f MB; %s)\n", pszWhat,
               tree.iResidentKb / 1024.0, tree.iProportionalKb / 1024.0,
               tree.iPrivateDirtyKb / 1024.0,
               qPrintable(tree.lstProcesses.join(QStringLiteral(", "))));
    };
    printf("map benchmark (loopback tiles, %d later maps)\n", iRepetitions);
    printf("  first map, click to tiles shown:  %8.1f ms  target < %d ms: %s\n", dFirstMs,
           kFirstTargetMs, verdict(dFirstMs < kFirstTargetMs));
    printf("  later maps, median:               %8.1f ms  target < %d ms: %s\n", dLaterMedian,
           kLaterTargetMs, verdict(dLaterMedian < kLaterTargetMs));
    printf("  later maps, max:                  %8.1f ms\n", dLaterMax);
    printf("resident memory of this process and every process it started:\n");
    row("no map yet:", idle);
    row("first map shown:", shown);
    row("first map closed:", firstClosed);
    row("last map closed:", lastClosed);
    printf("  closed, above no map yet:         %8.1f MB  target <= %d MB: %s\n", dGivenBackMb,
           kGivenBackTargetMb, verdict(dGivenBackMb <= kGivenBackTargetMb));
    printf("  tile requests served:             %8d\n", tiles.requestCount());
    return 0;
}
