# The console, and the simulated board. The console runs on the simulated board where no real board is available.
find_package(Threads REQUIRED)

# Everything of the console but its main function.
add_library(kova-app STATIC app/control_loop.cpp app/shell.cpp)
kova_code(kova-app)
target_link_libraries(kova-app PUBLIC kova Threads::Threads)

add_executable(kova-console app/main.cpp)
kova_code(kova-console)
target_link_libraries(kova-console PRIVATE kova-app)

# The simulated board is built twice: linked into tests, and as a library to preload under the unchanged console.
file(GLOB SIM_SOURCES CONFIGURE_DEPENDS sim/*.cpp)
add_library(kova-board OBJECT ${SIM_SOURCES})
kova_code(kova-board)
target_link_libraries(kova-board PUBLIC Threads::Threads)
# The thread sanitizer must not see the board's lock. Otherwise the sanitizer would assume that this lock orders the
# console's threads, and would miss data races.
if(KOVA_SANITIZE STREQUAL "thread")
  kova_plain(kova-board)
endif()

add_library(kova-sim SHARED ${SIM_SOURCES})
kova_code(kova-sim)
target_link_libraries(kova-sim PRIVATE Threads::Threads)
# A preloaded library is loaded before any sanitizer runtime, so it is built without sanitizers.
kova_plain(kova-sim)

if(KOVA_STATIC)
  # The static console runs on a board with any C library. Nothing can be preloaded under a static program, so a second
  # one contains the simulated board, for the tests. Both have the object files of kova-console.
  foreach(program kova-console-static kova-console-static-sim)
    add_executable(${program} $<TARGET_OBJECTS:kova-console>)
    set_target_properties(${program} PROPERTIES LINKER_LANGUAGE CXX)
    target_link_libraries(${program} PRIVATE kova-app)
    target_link_options(${program} PRIVATE ${KOVA_LINK} -static)
  endforeach()
  target_link_libraries(kova-console-static-sim PRIVATE kova-board)
  set_target_properties(kova-console-static PROPERTIES
    OUTPUT_NAME kova-console
    RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/static)
endif()
