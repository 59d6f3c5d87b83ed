# Time-zone table resource ":/data/timezones.csv", generated at build time from the system's
# time-zone database (Debian package tzdata) and compiled into StationConfiguration.
set(STATION_ZONEINFO_DIR "/usr/share/zoneinfo" CACHE PATH "Time-zone database the time-zone table is built from")

set(_tzDataDir ${CMAKE_CURRENT_LIST_DIR})
set(_tzOutputDir ${CMAKE_CURRENT_BINARY_DIR}/data)
set(TIMEZONES_CSV ${_tzOutputDir}/timezones.csv)
file(MAKE_DIRECTORY ${_tzOutputDir})

set(_tzDepends ${_tzDataDir}/timezones_generate.cmake)
foreach(_tzFile tzdata.zi zone.tab)
    if(EXISTS ${STATION_ZONEINFO_DIR}/${_tzFile})
        list(APPEND _tzDepends ${STATION_ZONEINFO_DIR}/${_tzFile})
    endif()
endforeach()

add_custom_command(
    OUTPUT ${TIMEZONES_CSV}
    COMMAND ${CMAKE_COMMAND} -DZONEINFO_DIR=${STATION_ZONEINFO_DIR} -DOUTPUT=${TIMEZONES_CSV}
            -P ${_tzDataDir}/timezones_generate.cmake
    DEPENDS ${_tzDepends}
    COMMENT "Generating the time-zone table from ${STATION_ZONEINFO_DIR}"
    VERBATIM)

configure_file(${_tzDataDir}/timezones.qrc.in ${_tzOutputDir}/timezones.qrc @ONLY)
# Compiled explicitly (not through AUTORCC) so that the generated table is a dependency of the resource.
qt5_add_resources(_tzResourceSources ${_tzOutputDir}/timezones.qrc)
set_source_files_properties(${_tzResourceSources} PROPERTIES SKIP_AUTOGEN ON)
target_sources(StationConfiguration PRIVATE ${TIMEZONES_CSV} ${_tzResourceSources})
