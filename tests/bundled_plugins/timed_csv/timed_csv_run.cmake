# The timed CSV plug-in as a user meets it: the tool finds it in PLUGINS, converts the
# bundled logger export EXAMPLES/logger.csv, reads the result back, leaves files without a
# time column to the built-in converter, and reports bad rows with the plug-in's codes.
include(${CMAKE_CURRENT_LIST_DIR}/../../support/plugin_run.cmake)

set(_result "${SCRATCH}/logger.mgjson")
convert_and_describe("${EXAMPLES}/logger.csv" "${_result}" "5 nodes, 5 sample sets, 404 samples")
expect_json_rows("${JSON}"
  "org.palvex.timedcsv|file creator"
  "ON|timing isGMT"
  "2024-05-01T08:00:00.000Z|timing timeOrigin"
  "Temperature [°C]|outline 0 displayName"
  "98|outline 1 sampleCount"
  "1013.2|outline 2 properties numberStringProperties range occurring max"
  "paddedString|outline 4 dataType"
  "hold|outline 4 interpolation")
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
expect_failed_conversions(csv "Timed CSV with id org\\.palvex\\.timedcsv"
  "not_a_number|time,x\n0,1\n1,n/a\n|3305"
  "bad_time|time,x\n0,1\nlater,2\n|3303"
  "mixed_zones|time,x\n2024-05-01T00:00:00Z,1\n2024-05-01T00:00:01,2\n|3304"
  "no_values|time,x\n0,\n1,\n|1506")
file(REMOVE_RECURSE "${SCRATCH}")
