# yfw_precompile_for(TARGET ...): what nearly every library includes is parsed once for all of these, which takes a
# quarter off the time of a unit with AddressSanitizer and half with ThreadSanitizer. A missing #include goes unnoticed
# where this is done, so only builds with sanitizers do it (YFW_PCH). Code with the fuzzer's counters has headers of
# its own: they are part of what must be the same.
function(yfw_precompile_for)
  if(NOT YFW_PCH)
    return()
  endif()
  foreach(headers library_headers library_headers_counted)
    add_library(${headers} OBJECT ${CMAKE_SOURCE_DIR}/tools/library_headers.cpp)
    target_link_libraries(${headers} PRIVATE PkgConfig::LIBYANG)
    target_precompile_headers(${headers} PRIVATE ${CMAKE_SOURCE_DIR}/tools/library_headers.h)
    # So that ccache can keep what includes them.
    target_compile_options(${headers} PRIVATE
      "$<$<AND:$<BOOL:${YFW_CCACHE}>,$<CXX_COMPILER_ID:Clang>>:SHELL:-Xclang -fno-pch-timestamp>")
  endforeach()
  yfw_counts_for_fuzzer(library_headers_counted)
  get_property(counted GLOBAL PROPERTY YFW_COUNTED)
  foreach(target IN LISTS ARGN)
    if(target IN_LIST counted)
      target_precompile_headers(${target} REUSE_FROM library_headers_counted)
    else()
      target_precompile_headers(${target} REUSE_FROM library_headers)
    endif()
  endforeach()
endfunction()
