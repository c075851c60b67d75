# The timed CSV plug-in as a user meets it: the tool finds it in PLUGINS, converts the
# bundled logger export EXAMPLES/logger.csv, reads the result back, leaves files without a
# time column to the built-in converter, and reports bad rows with the plug-in's codes.
# SCRATCH is a folder the checks may fill and remove.
set(TOOL_OPTIONS --plugins ${PLUGINS})
include(${CMAKE_CURRENT_LIST_DIR}/../../support/expect_run.cmake)

file(REMOVE_RECURSE "${SCRATCH}")
file(MAKE_DIRECTORY "${SCRATCH}")

set(_result "${SCRATCH}/logger.mgjson")
expect_run(0 "^$" "^$" convert -o "${_result}" "${EXAMPLES}/logger.csv")
expect_run(0 "^ok: schema version 2, 5 nodes, 5 sample sets, 404 samples\n$" "^$" validate "${_result}")
expect_run(0 "" "^$" info --json "${_result}")
set(_json "${LAST_OUT}")
expect_json("${_json}" "org.palvex.timedcsv" file creator)
expect_json("${_json}" "ON" timing isGMT)
expect_json("${_json}" "2024-05-01T08:00:00.000Z" timing timeOrigin)
expect_json("${_json}" "Temperature [°C]" outline 0 displayName)
expect_json("${_json}" "98" outline 1 sampleCount)
expect_json("${_json}" "1013.2" outline 2 properties numberStringProperties range occurring max)
expect_json("${_json}" "paddedString" outline 4 dataType)
expect_json("${_json}" "hold" outline 4 interpolation)
expect_run(0 "^2024-05-01T08:06:00\\.000Z\tdoor opened\n2024-05-01T08:10:00\\.000Z\tdoor closed\n$" "^$"
  samples --from 300 --to 600 "${_result}" "[4]")

# A tab-separated copy converts the same; a header without a time column stays with the
# built-in converter.
file(READ "${EXAMPLES}/logger.csv" _text)
string(REPLACE "," "\t" _text "${_text}")
file(WRITE "${SCRATCH}/logger.tsv" "${_text}")
expect_run(0 "\"creator\":\"org\\.palvex\\.timedcsv\"" "^$" convert "${SCRATCH}/logger.tsv")
expect_run(0 "\"creator\":\"com\\.corvane\\.sensor\\.csv\"" "^$" convert "${EXAMPLES}/bike_ride.csv")

# Bad rows: the plug-in's code, named by the host; nothing to convert: 1506.
set(_failure "Conversion to MGJSON using converter Timed CSV with id org\\.palvex\\.timedcsv failed\\.\n$")
foreach(_case
    "not_a_number|time,x\n0,1\n1,n/a\n|3305"
    "bad_time|time,x\n0,1\nlater,2\n|3303"
    "mixed_zones|time,x\n2024-05-01T00:00:00Z,1\n2024-05-01T00:00:01,2\n|3304"
    "no_values|time,x\n0,\n1,\n|1506")
  string(REPLACE "|" ";" _case "${_case}")
  list(GET _case 0 _name)
  list(GET _case 1 _text)
  list(GET _case 2 _code)
  file(WRITE "${SCRATCH}/${_name}.csv" "${_text}")
  expect_run(1 "^$" "^palvex: error ${_code}: ${_failure}" convert -o "${SCRATCH}/${_name}.mgjson" "${SCRATCH}/${_name}.csv")
  if(EXISTS "${SCRATCH}/${_name}.mgjson")
    message(FATAL_ERROR "a failed conversion left ${_name}.mgjson behind")
  endif()
endforeach()
file(REMOVE_RECURSE "${SCRATCH}")
