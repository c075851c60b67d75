# The FIT plug-in as a user meets it: the tool finds it in PLUGINS, converts the bundled
# ride SAMPLE through it and reads the result back; damaged copies fail with the plug-in's
# own codes. MAKE_FIT writes damaged copies of the example.
include(${CMAKE_CURRENT_LIST_DIR}/../../support/plugin_run.cmake)

expect_run(0 "\nfit\tFIT activity\n" "^$" formats)

set(_result "${SCRATCH}/ride.mgjson")
convert_and_describe("${SAMPLE}" "${_result}" "25 nodes, 9 sample sets, 2700 samples")
expect_json_rows("${JSON}"
  "org.palvex.fit|file creator"
  "utc|timing kind"
  "2024-01-15T10:30:00Z|timing timeOrigin"
  "Device|outline 0 displayName"
  "Palvex test unit|outline 0 children 2 value"
  "Session 1|outline 1 displayName"
  "cycling|outline 1 children 0 value"
  "Headwind [m/s]|outline 1 children 15 displayName"
  "300|outline 1 children 15 sampleCount"
  "-90.0|outline 1 children 7 properties numberStringProperties range legal min")
# Heart rate, read back through the library: the first two records' values.
expect_run(0 "^2024-01-15T10:30:00Z\t130\n2024-01-15T10:30:01Z\t130\n$" "^$"
  samples --to 1 "${_result}" "[1][10]")

# Damage, end to end: the plug-in's own codes reach the user with the converter's name.
foreach(_case "flipped|3604" "cut|3605" "unchained|3602")
  string(REPLACE "|" ";" _case "${_case}")
  list(GET _case 0 _name)
  list(GET _case 1 _code)
  execute_process(COMMAND ${_emulator} ${MAKE_FIT} "${SCRATCH}/${_name}.fit" ${_name} RESULT_VARIABLE _status)
  if(NOT _status EQUAL 0)
    message(FATAL_ERROR "make_example_fit ${_name}: status ${_status}")
  endif()
  expect_failed_conversion("${SCRATCH}/${_name}.fit" ${_code} "FIT activity with id org\\.palvex\\.fit")
endforeach()
file(REMOVE_RECURSE "${SCRATCH}")
