# What is installed, and the Debian packages that carry it: one for each program, with its man page. scripts/package
# makes them in build/packages/.

include(GNUInstallDirs)

set(PACKAGING_DIR ${CMAKE_SOURCE_DIR}/packaging)
set(PACKAGED_PROGRAMS qndr5ctl qndr5rwsyncd)
if(QNDR_WINDOW)
  list(APPEND PACKAGED_PROGRAMS qndr5rwsync)
endif()

# The newest entry of the packages' changelog is the version that is built.
file(STRINGS ${PACKAGING_DIR}/changelog NEWEST_ENTRY LIMIT_COUNT 1)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PACKAGING_DIR}/changelog)
if(NOT NEWEST_ENTRY MATCHES "\\(${PROJECT_VERSION}\\)")
  message(FATAL_ERROR "packaging/changelog has no entry for ${PROJECT_VERSION}")
endif()

# packed(file): documents are installed packed, without a time stamp of their own
find_program(GZIP gzip REQUIRED)
function(packed file)
  cmake_path(GET file FILENAME name)
  set(result ${CMAKE_BINARY_DIR}/documents/${name}.gz)
  add_custom_command(OUTPUT ${result}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/documents
    COMMAND sh -c "'${GZIP}' -9 -n -c '${file}' >'${result}'"
    DEPENDS ${file} VERBATIM)
  set_property(DIRECTORY APPEND PROPERTY QNDR_DOCUMENTS ${result})
endfunction()

packed(${PACKAGING_DIR}/changelog)
foreach(program IN LISTS PACKAGED_PROGRAMS)
  packed(${CMAKE_SOURCE_DIR}/docs/man/${program}.1)
  install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${program})
  install(FILES ${CMAKE_BINARY_DIR}/documents/${program}.1.gz
          DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${program})
  install(FILES ${CMAKE_BINARY_DIR}/documents/changelog.gz
          DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${program} COMPONENT ${program})
  install(FILES ${CMAKE_SOURCE_DIR}/LICENSE RENAME copyright
          DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${program} COMPONENT ${program})
endforeach()
get_property(documents DIRECTORY PROPERTY QNDR_DOCUMENTS)
add_custom_target(documents ALL DEPENDS ${documents})

# Both agents need this package, so their users have it too.
install(FILES ${CMAKE_SOURCE_DIR}/docs/operations.md
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/qndr5ctl COMPONENT qndr5ctl)
install(FILES ${PACKAGING_DIR}/qndr5rwsyncd.service DESTINATION lib/systemd/user COMPONENT qndr5rwsyncd)
install(FILES ${PACKAGING_DIR}/qndr5rwsync.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT qndr5rwsync)
install(FILES ${PACKAGING_DIR}/qndr5rwsync-autostart.desktop RENAME qndr5rwsync.desktop
        DESTINATION /etc/xdg/autostart COMPONENT qndr5rwsync)
set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
install(FILES ${CMAKE_SOURCE_DIR}/src/window/icons/qndr5rwsync.svg
        DESTINATION ${icons}/scalable/apps COMPONENT qndr5rwsync)
foreach(size IN ITEMS 16 22 24 32 48 64 128 256)
  install(FILES ${CMAKE_SOURCE_DIR}/src/window/icons/${size}.png RENAME qndr5rwsync.png
          DESTINATION ${icons}/${size}x${size}/apps COMPONENT qndr5rwsync)
endforeach()

# A package is made of what was built; whoever runs cpack builds first, and only what the packages hold.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qndr5rwsync)
set(CPACK_PACKAGE_VENDOR "The qndr5rwsync developers")
# Reserved never to exist, so that nobody else gets what is meant for whoever builds the packages.
set(CPACK_PACKAGE_CONTACT "The qndr5rwsync developers <developers@qndr5rwsync.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL ${PACKAGED_PROGRAMS})
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
foreach(program IN LISTS PACKAGED_PROGRAMS)
  string(TOUPPER ${program} component)
  set(CPACK_DEBIAN_${component}_PACKAGE_NAME ${program})
endforeach()

set(CPACK_DEBIAN_QNDR5CTL_DESCRIPTION
"administration of the QNDR roaming workstation sync
Creates, shows and compares companies, registers workstations, edits the
settings of the sync agent, looks into the Sync folder, and names what is
wrong with an exchange and what to do about it.")
set(CPACK_DEBIAN_QNDR5RWSYNCD_DESCRIPTION
"sync agent of roaming workstations, without a window
Keeps the companies of a main computer and its laptops alike through nothing
but one shared folder of addressed ZIP files.

This is the agent for computers that nobody sits at. It comes with a systemd
user unit, which runs for those users only who enable it.")
set(CPACK_DEBIAN_QNDR5RWSYNCD_PACKAGE_DEPENDS "qndr5ctl (= ${PROJECT_VERSION})")

set(CPACK_DEBIAN_QNDR5RWSYNC_DESCRIPTION
"sync agent of roaming workstations, with its window
Keeps the companies of a main computer and its laptops alike through nothing
but one shared folder of addressed ZIP files.

The agent starts when somebody logs in, lives behind a tray icon, and shows in
its window how far the exchange has come.")
set(CPACK_DEBIAN_QNDR5RWSYNC_PACKAGE_DEPENDS "qndr5ctl (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_QNDR5RWSYNC_PACKAGE_RECOMMENDS "hicolor-icon-theme, qt6-wayland, xdg-utils")
set(CPACK_DEBIAN_QNDR5RWSYNC_PACKAGE_CONTROL_EXTRA ${PACKAGING_DIR}/conffiles)

include(CPack)
