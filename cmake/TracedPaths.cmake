# Which paths an input takes through the code, for the fuzz targets: programs of libFuzzer, Clang's
# library, but built from the same objects as the sanitized tests. GCC has each block of code call a
# function, __sanitizer_cov_trace_pc; the fuzz targets count there, all other programs do nothing.

if(QUIRAVENT_FUZZ)
  add_library(untraced_paths STATIC ${CMAKE_SOURCE_DIR}/test/fuzz/native/untracedPaths.cpp)
  target_link_libraries(untraced_paths PRIVATE quiravent_build)
endif()

# Traces what is built in this folder and those below it, from here on.
macro(quiravent_trace_paths)
  if(QUIRAVENT_FUZZ)
    add_compile_options(-fsanitize-coverage=trace-pc,trace-cmp)
    link_libraries(untraced_paths)
  endif()
endmacro()
