# Files that are compiled apart in a unity build (YFW_UNITY), because they have names in common with another file of
# their target. If such a build reports a name that is defined twice, rename one of the two, or add a file here.
if(NOT YFW_UNITY)
  return()
endif()

# yfw_compile_apart(TARGET FILE ...)
function(yfw_compile_apart target)
  if(TARGET ${target})
    get_target_property(directory ${target} SOURCE_DIR)
    list(TRANSFORM ARGN PREPEND ${directory}/)
    set_source_files_properties(${ARGN} TARGET_DIRECTORY ${target} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  endif()
endfunction()

# The files of a plug-in mirror one another, with the same names.
# host: programs that only read documents link some of its files without the platform that others call.
# netconf_server_test, gnmi_test: tables of the same form, with the same names.
foreach(target oclldp ocextra oclldp_double host netconf_server_test gnmi_test)
  if(TARGET ${target})
    set_target_properties(${target} PROPERTIES UNITY_BUILD OFF)
  endif()
endforeach()

yfw_compile_apart(commits store_format.cpp)
yfw_compile_apart(netconf_filters xpath_tokens.cpp)
yfw_compile_apart(pictures topology_text.cpp)
yfw_compile_apart(sources lldpd/wanted_settings.cpp)
yfw_compile_apart(xml element_stream.cpp)

yfw_compile_apart(access_test nacm_fixture.cpp nacm_read_test.cpp nacm_test.cpp nacm_write_test.cpp)
yfw_compile_apart(base_test process_test.cpp run_program_test.cpp)
yfw_compile_apart(commits_test killed_upgrade_test.cpp)
yfw_compile_apart(device_test drift_test.cpp edit_commit_test.cpp suspended_settings_test.cpp)
yfw_compile_apart(host_test
  engine_passes_test.cpp engine_sequence_test.cpp entry_index_test.cpp native_selection_test.cpp node_hierarchy_test.cpp
  several_mappings_test.cpp)
yfw_compile_apart(ocextra_test response_test.cpp)
yfw_compile_apart(oclldp_test
  conversions_test.cpp ifmgr_levels_test.cpp ifmgr_lookup_test.cpp ifmgr_walker_test.cpp null_arguments_test.cpp
  oc_container_walker_test.cpp oc_list_entries_test.cpp oper_neighbor_test.cpp oq_interface_delete_test.cpp
  oq_interface_edit_test.cpp oq_interface_name_test.cpp oq_neighbor_request_test.cpp oq_state_test.cpp
  oq_suppress_tlv_test.cpp)
yfw_compile_apart(sources_test empty_texts_test.cpp wire_limits_test.cpp wanted_settings_test.cpp)
yfw_compile_apart(lldpd_test netconf_core_lldp_test.cpp)
yfw_compile_apart(whole_test read_properties_test.cpp)
yfw_compile_apart(yang_test tree_text_test.cpp)
