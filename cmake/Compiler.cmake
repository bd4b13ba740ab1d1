# One place for the language level, warnings and sanitizers that every target of ours is built with.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Assertions stay on in every build: those of the wrapper library are part of the behaviour.
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -g1")
set(CMAKE_CXX_FLAGS_MINSIZEREL "-Os")
set(CMAKE_CXX_FLAGS_DEBUG "-Og -g")

add_library(quiravent_build INTERFACE)
target_compile_options(quiravent_build INTERFACE
  -Wall -Wextra -Wpedantic -Werror -ffunction-sections -fdata-sections)
target_link_options(quiravent_build INTERFACE -Wl,--gc-sections)
if(QUIRAVENT_SANITIZE)
  # Lines are all that reports name, and a fifth of the time to compile is saved.
  set(CMAKE_CXX_FLAGS_DEBUG "-Og -g1")
  add_compile_options(-fsanitize=${QUIRAVENT_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=undefined)
  if(QUIRAVENT_SANITIZE MATCHES address)
    # Reports an access through a null pointer anyway. The checks of pointers take a fifth of the time
    # to compile; the preset of the thread sanitizer has them.
    add_compile_options(-fno-sanitize=null,alignment)
  endif()
  add_link_options(-fsanitize=${QUIRAVENT_SANITIZE})
endif()

# Compiles what is made in this folder and those below it for tests. What that does takes little of
# their time, but being compiled takes half of a build's; and it is the device's and the module's code
# that is to be looked at for undefined behaviour, which takes a third more.
macro(quiravent_compile_for_tests)
  add_compile_options($<$<CONFIG:Release>:-Og>)
  if(QUIRAVENT_SANITIZE)
    add_compile_options(-fno-sanitize=undefined)
  endif()
endmacro()
