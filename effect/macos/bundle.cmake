# Zam.plugin: one loadable Mach-O bundle for each processor, joined, with its property resource, and signed last.
find_program(ZAM_LIPO NAMES lipo llvm-lipo llvm-lipo-14 REQUIRED DOC "Joins the code for several processors")
find_program(ZAM_CODESIGN NAMES codesign DOC "Signs bundles; a Mac has it")

# The names of exports.map as the linker wants them, with the underscore that C names have there.
file(STRINGS exports.map names REGEX "^ +[A-Za-z0-9]+;$")
list(TRANSFORM names REPLACE "^ +([A-Za-z0-9]+);$" "_\\1")
list(JOIN names "\n" names)
set(exports ${CMAKE_CURRENT_BINARY_DIR}/exports.txt)
file(CONFIGURE OUTPUT ${exports} CONTENT "${names}\n")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS exports.map)

foreach(processor x86_64 arm64)
    zam_row_targets(${processor} targets)
    zam_effect_objects(zam_effect_${processor} ${targets})
    add_library(Zam_${processor} MODULE $<TARGET_OBJECTS:zam_effect_${processor}>)
    target_link_libraries(Zam_${processor} PRIVATE zam_hostapi "-framework CoreServices")
    target_link_options(Zam_${processor} PRIVATE LINKER:-exported_symbols_list,${exports})
    set_target_properties(zam_effect_${processor} Zam_${processor} PROPERTIES OSX_ARCHITECTURES ${processor})
    set_target_properties(Zam_${processor} PROPERTIES PREFIX "" SUFFIX "" LINK_DEPENDS ${exports})
    list(APPEND code $<TARGET_FILE:Zam_${processor}>)
endforeach()

set(ZAM_BUNDLE_ID "zam.effect" CACHE STRING "The bundle's identifier: a name in a domain of whoever gives it out")
set(bundle ${PROJECT_BINARY_DIR}/Zam.plugin)
configure_file(macos/Info.plist.in Info.plist @ONLY)
file(CONFIGURE OUTPUT PkgInfo CONTENT "eFKTFXTC")
if(ZAM_CODESIGN)
    set(sign COMMAND ${ZAM_CODESIGN} --force --sign - ${bundle})
else()
    message(STATUS "No codesign here: the bundle is left without a seal, and has to be signed on a Mac")
endif()
add_custom_command(OUTPUT ${bundle}/Contents/MacOS/Zam
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${bundle}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${bundle}/Contents/MacOS ${bundle}/Contents/Resources
    COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_CURRENT_BINARY_DIR}/Info.plist ${CMAKE_CURRENT_BINARY_DIR}/PkgInfo
                                     ${bundle}/Contents
    COMMAND ${CMAKE_COMMAND} -E copy ${ZAM_MACOS_RESOURCE} ${bundle}/Contents/Resources/Zam.rsrc
    COMMAND ${ZAM_LIPO} -create ${code} -output ${bundle}/Contents/MacOS/Zam
    ${sign}
    DEPENDS Zam_x86_64 Zam_arm64 zam_property_resources ${ZAM_MACOS_RESOURCE} ${CMAKE_CURRENT_BINARY_DIR}/Info.plist
            ${CMAKE_CURRENT_BINARY_DIR}/PkgInfo
    VERBATIM)
add_custom_target(Zam ALL DEPENDS ${bundle}/Contents/MacOS/Zam)
