# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# cmake -DNM=<nm> -DOUTPUT=<file> -DPLUGINS=<plugin;...> -P PluginSymbols.cmake
#
# Writes the linker's dynamic list of every symbol the plugins use or define: the program
# that loads them exports those it has (one copy of each class, singleton and inline
# static in the process) and no others. The file is rewritten only when it changes, so
# the program is relinked only then.
set(symbols)
foreach(plugin ${PLUGINS})
    execute_process(COMMAND ${NM} -D --format=posix ${plugin}
                    OUTPUT_VARIABLE table RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "cannot read the dynamic symbols of ${plugin}")
    endif()
    string(REGEX MATCHALL "(^|\n)[^ \n]+" names "${table}")
    foreach(name ${names})
        # Those with a version (name@VERSION) come from other libraries.
        string(STRIP "${name}" name)
        if(NOT name MATCHES "@")
            list(APPEND symbols "${name}")
        endif()
    endforeach()
endforeach()
list(REMOVE_DUPLICATES symbols)
list(SORT symbols)
list(JOIN symbols ";\n  " body)
set(text "{\n  ${body};\n};\n")
if(EXISTS ${OUTPUT})
    file(READ ${OUTPUT} old)
endif()
if(NOT "${text}" STREQUAL "${old}")
    file(WRITE ${OUTPUT} "${text}")
endif()
