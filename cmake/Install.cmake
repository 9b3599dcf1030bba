# What `cmake --install` puts where, and the date of the version for those who show one.
include(GNUInstallDirs)

set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
file(STRINGS CHANGELOG.md VANTREL_RELEASE REGEX "^## ${PROJECT_VERSION} - " LIMIT_COUNT 1)
if(NOT VANTREL_RELEASE MATCHES " - ([0-9]+-[0-9]+-[0-9]+)$")
  message(FATAL_ERROR "CHANGELOG.md has no heading \"## ${PROJECT_VERSION} - YEAR-MONTH-DAY\"")
endif()
set(VANTREL_RELEASE_DATE ${CMAKE_MATCH_1})

set(programs vantrel vantrel-sizes vantrel-snapshot)
install(TARGETS ${programs} RUNTIME)

set(application com.vantrel.Vantrel)
configure_file(packaging/${application}.metainfo.xml.in ${application}.metainfo.xml @ONLY)
install(FILES packaging/${application}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES packaging/${application}.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
foreach(size IN LISTS VANTREL_ICON_SIZES)
  install(FILES ${VANTREL_ICON_FOLDER}/${size}.png RENAME ${application}.png
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${application}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

foreach(program IN LISTS programs)
  configure_file(packaging/man/${program}.1.in man/${program}.1 @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/man/${program}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()
