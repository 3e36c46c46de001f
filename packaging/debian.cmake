# A Debian package, by CPack: scripts/package.
set(TOLVENARY_MAINTAINER "The Tolvenary developers <maintainers@tolvenary.example>" CACHE STRING "Who answers for the package")
configure_file(debian/changelog.in debian/changelog @ONLY)
compressed(${CMAKE_CURRENT_BINARY_DIR}/debian/changelog changelog.Debian ${CMAKE_INSTALL_DOCDIR})
install(FILES debian/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES debian/lintian-overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME tolvenary)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tolvenary)
set(CPACK_PACKAGE_VENDOR "The Tolvenary developers")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${TOLVENARY_MAINTAINER})
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "mixes the microphone with all other sound for chat applications")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Tolvenary mixes the microphone with what every other program plays, and
plays the mix into a virtual device. A chat application uses that device as
its microphone, so that friends hear the speaker and the game, without added
delay. There are two sliders and one button.
.
It needs PipeWire. The virtual device is made by tolvenary-blackhole, for one
user or for all; installing this package makes none."
)
# The libraries are found by themselves; these are looked for only when the program runs.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
string(
  JOIN ", " CPACK_DEBIAN_PACKAGE_DEPENDS
  qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript qml6-module-qtquick qml6-module-qtquick-templates
  fonts-inter fonts-quicksand
  pipewire wireplumber
)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "pipewire-pulse, qt6-wayland, fonts-noto-mono")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/debian/postrm)
include(CPack)
