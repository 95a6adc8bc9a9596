# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# tarvik_add_plugin(<name> <sources...>)
#
# A plugin the client loads at run time: lib<name>.so in <libdir>/tarvik/, at the same
# place relative to the executable in the build tree and in the installation, where the
# tarvik package takes every plugin from.
function(tarvik_add_plugin name)
    add_library(${name} MODULE ${ARGN})
    set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${TARVIK_PLUGIN_BUILD_DIR})
    install(TARGETS ${name} LIBRARY DESTINATION ${TARVIK_PLUGIN_INSTALL_DIR})
endfunction()
