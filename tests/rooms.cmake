# Checks that every file includes only from its own room or from rooms on lower floors.
# Run as: cmake -D SOURCE_DIR=DIR -P rooms.cmake
#
# Each room with its floor, the longest names first so that "appcore/sizes" is not taken for "appcore".
set(rooms
    appcore/sizes=20 engine/tree=21 cli/sample=65
    formats=0 platform=10 appcore=30 engine=40 modules=50 uninstaller=50 services=50 app=60 cli=70 ui=70 tools=70)

function(room_of path room_variable floor_variable)
    foreach(entry IN LISTS rooms)
        string(REPLACE "=" ";" entry "${entry}")
        list(GET entry 0 room)
        if(path MATCHES "^${room}/")
            list(GET entry 1 floor)
            set(${room_variable} ${room} PARENT_SCOPE)
            set(${floor_variable} ${floor} PARENT_SCOPE)
            return()
        endif()
    endforeach()
    message(SEND_ERROR "${path}: in no room")
endfunction()

# What changes a target stands behind the gate. Besides it only these call it: those who have it, those who look after our own
# files, and the tools that stand in for the Mac's own.
set(behind_gate "removeItemAtPath|moveItemAtPath|replaceFile|removeTree|locateForRemoval|openReferenceForRemoval|removePkg"
    "|removeLoginItemAtPath|writeLoginItemsList|FileChanges|BinarySlimmer|ItemKeeper")
string(CONCAT behind_gate ${behind_gate})
set(gate_and_own_files "^(platform/|appcore/changes/|appcore/LoginItems|appcore/receipts/PackageManager|tools/(pkgutil|rm)/"
    "|modules/ignorelist/SharedIgnoreList|modules/uninstaller/agents/|app/DiskImage)")
string(CONCAT gate_and_own_files ${gate_and_own_files})

file(GLOB_RECURSE files RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/*.h ${SOURCE_DIR}/*.cpp)
foreach(file IN LISTS files)
    room_of("${file}" room floor)
    file(STRINGS "${SOURCE_DIR}/${file}" includes REGEX "^#include \"")
    foreach(include IN LISTS includes)
        string(REGEX REPLACE "^#include \"([^\"]+)\".*" "\\1" include "${include}")
        room_of("${include}" other_room other_floor)
        if(NOT room STREQUAL other_room AND NOT other_floor LESS floor)
            message(SEND_ERROR "${file} (${room}) includes ${include}, which is not below it")
        endif()
    endforeach()
    if(NOT file MATCHES "${gate_and_own_files}")
        file(STRINGS "${SOURCE_DIR}/${file}" calls REGEX "(${behind_gate})[ (]")
        if(calls)
            message(SEND_ERROR "${file} changes the target, but not through the gate: ${calls}")
        endif()
    endif()
    if(NOT room STREQUAL "ui")
        file(STRINGS "${SOURCE_DIR}/${file}" qt REGEX "^#include <Q")
        if(qt)
            message(SEND_ERROR "${file} includes Qt outside ui/")
        endif()
    endif()
endforeach()
