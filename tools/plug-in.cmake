# yfw_plug_in(TARGET): makes a shared library a mapping plug-in. It leaves the framework's operations undefined, links only
# the C library and exports what its headers mark. The description that a host reads, libTARGET.json, goes next to it, into
# the directory of plug-ins that the program loads: one for all of them, and nothing else is in it.
function(yfw_plug_in target)
  target_link_libraries(${target} PUBLIC mapping_contract)
  target_compile_options(${target} PRIVATE -fvisibility=hidden -fno-exceptions -fno-rtti
                         $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>
                         # This check would make the library export type information.
                         $<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=function>
                         -fno-optimize-sibling-calls)
  if(YFW_SANITIZE) # the tables of a C interface: casts, offsets, lengths
    target_compile_options(${target} PRIVATE -fsanitize=null,alignment,object-size)
  endif()
  target_link_options(${target} PRIVATE -Wl,--as-needed -Wl,-z,now)
  set_target_properties(${target} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/yfw)
  configure_file(lib${target}.json ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/yfw/lib${target}.json COPYONLY)
endfunction()
