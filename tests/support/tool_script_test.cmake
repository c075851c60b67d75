# add_tool_script_test(NAME SCRIPT [-DNAME=VALUE...]) runs SCRIPT against the built tool as
# the test NAME. The script gets PALVEX, EMULATOR (a list, with "|" in place of ";") and
# SCRATCH, a folder in the build tree named after the test, then the given definitions.
include_guard(GLOBAL)
function(add_tool_script_test name script)
  string(REPLACE ";" "|" _emulator "${CMAKE_CROSSCOMPILING_EMULATOR}")
  add_test(NAME ${name}
    COMMAND ${CMAKE_COMMAND} -DPALVEX=$<TARGET_FILE:palvex_cli> "-DEMULATOR=${_emulator}"
            -DSCRATCH=${CMAKE_CURRENT_BINARY_DIR}/${name}_files ${ARGN} -P ${script})
endfunction()

# add_plugin_script_test(NAME SCRIPT [-DNAME=VALUE...]): the same, with PLUGINS naming the
# folder the build puts the plug-ins in.
function(add_plugin_script_test name script)
  add_tool_script_test(${name} ${script} -DPLUGINS=${CMAKE_BINARY_DIR}/plugins ${ARGN})
endfunction()
