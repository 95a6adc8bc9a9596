# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# tarvik_add_test(<name> SOURCES <files...> LIBS <targets...> [GUI] [TIMEOUT <s>])
#
# Builds one QtTest executable and registers it with CTest. GUI tests run on the
# offscreen platform; every test gets a private HOME so nothing touches the user's
# data directory.
function(tarvik_add_test name)
    cmake_parse_arguments(T "GUI" "TIMEOUT" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${T_SOURCES})
    target_link_libraries(${name} PRIVATE Qt6::Test ${T_LIBS})
    target_compile_definitions(${name} PRIVATE
        TARVIK_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
        TARVIK_BINARY_DIR="${PROJECT_BINARY_DIR}"
        TARVIK_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
    add_test(NAME ${name} COMMAND ${name})
    if(NOT T_TIMEOUT)
        set(T_TIMEOUT 120)
    endif()
    # Far from UTC (+14 h), so that a time shown in UTC instead of local time shows.
    set(env "QT_QPA_PLATFORM=offscreen" "LC_ALL=C.UTF-8" "QT_LOGGING_RULES=qt.qpa.*=false"
        "TZ=Pacific/Kiritimati")
    set_tests_properties(${name} PROPERTIES TIMEOUT ${T_TIMEOUT} ENVIRONMENT "${env}")
endfunction()
