# The opening of every script that runs the tool with plug-ins: the tool looks for them in
# PLUGINS, and SCRATCH starts empty (the script removes it when it is done). Brings in
# expect_run and expect_json, and the checks below.
set(TOOL_OPTIONS --plugins ${PLUGINS})
include(${CMAKE_CURRENT_LIST_DIR}/expect_run.cmake)
file(REMOVE_RECURSE "${SCRATCH}")
file(MAKE_DIRECTORY "${SCRATCH}")

# convert_and_describe(INPUT RESULT SUMMARY) converts INPUT to RESULT quietly, expects the
# validator to accept it with SUMMARY ("N nodes, N sample sets, N samples") and leaves the
# result's description (info --json) in JSON.
function(convert_and_describe input result summary)
  expect_run(0 "^$" "^$" convert -o "${result}" "${input}")
  expect_run(0 "^ok: schema version 2, ${summary}\n$" "^$" validate "${result}")
  expect_run(0 "" "^$" info --json "${result}")
  set(JSON "${LAST_OUT}" PARENT_SCOPE)
endfunction()

# expect_json_rows(JSON ROWS...) checks several values of one JSON text; each row is
# "expected|key or index ..." with the path's words separated by spaces.
function(expect_json_rows json)
  foreach(_row IN LISTS ARGN)
    string(FIND "${_row}" "|" _bar REVERSE)
    string(SUBSTRING "${_row}" 0 ${_bar} _expected)
    math(EXPR _bar "${_bar} + 1")
    string(SUBSTRING "${_row}" ${_bar} -1 _path)
    separate_arguments(_path UNIX_COMMAND "${_path}")
    expect_json("${json}" "${_expected}" ${_path})
  endforeach()
endfunction()

# expect_failed_conversion(INPUT CODE CONVERTER) expects converting INPUT to fail with the
# plug-in's CODE, named for CONVERTER ("<name> with id <id>", as a regular expression),
# and to leave no output behind.
function(expect_failed_conversion input code converter)
  get_filename_component(_output "${input}" NAME_WE)
  set(_output "${SCRATCH}/${_output}.mgjson")
  expect_run(1 "^$" "^palvex: error ${code}: Conversion to MGJSON using converter ${converter} failed\\.\n$"
    convert -o "${_output}" "${input}")
  if(EXISTS "${_output}")
    message(FATAL_ERROR "${input}: a failed conversion left its output")
  endif()
endfunction()

# expect_failed_conversions(EXTENSION CONVERTER ROWS...) writes each row "name|text|code"
# to SCRATCH/name.EXTENSION and expects its conversion to fail with the code.
function(expect_failed_conversions extension converter)
  foreach(_row IN LISTS ARGN)
    string(REPLACE "|" ";" _row "${_row}")
    list(GET _row 0 _name)
    list(GET _row 1 _text)
    list(GET _row 2 _code)
    file(WRITE "${SCRATCH}/${_name}.${extension}" "${_text}")
    expect_failed_conversion("${SCRATCH}/${_name}.${extension}" ${_code} "${converter}")
  endforeach()
endfunction()
