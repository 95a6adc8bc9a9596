// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Default options of the sanitizer runtimes for every program of the sanitizer build. The
// variables ASAN_OPTIONS, UBSAN_OPTIONS and LSAN_OPTIONS still override them.

const char* __asan_default_options(void);
const char* __ubsan_default_options(void);
const char* __lsan_default_options(void);

// new_delete_type_mismatch: Qt WebEngine's bundled Chromium frees some of its own objects
// through a base of another size when a page is destroyed (inside libQt6WebEngineCore,
// under ~WebContentsAdapter); the check has no suppression list, so it is off.
const char* __asan_default_options(void)
{
    return "halt_on_error=1:detect_leaks=1:new_delete_type_mismatch=0";
}

const char* __ubsan_default_options(void)
{
    return "halt_on_error=1:print_stacktrace=1";
}

const char* __lsan_default_options(void)
{
    return "suppressions=" TARVIK_LSAN_SUPPRESSIONS ":print_suppressions=0";
}
