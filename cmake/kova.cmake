# How this project's own code is compiled.

# ./check switches it on in its build folders; somebody else's compiler may warn of more.
option(KOVA_WERROR "Warnings are errors" OFF)

set(KOVA_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(KOVA_WERROR)
  list(APPEND KOVA_WARNINGS -Werror)
endif()

if(KOVA_SANITIZE)
  # -Og: nothing is optimised away before it is checked, and it builds in half the time.
  add_compile_options(-Og -fsanitize=${KOVA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KOVA_SANITIZE})
  # Static runtimes: the console can then run with the simulated board preloaded under it. clang's are static anyway.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    if(KOVA_SANITIZE MATCHES "address")
      add_link_options(-static-libasan -static-libubsan)
    else()
      add_link_options(-static-libtsan)
    endif()
  endif()
endif()

set(KOVA_LINK)
set(KOVA_SIZE)
if(KOVA_SMALL)
  list(APPEND KOVA_LINK -Wl,--gc-sections)
  set(KOVA_SIZE -Os -ffunction-sections -fdata-sections -fno-unwind-tables -fno-asynchronous-unwind-tables)
endif()
# The same program wherever it is built: no name of that folder in a file, and no checksum of the debug information,
# which may hold one even so.
set(KOVA_PLACE -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=.)
list(APPEND KOVA_LINK -Wl,--build-id=none)

# Driver code: no exceptions, no RTTI, includes written from the project's root.
function(kova_code target)
  target_compile_options(${target} PRIVATE ${KOVA_WARNINGS} ${KOVA_SIZE} ${KOVA_PLACE} -fno-exceptions -fno-rtti)
  target_link_options(${target} PRIVATE ${KOVA_LINK})
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endfunction()

# Takes the sanitizers off one target again.
function(kova_plain target)
  if(KOVA_SANITIZE)
    target_compile_options(${target} PRIVATE -fno-sanitize=all)
    target_link_options(${target} PRIVATE -fno-sanitize=all)
  endif()
endfunction()
