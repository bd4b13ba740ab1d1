# quiravent_soname(VARIABLE LIBRARY): the name by which programs find a shared library, for one that
# is opened at run time.
function(quiravent_soname variable library)
  execute_process(COMMAND ${CMAKE_READELF} -d ${library}
    OUTPUT_VARIABLE entries ERROR_VARIABLE error RESULT_VARIABLE status)
  if(NOT status EQUAL 0 OR NOT entries MATCHES "SONAME[^\n]*\\[([^]]+)\\]")
    message(FATAL_ERROR "${library} isn't a shared library with a name (readelf -d): ${error}")
  endif()
  set(${variable} ${CMAKE_MATCH_1} PARENT_SCOPE)
endfunction()
