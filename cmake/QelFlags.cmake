# Warning and sanitizer flags for every target of the project, in one place.
# No -ffast-math: its rules break infinities, NaNs and the far tails.

add_library(qel_flags INTERFACE)
target_compile_options(qel_flags INTERFACE -Wall -Wextra -Wpedantic)

option(QEL_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)
if(QEL_WARNINGS_AS_ERRORS)
  target_compile_options(qel_flags INTERFACE -Werror)
endif()

option(QEL_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
if(QEL_SANITIZE)
  target_compile_options(qel_flags INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined
    -fno-omit-frame-pointer)
  target_link_options(qel_flags INTERFACE -fsanitize=address,undefined)
endif()

# Sources of a folder, for the small per-module CMake lists.
function(qel_glob_sources out dir)
  file(GLOB _srcs CONFIGURE_DEPENDS "${dir}/*.cpp")
  set(${out} ${_srcs} PARENT_SCOPE)
endfunction()
