# One archive for each platform: what a user copies, how to, the manual and the licences. `make package` builds them.
set(newlines UNIX)
set(CPACK_STRIP_FILES ON)
if(WIN32)
    set(platform windows)
    set(newlines CRLF)
    set(CPACK_GENERATOR ZIP)
    # Of what is linked statically, runtime included: the packages whose licences go along.
    set(licences libcli11-dev nlohmann-json3-dev libxxhash-dev libpng-dev libz-mingw-w64-dev
        gcc-mingw-w64-base mingw-w64-x86-64-dev)
elseif(APPLE)
    set(platform macos)
    set(CPACK_GENERATOR ZIP)
    set(licences "")
    set(CPACK_STRIP_FILES OFF)  # it would break the seal
else()
    set(platform linux)
    set(CPACK_GENERATOR TGZ)
    set(licences libcli11-dev nlohmann-json3-dev libxxhash-dev)
endif()

if(APPLE)
    set(processor universal)
    install(DIRECTORY ${PROJECT_BINARY_DIR}/Zam.plugin DESTINATION . USE_SOURCE_PERMISSIONS)
else()
    set(processor ${CMAKE_SYSTEM_PROCESSOR})
    install(TARGETS Zam LIBRARY DESTINATION .)
    install(TARGETS zam_cli RUNTIME DESTINATION .)
endif()
configure_file(${PROJECT_SOURCE_DIR}/packaging/INSTALL-${platform}.txt ${PROJECT_BINARY_DIR}/INSTALL.txt @ONLY
               NEWLINE_STYLE ${newlines})
install(FILES ${PROJECT_BINARY_DIR}/INSTALL.txt DESTINATION .)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION licences RENAME Zam.txt)
foreach(package ${licences})
    install(FILES /usr/share/doc/${package}/copyright DESTINATION licences RENAME ${package}.txt)
endforeach()

install(DIRECTORY ${PROJECT_SOURCE_DIR}/presets DESTINATION .)
# The manual, with what it leads to in the same places.
foreach(name manual.md presets.md output.md scene-format.md after-effects.md gltf.md composition.schema.json)
    install(FILES ${PROJECT_SOURCE_DIR}/docs/${name} DESTINATION docs)
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/tools/export-comp.jsx DESTINATION tools)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/manual DESTINATION docs)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/images/manual DESTINATION docs/images)

set(CPACK_PACKAGE_FILE_NAME zam-${PROJECT_VERSION}-${platform}-${processor})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/packages)
include(CPack)
