# The console, and the simulated board that it runs on where there is none.
find_package(Threads REQUIRED)

# The console but for main.
add_library(kova-app STATIC app/control_loop.cpp app/shell.cpp)
kova_code(kova-app)
target_link_libraries(kova-app PUBLIC kova Threads::Threads)

add_executable(kova-console app/main.cpp)
kova_code(kova-console)
target_link_libraries(kova-console PRIVATE kova-app)

# The simulated board, twice: linked into tests, and as a library to preload under the unchanged console.
set(SIM_SOURCES
  sim/audio.cpp
  sim/board.cpp
  sim/builtin_edid.cpp
  sim/clock.cpp
  sim/journal.cpp
  sim/libc.cpp
  sim/script.cpp
  sim/transmitter.cpp
  sim/video.cpp)
add_library(kova-board OBJECT ${SIM_SOURCES})
kova_code(kova-board)
target_link_libraries(kova-board PUBLIC Threads::Threads)
# The board's lock must not order the threads that the sanitizer watches.
if(KOVA_SANITIZE STREQUAL "thread")
  kova_plain(kova-board)
endif()

add_library(kova-sim SHARED ${SIM_SOURCES})
kova_code(kova-sim)
target_link_libraries(kova-sim PRIVATE Threads::Threads)
# A preloaded library comes before any sanitizer runtime, so it stays plain.
kova_plain(kova-sim)

if(KOVA_STATIC)
  include(cmake/static.cmake)
endif()
