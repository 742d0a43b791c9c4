# The install rules, in three components: console, simulator, development.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# ---- Console ----

if(KOVA_CONSOLE)
  set(KOVA_SHIPPED kova-console)
  if(KOVA_STATIC)
    set(KOVA_SHIPPED kova-console-static)
  endif()
  install(TARGETS ${KOVA_SHIPPED} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT console)
  install(PROGRAMS health/kova-health.sh DESTINATION ${CMAKE_INSTALL_BINDIR} RENAME kova-health COMPONENT console)
  install(FILES health/health.txt DESTINATION ${CMAKE_INSTALL_DATADIR}/kova-console COMPONENT console)
  install(FILES docs/kova-console.1 docs/kova-health.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT console)
  install(FILES CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT console)
endif()

# ---- Simulator, where the console is not static: nothing can be preloaded under a static program ----

if(KOVA_CONSOLE AND NOT KOVA_STATIC)
  set(KOVA_PRELOAD_DIR ${CMAKE_INSTALL_FULL_LIBDIR}/kova-console)
  file(RELATIVE_PATH KOVA_BIN_TO_PRELOAD ${CMAKE_INSTALL_FULL_BINDIR} ${KOVA_PRELOAD_DIR}/libkova-sim.so)
  configure_file(sim/kova-console-sim.in kova-console-sim @ONLY)
  install(TARGETS kova-sim LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/kova-console COMPONENT simulator)
  install(PROGRAMS ${PROJECT_BINARY_DIR}/kova-console-sim DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT simulator)
  install(FILES docs/kova-console-sim.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT simulator)
endif()

# ---- Development: an application includes kova/api.h, hdmitx/hdmitx.h and edid/edid.h, which include the others ----

# Other projects have headers of the same names, so these are in a folder of their own.
set(KOVA_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/kova-console)
install(FILES app/device.h DESTINATION ${KOVA_INCLUDEDIR}/app COMPONENT development)
install(FILES edid/MDDC.h edid/edid.h DESTINATION ${KOVA_INCLUDEDIR}/edid COMPONENT development)
install(FILES hdmitx/hdmitx.h hdmitx/hdmitx_i2c.h hdmitx/vmtables.h
  DESTINATION ${KOVA_INCLUDEDIR}/hdmitx COMPONENT development)
foreach(topic api csc deinterlacer filters formats input_port irq mainapp memory output_port regs scaler status version
    video_process windows)
  install(FILES kova/${topic}.h DESTINATION ${KOVA_INCLUDEDIR}/kova COMPONENT development)
endforeach()
cmake_path(GET CMAKE_INSTALL_DOCDIR PARENT_PATH KOVA_DOCDIR)
install(FILES examples/CMakeLists.txt examples/transmitter.cpp
  DESTINATION ${KOVA_DOCDIR}/libkova-dev/examples COMPONENT development)

target_include_directories(kova INTERFACE $<INSTALL_INTERFACE:${KOVA_INCLUDEDIR}>)
install(TARGETS kova EXPORT kova ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
# CMake does not strip static libraries. So libkova.a is stripped here, which makes the file much smaller.
install(CODE "if(CMAKE_INSTALL_DO_STRIP)
  set(library \"${CMAKE_INSTALL_LIBDIR}/libkova.a\")
  cmake_path(ABSOLUTE_PATH library BASE_DIRECTORY \"\${CMAKE_INSTALL_PREFIX}\")
  execute_process(COMMAND \"${CMAKE_STRIP}\" --strip-debug --enable-deterministic-archives
    \"\$ENV{DESTDIR}\${library}\" COMMAND_ERROR_IS_FATAL ANY)
endif()" COMPONENT development)

set(KOVA_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/kova)
install(EXPORT kova NAMESPACE kova:: FILE kovaConfig.cmake DESTINATION ${KOVA_CMAKEDIR} COMPONENT development)
write_basic_package_version_file(kovaConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/kovaConfigVersion.cmake DESTINATION ${KOVA_CMAKEDIR} COMPONENT development)

# kova.pc names the prefix. The prefix is known only at installation, since cmake --install has the option --prefix.
install(CODE "
set(PROJECT_VERSION ${PROJECT_VERSION})
set(KOVA_INCLUDEDIR \"${KOVA_INCLUDEDIR}\")
set(KOVA_LIBDIR \"${CMAKE_INSTALL_LIBDIR}\")
configure_file(\"${PROJECT_SOURCE_DIR}/cmake/kova.pc.in\" \"${PROJECT_BINARY_DIR}/kova.pc\" @ONLY)" COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/kova.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
