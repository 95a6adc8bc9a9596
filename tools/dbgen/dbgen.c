// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

/* tarvik-dbgen SQL-FILE OUT-FILE
 * Builds the template database: a new UTF-16le file with 1024-byte pages, filled by
 * executing SQL-FILE. Any existing OUT-FILE is replaced. */
#include <sqlite3.h>
#include <stdio.h>
#include <stdlib.h>

static char* readAll(const char* path)
{
    FILE* f = fopen(path, "rb");
    if (!f) {
        return NULL;
    }
    if (fseek(f, 0, SEEK_END) != 0) {
        fclose(f);
        return NULL;
    }
    long size = ftell(f);
    rewind(f);
    char* text = size >= 0 ? malloc((size_t)size + 1) : NULL;
    if (text && fread(text, 1, (size_t)size, f) != (size_t)size) {
        free(text);
        text = NULL;
    }
    if (text) {
        text[size] = '\0';
    }
    fclose(f);
    return text;
}

static int run(sqlite3* db, const char* sql, const char* what)
{
    char* error = NULL;
    if (sqlite3_exec(db, sql, NULL, NULL, &error) != SQLITE_OK) {
        fprintf(stderr, "tarvik-dbgen: %s failed: %s\n", what, error ? error : "?");
        sqlite3_free(error);
        return 0;
    }
    return 1;
}

int main(int argc, char** argv)
{
    if (argc != 3) {
        fprintf(stderr, "usage: tarvik-dbgen SQL-FILE OUT-FILE\n");
        return 2;
    }
    char* sql = readAll(argv[1]);
    if (!sql) {
        fprintf(stderr, "tarvik-dbgen: cannot read %s\n", argv[1]);
        return 1;
    }
    remove(argv[2]);
    sqlite3* db = NULL;
    if (sqlite3_open(argv[2], &db) != SQLITE_OK) {
        fprintf(stderr, "tarvik-dbgen: cannot create %s: %s\n", argv[2], sqlite3_errmsg(db));
        sqlite3_close(db);
        free(sql);
        return 1;
    }
    /* Encoding and page size only take effect before the first table exists. */
    int ok = run(db, "PRAGMA encoding = 'UTF-16le'; PRAGMA page_size = 1024;", "pragmas") &&
             run(db, "BEGIN", "begin") && run(db, sql, argv[1]) && run(db, "COMMIT", "commit");
    free(sql);
    if (sqlite3_close(db) != SQLITE_OK) {
        ok = 0;
    }
    if (!ok) {
        remove(argv[2]);
        return 1;
    }
    return 0;
}
