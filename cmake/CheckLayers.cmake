# Fails when a source file includes a header of a layer above its own. The layers, bottom up:
# platform <- core <- cli, gui; cli and gui do not see each other.
#   cmake -DSOURCE_ROOT=<repo>/src -P CheckLayers.cmake
cmake_minimum_required(VERSION 3.25)
set(allowed_platform platform)
set(allowed_core platform core)
set(allowed_cli platform core cli)
set(allowed_gui platform core gui)

set(violations "")
foreach(layer platform core cli gui)
    file(GLOB_RECURSE files ${SOURCE_ROOT}/${layer}/*.h ${SOURCE_ROOT}/${layer}/*.cpp
         ${SOURCE_ROOT}/${layer}/*.inc)
    foreach(file ${files})
        file(STRINGS ${file} includes REGEX "^[ \t]*#[ \t]*include[ \t]*\"[a-z]+/")
        foreach(line ${includes})
            string(REGEX REPLACE "^[^\"]*\"([a-z]+)/.*$" "\\1" target "${line}")
            if(NOT target IN_LIST allowed_${layer})
                file(RELATIVE_PATH shown ${SOURCE_ROOT} ${file})
                string(APPEND violations "  ${shown}: ${line}\n")
            endif()
        endforeach()
    endforeach()
endforeach()
if(violations)
    message(FATAL_ERROR "Includes that point up the layers (platform <- core <- cli, gui):\n"
                        "${violations}")
endif()
