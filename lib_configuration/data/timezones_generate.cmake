# Writes the station's time-zone table from the system's time-zone database.
# Usage: cmake -DZONEINFO_DIR=/usr/share/zoneinfo -DOUTPUT=timezones.csv -P timezones_generate.cmake
#
# One line per zone, "N;Region/City", sorted by identifier, N counting from 1. Taken are the
# zones of tzdata.zi ("Z" lines) and the links that zone.tab names as a country's zone,
# restricted to the geographic regions, plus "Etc/UTC". Legacy aliases ("US/Eastern",
# "Asia/Calcutta") and fixed-offset zones are left out so that the picker stays readable.
if(NOT ZONEINFO_DIR)
    set(ZONEINFO_DIR /usr/share/zoneinfo)
endif()
if(NOT OUTPUT)
    message(FATAL_ERROR "OUTPUT is not set")
endif()

set(_compiled "${ZONEINFO_DIR}/tzdata.zi")
set(_countryTable "${ZONEINFO_DIR}/zone.tab")
if(NOT EXISTS "${_compiled}" AND NOT EXISTS "${_countryTable}")
    message(FATAL_ERROR "No time-zone database in ${ZONEINFO_DIR} (install the tzdata package)")
endif()

set(_regionPattern "^(Africa|America|Antarctica|Arctic|Asia|Atlantic|Australia|Europe|Indian|Pacific)/[^ \t]+$")
set(_names "Etc/UTC")

set(_countryZones "")
if(EXISTS "${_countryTable}")
    file(STRINGS "${_countryTable}" _lines REGEX "^[^#]")
    foreach(_line IN LISTS _lines)
        string(REPLACE "\t" ";" _fields "${_line}")
        list(LENGTH _fields _count)
        if(_count GREATER 2)
            list(GET _fields 2 _name)
            list(APPEND _countryZones "${_name}")
        endif()
    endforeach()
endif()

if(EXISTS "${_compiled}")
    file(STRINGS "${_compiled}" _lines REGEX "^[ZL] ")
    foreach(_line IN LISTS _lines)
        string(REGEX REPLACE "[ \t]+" ";" _fields "${_line}")
        list(GET _fields 0 _kind)
        if(_kind STREQUAL "Z")
            list(GET _fields 1 _name)
        else()
            # "L target link": a link counts only when it is a country's zone.
            list(GET _fields 2 _name)
            list(FIND _countryZones "${_name}" _at)
            if(_at LESS 0)
                continue()
            endif()
        endif()
        list(APPEND _names "${_name}")
    endforeach()
else()
    list(APPEND _names ${_countryZones})
endif()

list(FILTER _names INCLUDE REGEX "${_regionPattern}|^Etc/UTC$")
list(REMOVE_DUPLICATES _names)
list(SORT _names)

set(_text "")
set(_number 0)
foreach(_name IN LISTS _names)
    math(EXPR _number "${_number} + 1")
    string(APPEND _text "${_number};${_name}\n")
endforeach()
if(_number LESS 100)
    message(FATAL_ERROR "Only ${_number} time zones found in ${ZONEINFO_DIR}")
endif()

# Rewrite only on change so that the resource is not rebuilt for nothing.
set(_old "")
if(EXISTS "${OUTPUT}")
    file(READ "${OUTPUT}" _old)
endif()
if(NOT _old STREQUAL _text)
    file(WRITE "${OUTPUT}" "${_text}")
endif()
