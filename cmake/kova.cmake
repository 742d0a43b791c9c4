# How the code of this project is compiled.

set(KOVA_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
# Only .ci/run sets this variable. A user's compiler may print other warnings, which must not stop the build.
if(DEFINED ENV{KOVA_WERROR})
  list(APPEND KOVA_WARNINGS -Werror)
endif()

if(KOVA_SANITIZE)
  # With -Og nothing is optimised away before it is checked.
  add_compile_options(-Og -fsanitize=${KOVA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KOVA_SANITIZE})
  # Static runtimes let the simulated board be preloaded under the console. clang always links its runtimes statically.
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
# The program is the same wherever it is built: no file holds the name of the build's folder. The build ID is left out,
# since it is a checksum of debug information, which may hold that name.
set(KOVA_PLACE -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=.)
list(APPEND KOVA_LINK -Wl,--build-id=none)

# Driver code has no exceptions and no RTTI. Its includes start from the project's root.
function(kova_code target)
  target_compile_options(${target} PRIVATE ${KOVA_WARNINGS} ${KOVA_SIZE} ${KOVA_PLACE} -fno-exceptions -fno-rtti)
  target_link_options(${target} PRIVATE ${KOVA_LINK})
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endfunction()

# Builds one target without the sanitizers.
function(kova_plain target)
  if(KOVA_SANITIZE)
    target_compile_options(${target} PRIVATE -fno-sanitize=all)
    target_link_options(${target} PRIVATE -fno-sanitize=all)
  endif()
endfunction()
