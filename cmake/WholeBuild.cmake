# How a build from scratch, as new users and continuous integration make it, takes a third of the
# time: common headers are precompiled, and several sources are compiled at a time, so that headers
# and templates are read once for all of them. A compiler cache keeps single sources, and clang-tidy
# reads such, without what another compiler made of headers; with either, and where single sources are
# worked on (preset debug), each is compiled by itself.
#
# Sources of one library that are compiled together share their unnamed namespaces.

if(CMAKE_CXX_COMPILER_LAUNCHER OR CMAKE_CXX_CLANG_TIDY)
  set(_default OFF)
else()
  set(_default ON)
endif()
option(QUIRAVENT_WHOLE_BUILD "Compile for building all at once" ${_default})
set(CMAKE_UNITY_BUILD ${QUIRAVENT_WHOLE_BUILD})
# So many that a library of many sources still keeps two processors busy; programs of tests and the
# module are compiled as one.
set(CMAKE_UNITY_BUILD_BATCH_SIZE 16)
