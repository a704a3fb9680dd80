# What "cmake --install" puts where, below one prefix that may be moved as a whole: programs and libraries find one
# another, and the help, by their place beside each other (host/Program.h).

install(TARGETS bdc bdcsim bdc_module BCNGen
  RUNTIME DESTINATION bin
  LIBRARY DESTINATION lib)
set_target_properties(bdc bdcsim bdc_module BCNGen PROPERTIES INSTALL_RPATH "$ORIGIN/../lib")

install(DIRECTORY ${PROJECT_BINARY_DIR}/share/bdc/help DESTINATION share/bdc)
install(FILES packaging/bdc.desktop DESTINATION share/applications)
install(FILES module/icons/svg/console.svg DESTINATION share/icons/hicolor/scalable/apps RENAME bdc.svg)
