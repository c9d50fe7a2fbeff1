# What is installed besides the program, and the Debian package that `./dev package` builds.
include(GNUInstallDirs)
# Only the program is packed: nothing else has to be built for it.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)
install(FILES docs/man/tessaran.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
# The pages as `./dev docs` leaves them; the window's Help menu opens them.
install(DIRECTORY build/docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} OPTIONAL
        FILES_MATCHING PATTERN "*.html" PATTERN "*.png")
if(TESSARAN_DESKTOP)
  install(FILES packaging/tessaran.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES packaging/tessaran-mime.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages
          RENAME tessaran.xml)
  set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
  install(FILES packaging/icons/tessaran.svg DESTINATION ${icons}/scalable/apps)
  install(FILES packaging/icons/tessaran-file.svg DESTINATION ${icons}/scalable/mimetypes)
  foreach(size 32 48 128 256)
    install(FILES packaging/icons/tessaran-${size}.png DESTINATION ${icons}/${size}x${size}/apps
            RENAME tessaran.png)
  endforeach()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tessaran)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGE_CONTACT "The Tessaran developers <tessaran@example.org>")
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "shared-mime-info, xdg-utils")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_PREFIX /usr)
include(CPack)
