# The console for a board with any C library: the object files of kova-console, linked statically.
add_executable(kova-console-static $<TARGET_OBJECTS:kova-console>)
set_target_properties(kova-console-static PROPERTIES
  LINKER_LANGUAGE CXX
  OUTPUT_NAME kova-console
  RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/static)
target_link_libraries(kova-console-static PRIVATE kova-app)
target_link_options(kova-console-static PRIVATE ${KOVA_LINK} -static)

# The same with the simulated board in it, for the tests: nothing can be preloaded under a static program.
add_executable(kova-console-static-sim $<TARGET_OBJECTS:kova-console>)
set_target_properties(kova-console-static-sim PROPERTIES LINKER_LANGUAGE CXX)
target_link_libraries(kova-console-static-sim PRIVATE kova-app kova-board)
target_link_options(kova-console-static-sim PRIVATE ${KOVA_LINK} -static)
