# How this project's own code is compiled.

set(KOVA_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

if(KOVA_SANITIZE)
  add_compile_options(-fsanitize=${KOVA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  # Static runtimes: the console can then run with the simulated board preloaded under it.
  if(KOVA_SANITIZE MATCHES "address")
    add_link_options(-fsanitize=${KOVA_SANITIZE} -static-libasan -static-libubsan)
  else()
    add_link_options(-fsanitize=${KOVA_SANITIZE} -static-libtsan)
  endif()
endif()

# Driver code: warnings are errors, no exceptions, no RTTI, includes written from the project's root.
function(kova_code target)
  target_compile_options(${target} PRIVATE ${KOVA_WARNINGS} -fno-exceptions -fno-rtti)
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endfunction()

# Takes the sanitizers off one target again.
function(kova_plain target)
  if(KOVA_SANITIZE)
    target_compile_options(${target} PRIVATE -fno-sanitize=all)
    target_link_options(${target} PRIVATE -fno-sanitize=all)
  endif()
endfunction()
