# Targets for OpenEXR: zam_openexr_core, its C library, which images are written by, and zam_openexr, its C++ library, which
# tests read them by. Found by name, for Debian's development package can be there for one architecture only: its headers
# serve all, and libraries for another one come without the unversioned link.
find_path(ZAM_OPENEXR_INCLUDE_DIR openexr.h PATH_SUFFIXES OpenEXR REQUIRED)
find_path(ZAM_IMATH_INCLUDE_DIR half.h PATH_SUFFIXES Imath REQUIRED)

function(zam_openexr_target name)
    add_library(${name} INTERFACE)
    target_include_directories(${name} SYSTEM INTERFACE ${ZAM_OPENEXR_INCLUDE_DIR} ${ZAM_IMATH_INCLUDE_DIR})
    foreach(library ${ARGN})
        string(REGEX REPLACE ":.*" "" base ${library})
        string(REGEX REPLACE ".*:" "" version ${library})
        find_library(ZAM_${base}_LIBRARY NAMES ${base}-3_1 ${base} lib${base}-3_1.so.${version} REQUIRED)
        target_link_libraries(${name} INTERFACE ${ZAM_${base}_LIBRARY})
    endforeach()
endfunction()
zam_openexr_target(zam_openexr_core OpenEXRCore:30)
zam_openexr_target(zam_openexr OpenEXR:30 Iex:30 Imath:29)
