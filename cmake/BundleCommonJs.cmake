# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# cmake -DPACKAGE_DIR=<dir> -DOUTPUT=<file.js> -DGLOBAL=<name> -DMAIN=<file> -P BundleCommonJs.cmake
#
# Wraps the CommonJS modules of a small npm package (its .js files and the JSON files
# under it) into one browser script that sets window.<GLOBAL> to what MAIN exports.
# require() names are taken relative to the package root, which is all the vendored
# packages need.
get_filename_component(PACKAGE_DIR ${PACKAGE_DIR} ABSOLUTE)
file(GLOB_RECURSE modules RELATIVE ${PACKAGE_DIR} ${PACKAGE_DIR}/*.js ${PACKAGE_DIR}/*.json)
list(REMOVE_ITEM modules package.json)
list(SORT modules)

set(out "${OUTPUT}.tmp")
file(WRITE ${out} "// Generated from ${MAIN} and its modules; do not edit.\n(function (root) {\nvar defs = {};\n")
foreach(module IN LISTS modules)
    file(READ ${PACKAGE_DIR}/${module} content)
    if(module MATCHES "\\.json$")
        file(APPEND ${out} "defs[\"${module}\"] = function (module) { module.exports = ${content}; };\n")
    else()
        file(APPEND ${out} "defs[\"${module}\"] = function (module, exports, require) {\n${content}\n};\n")
    endif()
endforeach()
file(APPEND ${out} [=[
var cache = {};
function resolve(name) {
    var path = name.replace(/^\.\//, '');
    var candidates = [path, path + '.js', path + '.json', path + '/index.js'];
    for (var i = 0; i < candidates.length; ++i) {
        if (Object.prototype.hasOwnProperty.call(defs, candidates[i])) return candidates[i];
    }
    throw new Error('module not found: ' + name);
}
function load(path) {
    if (cache[path]) return cache[path].exports;
    var module = { exports: {} };
    cache[path] = module;
    defs[path](module, module.exports, function (name) { return load(resolve(name)); });
    return module.exports;
}
]=])
file(APPEND ${out} "root.${GLOBAL} = load(\"${MAIN}\");\n})(window);\n")
file(RENAME ${out} ${OUTPUT})
