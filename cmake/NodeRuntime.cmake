# The script runtime whose headers add-ons are built against: target quiravent_runtime (headers of
# the runtime and of Nan), and quiravent_addon(name SOURCES...), which makes name.node.
#
# The headers are those of the runtime that builds (<prefix>/include/node), or NODE_HEADERS.

set(NODE_HEADERS "" CACHE PATH "Folder that holds node.h; empty: ask the installed node")
set(NAN_HEADERS "${CMAKE_SOURCE_DIR}/node_modules/nan" CACHE PATH "Folder that holds nan.h")

if(NOT NODE_HEADERS)
  execute_process(
    COMMAND node ${CMAKE_SOURCE_DIR}/tools/node-headers.js
    OUTPUT_VARIABLE _headers OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE _status)
  if(NOT _status EQUAL 0)
    message(FATAL_ERROR "No headers of the script runtime were found; run 'npm run setup' first, "
                        "or name their folder with -DNODE_HEADERS=DIR.")
  endif()
  set(NODE_HEADERS ${_headers} CACHE PATH "Folder that holds node.h" FORCE)
endif()
if(NOT EXISTS ${NAN_HEADERS}/nan.h)
  message(FATAL_ERROR "No nan.h in ${NAN_HEADERS}; run 'npm run setup' first.")
endif()

file(STRINGS ${NODE_HEADERS}/node_version.h _abi REGEX "^#define NODE_MODULE_VERSION +[0-9]+")
string(REGEX REPLACE ".*NODE_MODULE_VERSION +([0-9]+).*" "\\1" QUIRAVENT_NODE_ABI "${_abi}")

add_library(quiravent_runtime INTERFACE)
# As system headers, since their warnings are not ours to mend.
target_include_directories(quiravent_runtime SYSTEM INTERFACE ${NODE_HEADERS} ${NAN_HEADERS})
# From module interface 127 (runtime 22) on the headers use C++20.
if(QUIRAVENT_NODE_ABI GREATER_EQUAL 127)
  target_compile_features(quiravent_runtime INTERFACE cxx_std_20)
endif()

function(quiravent_addon name)
  add_library(${name} MODULE ${ARGN})
  set_target_properties(${name} PROPERTIES PREFIX "" SUFFIX ".node")
  target_link_libraries(${name} PRIVATE quiravent_build quiravent_runtime)
endfunction()
