# Headers that most sources include, read once instead of for each in a whole build. Every source still
# names what it needs; other builds, such as that of npm run lint, show it.

set(QUIRAVENT_COMMON_HEADERS
  <algorithm> <array> <atomic> <chrono> <cmath> <condition_variable> <cstdint> <cstdlib> <cstring>
  <deque> <filesystem> <functional> <map> <memory> <mutex> <optional> <set> <string> <string_view>
  <thread> <utility> <variant> <vector>)

# Makes the target that holds the headers of libraries (kind LIBRARY) or of programs (EXECUTABLE):
# these are compiled with other options.
function(quiravent_precompile_headers name kind)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "int main() { return 0; }\n")
  if(kind STREQUAL "LIBRARY")
    add_library(${name} OBJECT ${source})
  else()
    add_executable(${name} EXCLUDE_FROM_ALL ${source})
  endif()
  target_link_libraries(${name} PRIVATE quiravent_build)
  target_precompile_headers(${name} PRIVATE ${QUIRAVENT_COMMON_HEADERS} ${ARGN})
endfunction()

# A source with options of its own can't use what was compiled with others.
function(_quiravent_spare_sources target)
  get_target_property(sources ${target} SOURCES)
  get_target_property(directory ${target} SOURCE_DIR)
  foreach(source IN LISTS sources)
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${directory})
    get_source_file_property(options ${source} TARGET_DIRECTORY ${target} COMPILE_OPTIONS)
    if(options)
      set_source_files_properties(${source} TARGET_DIRECTORY ${target}
        PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
    endif()
  endforeach()
endfunction()

# Lets all targets of some types in a folder and those below it use the headers that another holds.
function(quiravent_use_precompiled_headers holder folder)
  get_property(folders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
  foreach(below IN LISTS folders)
    quiravent_use_precompiled_headers(${holder} ${below} ${ARGN})
  endforeach()
  get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    get_target_property(type ${target} TYPE)
    if(type IN_LIST ARGN)
      _quiravent_spare_sources(${target})
      target_precompile_headers(${target} REUSE_FROM ${holder})
    endif()
  endforeach()
endfunction()
