# What people install, in three components: console, simulator, development.
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

# ---- Simulator: nothing can be preloaded under a static console ----

if(KOVA_CONSOLE AND NOT KOVA_STATIC)
  set(KOVA_PRELOAD_DIR ${CMAKE_INSTALL_FULL_LIBDIR}/kova-console)
  file(RELATIVE_PATH KOVA_BIN_TO_PRELOAD ${CMAKE_INSTALL_FULL_BINDIR} ${KOVA_PRELOAD_DIR}/libkova-sim.so)
  configure_file(sim/kova-console-sim.in kova-console-sim @ONLY)
  install(TARGETS kova-sim LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/kova-console COMPONENT simulator)
  install(PROGRAMS ${PROJECT_BINARY_DIR}/kova-console-sim DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT simulator)
  install(FILES docs/kova-console-sim.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT simulator)
endif()

# ---- Development: an application includes kova/api.h, hdmitx/hdmitx.h and edid/edid.h; the others are their parts ----

set(KOVA_PUBLIC_HEADERS
  app/device.h
  edid/MDDC.h
  edid/edid.h
  hdmitx/hdmitx.h
  hdmitx/hdmitx_i2c.h
  hdmitx/vmtables.h
  kova/api.h
  kova/csc.h
  kova/deinterlacer.h
  kova/filters.h
  kova/formats.h
  kova/input_port.h
  kova/irq.h
  kova/mainapp.h
  kova/memory.h
  kova/output_port.h
  kova/regs.h
  kova/scaler.h
  kova/status.h
  kova/version.h
  kova/video_process.h
  kova/windows.h)
# A folder of the project's own: its parts have names that others use too.
set(KOVA_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/kova-console)
foreach(header IN LISTS KOVA_PUBLIC_HEADERS)
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${header} DESTINATION ${KOVA_INCLUDEDIR}/${folder} COMPONENT development)
endforeach()
cmake_path(GET CMAKE_INSTALL_DOCDIR PARENT_PATH KOVA_DOCDIR)
install(FILES examples/CMakeLists.txt examples/transmitter.cpp
  DESTINATION ${KOVA_DOCDIR}/libkova-dev/examples COMPONENT development)

target_include_directories(kova INTERFACE $<INSTALL_INTERFACE:${KOVA_INCLUDEDIR}>)
install(TARGETS kova EXPORT kova ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
# Stripping leaves libraries like this one alone, debug information and all.
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

# kova.pc names the prefix, which is known at the installation: cmake --install takes another one by --prefix.
set(KOVA_PC_INCLUDEDIR "\\\${prefix}")
cmake_path(APPEND KOVA_PC_INCLUDEDIR ${KOVA_INCLUDEDIR})
set(KOVA_PC_LIBDIR "\\\${prefix}")
cmake_path(APPEND KOVA_PC_LIBDIR ${CMAKE_INSTALL_LIBDIR})
install(CODE "
set(PROJECT_VERSION ${PROJECT_VERSION})
set(KOVA_PC_INCLUDEDIR \"${KOVA_PC_INCLUDEDIR}\")
set(KOVA_PC_LIBDIR \"${KOVA_PC_LIBDIR}\")
configure_file(\"${PROJECT_SOURCE_DIR}/cmake/kova.pc.in\" \"${PROJECT_BINARY_DIR}/kova.pc\" @ONLY)" COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/kova.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
