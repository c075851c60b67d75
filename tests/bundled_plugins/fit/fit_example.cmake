# The FIT plug-in as a user meets it: the tool finds it in PLUGINS, converts the bundled
# ride SAMPLE through it and reads the result back; damaged copies fail with the plug-in's
# own codes. SCRATCH is a folder the checks may fill and remove. EMULATOR, when set, runs
# the program ("|" separates its words); MAKE_FIT writes damaged copies of the example.
set(TOOL_OPTIONS --plugins ${PLUGINS})
include(${CMAKE_CURRENT_LIST_DIR}/../../support/expect_run.cmake)

file(REMOVE_RECURSE "${SCRATCH}")
file(MAKE_DIRECTORY "${SCRATCH}")

expect_run(0 "\nfit\tFIT activity\n" "^$" formats)

set(_result "${SCRATCH}/ride.mgjson")
expect_run(0 "^$" "^$" convert -o "${_result}" "${SAMPLE}")
expect_run(0 "^ok: schema version 2, 25 nodes, 9 sample sets, 2700 samples\n$" "^$" validate "${_result}")
expect_run(0 "" "^$" info --json "${_result}")
set(_json "${LAST_OUT}")
expect_json("${_json}" "org.palvex.fit" file creator)
expect_json("${_json}" "utc" timing kind)
expect_json("${_json}" "2024-01-15T10:30:00Z" timing timeOrigin)
expect_json("${_json}" "Device" outline 0 displayName)
expect_json("${_json}" "Palvex test unit" outline 0 children 2 value)
expect_json("${_json}" "Session 1" outline 1 displayName)
expect_json("${_json}" "cycling" outline 1 children 0 value)
expect_json("${_json}" "Headwind [m/s]" outline 1 children 15 displayName)
expect_json("${_json}" "300" outline 1 children 15 sampleCount)
expect_json("${_json}" "-90.0" outline 1 children 7 properties numberStringProperties range legal min)
# Heart rate, read back through the library: the first two records' values.
expect_run(0 "^2024-01-15T10:30:00Z\t130\n2024-01-15T10:30:01Z\t130\n$" "^$"
  samples --to 1 "${_result}" "[1][10]")

# Damage, end to end: the plug-in's own codes reach the user with the converter's name.
set(_failure "Conversion to MGJSON using converter FIT activity with id org\\.palvex\\.fit failed\\.\n$")
foreach(_case "flipped|3604" "cut|3605" "unchained|3602")
  string(REPLACE "|" ";" _case "${_case}")
  list(GET _case 0 _name)
  list(GET _case 1 _code)
  execute_process(COMMAND ${_emulator} ${MAKE_FIT} "${SCRATCH}/${_name}.fit" ${_name} RESULT_VARIABLE _status)
  if(NOT _status EQUAL 0)
    message(FATAL_ERROR "make_example_fit ${_name}: status ${_status}")
  endif()
  expect_run(1 "^$" "^palvex: error ${_code}: ${_failure}" convert -o "${SCRATCH}/${_name}.mgjson" "${SCRATCH}/${_name}.fit")
endforeach()
file(REMOVE_RECURSE "${SCRATCH}")
