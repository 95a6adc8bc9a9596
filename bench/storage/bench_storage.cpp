// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Storage throughput beside raw SQLite doing the same work through its C API:
//   getTarviks of a 10,000-message folder vs stepping the same select,
//   saveTarviks of 1,000 new messages vs one transaction of prepared inserts.
// Run: build/bin/tarvik-bench-storage   (prints the usual table, then the ratios)
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QTemporaryDir>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <sqlite3.h>

#include "ctarvikstorage.h"

using namespace Dravo;

namespace {

constexpr int kReadRows = 10000;
constexpr int kSaveRows = 1000;

QTemporaryDir* g_home = nullptr;
CTarvikStorage* g_storage = nullptr;

CTarvik sample(int i)
{
    CTarvik t;
    t.setGuid(QStringLiteral("3f1c0b2e-%1").arg(i));
    t.setFrom(QStringLiteral("+37255%1").arg(100000 + i));
    t.setTo(QStringLiteral("mari.maasikas@example.org"));
    t.setDateTime(QDateTime::fromSecsSinceEpoch(1255244709 + i, Qt::UTC));
    t.setTz(2);
    t.setTitle(QStringLiteral("Lunch at %1").arg(i));
    t.setNote(
        QStringLiteral("I'm at the old town square, by the pharmacy. Come over when you can, "
                       "I'll wait until one o'clock."));
    t.setLatitude(59.437 + i * 1e-5);
    t.setLongitude(24.7536 - i * 1e-5);
    t.setScreenname(QStringLiteral("Jaan"));
    t.setAddress(QStringLiteral("Raekoja plats 11, Tallinn"));
    t.setType(QStringLiteral("ping"));
    t.setCountry(372);
    t.setVersion(QStringLiteral("1.0.5"));
    t.setFlag(1);
    return t;
}

struct RawRow
{
    long long tid;
    std::u16string text[15];
    long long numbers[5];
    double lat, lon;
};

void BM_getTarviks(benchmark::State& state)
{
    for (auto _ : state) {
        QList<CTarvik> tarviks;
        if (!g_storage->getTarviks(CTarvikStorage::eFolderInbox, tarviks) ||
            tarviks.size() != kReadRows) {
            state.SkipWithError("getTarviks failed");
            return;
        }
        benchmark::DoNotOptimize(tarviks);
    }
}

void BM_rawRead(benchmark::State& state)
{
    sqlite3* db = nullptr;
    sqlite3_open(CTarvikStorage::databasePath().toUtf8().constData(), &db);
    const char* sql =
        "select tid, tguid, tfrom, tto, tutcdatetime, ttz, ttitle, tnote, tlatitude, tlongitude, "
        "tscreenname, taddress, ttype, ttypedesc, timage, tpriority, tcolor, treg, tcountry, "
        "tcarrier, tversion, tflag from inbox order by tutcdatetime desc limit ? offset ?";
    for (auto _ : state) {
        sqlite3_stmt* stmt = nullptr;
        sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr);
        sqlite3_bind_int(stmt, 1, -1);
        sqlite3_bind_int(stmt, 2, 0);
        std::vector<RawRow> rows;
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            RawRow row;
            row.tid = sqlite3_column_int64(stmt, 0);
            const int textColumns[] = {1, 2, 3, 6, 7, 10, 11, 12, 13, 14, 16, 17, 19, 20};
            int t = 0;
            for (int c : textColumns) {
                const void* p = sqlite3_column_text16(stmt, c);
                const int n = sqlite3_column_bytes16(stmt, c) / 2;
                row.text[t++] =
                    p ? std::u16string(static_cast<const char16_t*>(p), n) : std::u16string();
            }
            const int numberColumns[] = {4, 5, 15, 18, 21};
            int k = 0;
            for (int c : numberColumns) {
                row.numbers[k++] = sqlite3_column_int64(stmt, c);
            }
            row.lat = sqlite3_column_double(stmt, 8);
            row.lon = sqlite3_column_double(stmt, 9);
            rows.push_back(std::move(row));
        }
        sqlite3_finalize(stmt);
        if (rows.size() != size_t(kReadRows)) {
            state.SkipWithError("raw read returned the wrong row count");
            break;
        }
        benchmark::DoNotOptimize(rows);
    }
    sqlite3_close(db);
}

void BM_saveTarviks(benchmark::State& state)
{
    QList<CTarvik> batch;
    for (int i = 0; i < kSaveRows; ++i) {
        batch << sample(i);
    }
    for (auto _ : state) {
        state.PauseTiming();
        g_storage->removeAllTarviks(CTarvikStorage::eFolderDraft);
        state.ResumeTiming();
        QList<int> tids;
        if (!g_storage->saveTarviks(batch, CTarvikStorage::eFolderDraft, tids) ||
            tids.size() != kSaveRows) {
            state.SkipWithError("saveTarviks failed");
            return;
        }
    }
}

void BM_rawInsert(benchmark::State& state)
{
    sqlite3* db = nullptr;
    sqlite3_open(CTarvikStorage::databasePath().toUtf8().constData(), &db);
    const char* sql =
        "insert into outbox (tguid, tfrom, tto, tutcdatetime, ttz, ttitle, tnote, tlatitude, "
        "tlongitude, tscreenname, taddress, ttype, ttypedesc, timage, tpriority, tcolor, treg, "
        "tcountry, tcarrier, tversion, tflag) values (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
        "?, ?, ?, ?, ?, ?)";
    std::vector<CTarvik> batch;
    for (int i = 0; i < kSaveRows; ++i) {
        batch.push_back(sample(i));
    }
    auto text = [](sqlite3_stmt* s, int i, const QString& v) {
        sqlite3_bind_text16(s, i, v.utf16(), int(v.size() * 2), SQLITE_TRANSIENT);
    };
    for (auto _ : state) {
        state.PauseTiming();
        sqlite3_exec(db, "delete from outbox", nullptr, nullptr, nullptr);
        state.ResumeTiming();
        sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
        sqlite3_stmt* stmt = nullptr;
        sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr);
        for (const CTarvik& t : batch) {
            text(stmt, 1, t.guid());
            text(stmt, 2, t.from());
            text(stmt, 3, t.to());
            sqlite3_bind_int64(stmt, 4, t.dateTime().toSecsSinceEpoch());
            sqlite3_bind_int(stmt, 5, t.tz());
            text(stmt, 6, t.title());
            text(stmt, 7, t.note());
            sqlite3_bind_double(stmt, 8, t.latitude());
            sqlite3_bind_double(stmt, 9, t.longitude());
            text(stmt, 10, t.screenname());
            text(stmt, 11, t.address());
            text(stmt, 12, t.type());
            text(stmt, 13, t.typedesc());
            text(stmt, 14, t.image());
            sqlite3_bind_int(stmt, 15, t.priority());
            text(stmt, 16, t.color());
            text(stmt, 17, t.reg());
            sqlite3_bind_int(stmt, 18, t.country());
            text(stmt, 19, t.carrier());
            text(stmt, 20, t.version());
            sqlite3_bind_int(stmt, 21, t.flag());
            if (sqlite3_step(stmt) != SQLITE_DONE) {
                state.SkipWithError(sqlite3_errmsg(db));
            }
            benchmark::DoNotOptimize(sqlite3_last_insert_rowid(db));
            sqlite3_reset(stmt);
        }
        sqlite3_finalize(stmt);
        sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    }
    sqlite3_close(db);
}

BENCHMARK(BM_getTarviks)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_rawRead)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_saveTarviks)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_rawInsert)->Unit(benchmark::kMillisecond)->MinTime(2.0);

// Prints the usual table and remembers each benchmark's time per iteration.
class CRatioReporter : public benchmark::ConsoleReporter
{
public:
    std::map<std::string, double> times;
    std::map<std::string, double> cpu;
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            times[run.run_name.function_name] = run.GetAdjustedRealTime();
            cpu[run.run_name.function_name] = run.GetAdjustedCPUTime();
        }
    }
};

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    qSetMessagePattern(
        QStringLiteral("%{if-warning}%{message}%{endif}%{if-critical}%{message}%{endif}"));
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    CTarvikStorage::initResources();
    CTarvikStorage storage(QStringLiteral("bench"));
    if (!storage.isOpen()) {
        std::fprintf(stderr, "cannot open the benchmark database\n");
        return 1;
    }
    g_home = &home;
    g_storage = &storage;
    QList<CTarvik> inbox;
    for (int i = 0; i < kReadRows; ++i) {
        inbox << sample(i);
    }
    QList<int> tids;
    if (!storage.saveTarviks(inbox, CTarvikStorage::eFolderInbox, tids)) {
        std::fprintf(stderr, "cannot fill the inbox\n");
        return 1;
    }

    benchmark::Initialize(&argc, argv);
    CRatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    auto line = [&](const char* what, int rows, const char* ours, const char* raw, double target) {
        const double real =
            reporter.times[raw] > 0 ? reporter.times[ours] / reporter.times[raw] : 0;
        const double cpu = reporter.cpu[raw] > 0 ? reporter.cpu[ours] / reporter.cpu[raw] : 0;
        std::printf(
            "%s %5d messages: tarvik %7.2f ms, raw SQLite %7.2f ms, ratio %.2fx wall, "
            "%.2fx cpu (target <= %.1fx)\n",
            what, rows, reporter.times[ours], reporter.times[raw], real, cpu, target);
    };
    std::printf("\n");
    line("read", kReadRows, "BM_getTarviks", "BM_rawRead", 1.5);
    line("save", kSaveRows, "BM_saveTarviks", "BM_rawInsert", 2);
    return 0;
}
