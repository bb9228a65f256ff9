# One archive for each platform: what a user copies, how to, and the licences. `make package` builds them.
if(WIN32)
    set(platform windows)
    set(newlines CRLF)
    set(CPACK_GENERATOR ZIP)
    # Of what is linked statically, runtime included: the packages whose licences go along.
    set(licences libcli11-dev nlohmann-json3-dev libxxhash-dev libpng-dev libz-mingw-w64-dev 
        gcc-mingw-w64-base mingw-w64-x86-64-dev)
else()
    set(platform linux)
    set(newlines UNIX)
    set(CPACK_GENERATOR TGZ)
    set(licences libcli11-dev nlohmann-json3-dev libxxhash-dev)
endif()

install(TARGETS Zam LIBRARY DESTINATION .)
install(TARGETS zam_cli RUNTIME DESTINATION .)
configure_file(${PROJECT_SOURCE_DIR}/packaging/INSTALL-${platform}.txt ${PROJECT_BINARY_DIR}/INSTALL.txt @ONLY
               NEWLINE_STYLE ${newlines})
install(FILES ${PROJECT_BINARY_DIR}/INSTALL.txt DESTINATION .)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION licences RENAME Zam.txt)
foreach(package ${licences})
    install(FILES /usr/share/doc/${package}/copyright DESTINATION licences RENAME ${package}.txt)
endforeach()
# The manual, with what it leads to in the same places.
foreach(name manual presets output scene-format gltf)
    install(FILES ${PROJECT_SOURCE_DIR}/docs/${name}.md DESTINATION docs)
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/docs/composition.schema.json DESTINATION docs)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/manual DESTINATION docs)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/images/manual DESTINATION docs/images)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/presets DESTINATION .)

set(CPACK_PACKAGE_FILE_NAME zam-${PROJECT_VERSION}-${platform}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/packages)
set(CPACK_STRIP_FILES ON)
include(CPack)
