# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# The libraries a plugin uses from the program that loads it.
set(TARVIK_PLUGIN_HOST_LIBS tarvik_shell tarvik_dbus tarvik_storage tarvik_connection tarvik_gps
    tarvik_ui tarvik_core)

# tarvik_add_plugin(<name> CODE <static library> [SOURCES <files...>] [LIBS <libraries...>]
#                   [OBJECTS <object libraries...>])
#
# A plugin the client loads at run time: lib<name>.so in <libdir>/tarvik/, at the same
# place relative to the executable in the build tree and in the installation, where the
# tarvik package takes every plugin from. It holds its sources, the objects of CODE and
# of the OBJECTS libraries (compiled-in resources), and links LIBS, but none of the
# client's own libraries: their symbols come from the program that loads the plugin (see
# tarvik_host_plugins), so the process has one copy of every class, global and singleton.
function(tarvik_add_plugin name)
    cmake_parse_arguments(P "" "CODE" "SOURCES;LIBS;OBJECTS" ${ARGN})
    set(objects $<TARGET_OBJECTS:${P_CODE}>)
    foreach(lib ${P_OBJECTS})
        list(APPEND objects $<TARGET_OBJECTS:${lib}>)
    endforeach()
    add_library(${name} MODULE ${P_SOURCES} ${objects})
    target_include_directories(${name} PRIVATE
        $<TARGET_PROPERTY:${P_CODE},INTERFACE_INCLUDE_DIRECTORIES>)
    target_link_libraries(${name} PRIVATE ${P_LIBS})
    add_dependencies(${name} ${P_CODE})
    set_property(GLOBAL APPEND PROPERTY TARVIK_PLUGINS ${name})
    set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${TARVIK_PLUGIN_BUILD_DIR})
    install(TARGETS ${name} LIBRARY DESTINATION ${TARVIK_PLUGIN_INSTALL_DIR})
endfunction()

# tarvik_host_plugins(<target>)
#
# <target> loads plugins: it carries every object of the libraries they use, not only
# those it calls itself, and exports the symbols the plugins bind to - only those (see
# PluginSymbols.cmake): exporting all of them would make the dynamic linker weigh
# thousands of symbols at every start. Call it after the plugins are defined.
function(tarvik_host_plugins target)
    set(list_file ${CMAKE_BINARY_DIR}/tarvik-plugin-symbols.list)
    if(NOT TARGET tarvik_plugin_symbols)
        get_property(plugins GLOBAL PROPERTY TARVIK_PLUGINS)
        set(files)
        foreach(plugin ${plugins})
            list(APPEND files $<TARGET_FILE:${plugin}>)
        endforeach()
        add_custom_target(tarvik_plugin_symbols
            COMMAND ${CMAKE_COMMAND} -DNM=${CMAKE_NM} -DOUTPUT=${list_file}
                    "-DPLUGINS=${files}" -P ${PROJECT_SOURCE_DIR}/cmake/PluginSymbols.cmake
            BYPRODUCTS ${list_file}
            COMMENT "Listing the symbols the plugins bind to"
            VERBATIM)
        add_dependencies(tarvik_plugin_symbols ${plugins})
    endif()
    add_dependencies(${target} tarvik_plugin_symbols)
    target_link_options(${target} PRIVATE "LINKER:--dynamic-list=${list_file}")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${list_file})
    target_link_libraries(${target} PRIVATE ${TARVIK_PLUGIN_HOST_LIBS})
    foreach(lib ${TARVIK_PLUGIN_HOST_LIBS})
        target_sources(${target} PRIVATE $<TARGET_OBJECTS:${lib}>)
    endforeach()
endfunction()
