// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An inbox of 10,000 messages on screen: the time from pushing the inbox form to the
// first paint of the filled list, the frame times of scrolling it from top to bottom page
// by page, and the resident memory with the messages loaded, beside a raw SQLite read of
// the same rows in the same run.
// Run under X (Xvfb in a headless shell):
//   xvfb-run -a -s "-screen 0 800x480x24" build/bin/tarvik-bench-inbox [rounds]
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

#include <sqlite3.h>

#include "capplicationstyle.h"
#include "casynctstorage.h"
#include "cinboxform.h"
#include "ctarviklistmodel.h"
#include "ctarviklistview.h"
#include "uiresources.h"

using namespace Dravo;

namespace {

constexpr int kRows = 10000;

CTarvik sample(int i)
{
    CTarvik t;
    t.setGuid(QStringLiteral("3f1c0b2e-%1").arg(i));
    t.setFrom(QStringLiteral("+37255%1").arg(100000 + i));
    t.setTo(QStringLiteral("+447700900100"));
    t.setDateTime(QDateTime::fromSecsSinceEpoch(1755244709 + i * 60, Qt::UTC));
    t.setTitle(QStringLiteral("Lunch at %1").arg(i));
    t.setNote(QStringLiteral("I'm at the old town square, by the pharmacy. Come over when you "
                             "can, I'll wait until one o'clock."));
    t.setLatitude(59.437 + i * 1e-5);
    t.setLongitude(24.7536 - i * 1e-5);
    t.setScreenname(i % 7 ? QStringLiteral("Jaan") : QStringLiteral("Mari-Liis Maasikas"));
    t.setAddress(QStringLiteral("Raekoja plats 11, Tallinn"));
    t.setVersion(QStringLiteral("1.0.5"));
    t.setFlag(i % 3 == 0);
    return t;
}

double rawReadMs(const QString& strPath)
{
    sqlite3* db = nullptr;
    sqlite3_open(strPath.toUtf8().constData(), &db);
    QElapsedTimer timer;
    timer.start();
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(db, "select * from inbox order by tutcdatetime desc", -1, &stmt, nullptr);
    std::vector<std::u16string> texts;
    texts.reserve(kRows * 14);
    int iRows = 0;
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        for (int c = 0; c < sqlite3_column_count(stmt); ++c) {
            const int type = sqlite3_column_type(stmt, c);
            if (type == SQLITE_TEXT) {
                const void* p = sqlite3_column_text16(stmt, c);
                texts.emplace_back(static_cast<const char16_t*>(p),
                                   sqlite3_column_bytes16(stmt, c) / 2);
            } else {
                (void)sqlite3_column_double(stmt, c);
            }
        }
        ++iRows;
    }
    sqlite3_finalize(stmt);
    const double ms = timer.nsecsElapsed() / 1e6;
    sqlite3_close(db);
    return iRows == kRows ? ms : -1.0;
}

double residentMb()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    }
    return -1;
}

// Notes the first paint of the list's viewport once the list is filled.
class CPaintWatch : public QObject
{
public:
    explicit CPaintWatch(CTarvikListView* pView) : m_pView(pView)
    {
        pView->viewport()->installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* pEvent) override
    {
        if (pEvent->type() == QEvent::Paint && !m_bPainted && !m_pView->isBusy() &&
            m_pView->model()->rowCount() == kRows) {
            m_bPainted = true;
            m_dMs = m_timer.nsecsElapsed() / 1e6;
        }
        return false;
    }
    QElapsedTimer m_timer;
    bool m_bPainted = false;
    double m_dMs = 0;

private:
    CTarvikListView* m_pView;
};

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

}  // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const int iRounds = argc > 1 ? qMax(1, atoi(argv[1])) : 3;
    QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& msg) {
        if (type >= QtWarningMsg && !msg.startsWith(QLatin1String("CInboxForm")))
            fprintf(stderr, "%s\n", qPrintable(msg));
    });
    initUiResources();
    CApplicationStyle::install();

    CAsyncTStorage* pStorage = CAsyncTStorage::getInstance(1);
    QSignalSpy initialized(pStorage, &CAsyncTStorage::signalInitialized);
    pStorage->start();
    if (!pStorage->isInitialized() && !initialized.wait(10000)) {
        fprintf(stderr, "storage did not open\n");
        return 1;
    }
    QList<CTarvik> batch;
    for (int i = 0; i < kRows; ++i)
        batch << sample(i);
    QSignalSpy saved(pStorage, &CAsyncTStorage::signalTarviksSaved);
    pStorage->saveTarviks(batch, CAsyncTStorage::eFolderInbox);
    if (!saved.wait(60000)) {
        fprintf(stderr, "could not fill the inbox\n");
        return 1;
    }
    batch.clear();
    const QString strDb = home.path() + QStringLiteral("/.tarvik/tarvikdb.sqlite");

    printf("inbox of %d messages, %d rounds, platform %s\n", kRows, iRounds,
           qPrintable(QGuiApplication::platformName()));
    printf("%-6s %12s %12s %8s %14s %14s %10s\n", "round", "shown ms", "raw read ms", "ratio",
           "scroll med ms", "scroll max ms", "RSS MB");
    for (int iRound = 0; iRound < iRounds; ++iRound) {
        const double dRaw = rawReadMs(strDb);

        QWidget window;
        window.resize(800, 450);
        window.show();
        QElapsedTimer start;
        start.start();
        auto* pForm = new CInboxForm(&window);
        CPaintWatch watch(pForm->listView());
        watch.m_timer = start;
        pForm->resize(window.size());
        pForm->show();
        while (!watch.m_bPainted && start.elapsed() < 30000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        const double dShown = watch.m_dMs;

        // Page by page to the bottom, each page painted at once as a frame.
        QScrollBar* pBar = pForm->listView()->verticalScrollBar();
        std::vector<double> frames;
        QElapsedTimer frame;
        while (pBar->value() < pBar->maximum()) {
            frame.start();
            pBar->setValue(pBar->value() + pBar->pageStep());
            pForm->listView()->viewport()->repaint();
            frames.push_back(frame.nsecsElapsed() / 1e6);
        }
        const double dMax = frames.empty() ? 0 : *std::max_element(frames.begin(), frames.end());
        printf("%-6d %12.1f %12.1f %8.2f %14.2f %14.2f %10.1f\n", iRound + 1, dShown, dRaw,
               dRaw > 0 ? dShown / dRaw : 0.0, median(frames), dMax, residentMb());
        fflush(stdout);
    }
    return 0;
}
