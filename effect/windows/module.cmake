# Zam.aex: the names of exports.map as this linker wants them, and the property resource. The C++ runtime is linked
# statically, so that no DLL is needed; here an exception finds its way out of the module by the system's own unwinder.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${exports})
file(READ ${exports} map)
string(REGEX MATCH "global:(.*)local:" map "${map}")
string(REGEX MATCHALL "[A-Za-z0-9_]+" names "${CMAKE_MATCH_1}")
list(JOIN names "\n" names)
set(definitions ${CMAKE_CURRENT_BINARY_DIR}/Zam.def)
file(CONFIGURE OUTPUT ${definitions} CONTENT "EXPORTS\n${names}\n" @ONLY)

target_sources(Zam PRIVATE ${definitions} ${ZAM_WINDOWS_RESOURCE})
set_target_properties(Zam PROPERTIES SUFFIX .aex)
