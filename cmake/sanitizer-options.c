// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Default options of the sanitizer runtimes for every program of the sanitizer build. The
// variables ASAN_OPTIONS, UBSAN_OPTIONS and LSAN_OPTIONS still override them.

const char* __asan_default_options(void);
const char* __ubsan_default_options(void);
const char* __lsan_default_options(void);

const char* __asan_default_options(void)
{
    return "halt_on_error=1:detect_leaks=1";
}

const char* __ubsan_default_options(void)
{
    return "halt_on_error=1:print_stacktrace=1";
}

const char* __lsan_default_options(void)
{
    return "suppressions=" TARVIK_LSAN_SUPPRESSIONS ":print_suppressions=0";
}
