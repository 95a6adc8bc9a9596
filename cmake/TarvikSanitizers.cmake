# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# The sanitizer build: AddressSanitizer (with LeakSanitizer) and UndefinedBehaviorSanitizer
# on every target. Any finding ends the process with an error, so a test that provokes one
# fails. Built with clang, the same build also instruments the code for libFuzzer and
# builds the fuzz targets (fuzz/).
#
#   CC=clang CXX=clang++ cmake -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DTARVIK_SANITIZE=ON
option(TARVIK_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)

set(TARVIK_FUZZ OFF)
if(TARVIK_SANITIZE)
    set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all)
    add_compile_options(${sanitizers} -fno-omit-frame-pointer)
    add_link_options(${sanitizers})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        # Coverage counters for libFuzzer in all of our code; only the fuzz targets link
        # the fuzzer's main().
        add_compile_options(-fsanitize=fuzzer-no-link)
        set(TARVIK_FUZZ ON)
    endif()
    # The runtime options (halt on the first error, the leak suppressions) are compiled into
    # every executable, so a test behaves the same whether ctest, a script or a person starts it.
    add_library(tarvik_sanitizer_options OBJECT ${PROJECT_SOURCE_DIR}/cmake/sanitizer-options.c)
    target_compile_definitions(tarvik_sanitizer_options PRIVATE
        TARVIK_LSAN_SUPPRESSIONS="${PROJECT_SOURCE_DIR}/cmake/lsan.supp")
    link_libraries(tarvik_sanitizer_options)
    # LeakSanitizer takes one suppression file: programs that open the address book get the
    # general list and the address book's together.
    set(TARVIK_LSAN_EDS_SUPPRESSIONS ${PROJECT_BINARY_DIR}/lsan-eds.supp)
    file(READ ${PROJECT_SOURCE_DIR}/cmake/lsan.supp general)
    file(READ ${PROJECT_SOURCE_DIR}/cmake/lsan-eds.supp eds)
    file(WRITE ${TARVIK_LSAN_EDS_SUPPRESSIONS} "${general}\n${eds}")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
        ${PROJECT_SOURCE_DIR}/cmake/lsan.supp ${PROJECT_SOURCE_DIR}/cmake/lsan-eds.supp)
endif()
