# The example converter plug-in as a user meets it: the tool discovers it in PLUGINS,
# lists its format, converts the bundled gust log SAMPLE through it, and reads the result back.
include(${CMAKE_CURRENT_LIST_DIR}/support/plugin_run.cmake)

# Discovery: one row, named for the library's locale from the manifest.
expect_run(0 "\ncsv\tComma-separated values\n(.*\n)?gust\tGust log\n(.*\n)?json\tJSON\n" "^$" formats)
expect_run(0 "\ngust\tBöen-Protokoll\n" "^$" --locale de_DE formats)

# Conversion through the plug-in, and the reading commands on its result.
set(_result "${SCRATCH}/pier_wind.mgjson")
convert_and_describe("${SAMPLE}" "${_result}" "6 nodes, 3 sample sets, 16 samples")
expect_json_rows("${JSON}"
  "org.palvex.example.gustlog|file creator"
  "utc|timing kind"
  "2024-05-04T06:30:00.000Z|timing timeOrigin"
  "North Pier|outline 0 children 0 value"
  "12.5|outline 0 children 1 value"
  "windSpeed|outline 1 sampleSetID"
  "7|outline 1 sampleCount"
  "hold|outline 2 interpolation"
  "0.0|outline 2 properties numberStringProperties range legal min"
  "360.0|outline 2 properties numberStringProperties range legal max"
  "paddedString|outline 3 dataType"
  "2|outline 3 sampleCount")
expect_run(0 "^2024-05-04T06:30:02\\.500Z\t07\\.25\n2024-05-04T06:30:03\\.000Z\t04\\.40\n$" "^$"
  samples --from 2.5 "${_result}" "[1]")
expect_run(0 "^2024-05-04T06:30:01\\.000Z\tgust\n2024-05-04T06:30:02\\.500Z\tsquall line passing\n$" "^$"
  samples "${_result}" "[3]")
# Opening the log itself converts it on the fly, from a path that is not ASCII as well
# (the plug-in receives UTF-8 and must open it as such on Windows too).
file(COPY_FILE "${SAMPLE}" "${SCRATCH}/jetée_北.gust")
expect_run(0 "\\[0\\]\\[0\\] static \"Name\" \\(name\\): string = \"North Pier\"\n" "^$" info "${SCRATCH}/jetée_北.gust")

# Failures: the plug-in's own codes, "nothing to convert", and the library refusing a
# start time it cannot read; the converter is named in every message.
set(_header "GUSTLOG 1 station=\"Test\" start=2024-05-04T06:30:00Z\n")
expect_failed_conversions(gust "Gust log with id org\\.palvex\\.example\\.gustlog"
  "bad_number|${_header}0.0 3.2 270\n0.5 fast 272\n|3103"
  "bad_direction|${_header}0.0 3.2 400\n|3103"
  "too_many_decimals|${_header}0.0001 3.2 270\n|3103"
  "backwards|${_header}1.0 3.2 270\n0.5 3.3 271\n|3104"
  "no_readings|${_header}# the logger stopped at once\n|1506"
  "unreadable_start|GUSTLOG 1 station=\"Test\" start=yesterday\n0 1 1\n|2029")
# A header the plug-in's own check refuses leaves the file to the other converters.
file(WRITE "${SCRATCH}/version2.gust" "GUSTLOG 2 station=\"Test\" start=2024-05-04T06:30:00Z\n0 1 1\n")
expect_run(0 "\"creator\":\"com\\.corvane\\.sensor\\.csv\"" "^$" convert "${SCRATCH}/version2.gust")
file(REMOVE_RECURSE "${SCRATCH}")
