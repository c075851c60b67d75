# The example converter plug-in as a user meets it: the tool discovers it in PLUGINS,
# lists its format, converts the bundled gust log SAMPLE through it, and reads the result
# back. SCRATCH is a folder the checks may fill and remove. EMULATOR, when set, runs the
# program ("|" separates its words); line ends are compared without carriage returns.
set(TOOL_OPTIONS --plugins ${PLUGINS})
include(${CMAKE_CURRENT_LIST_DIR}/support/expect_run.cmake)

file(REMOVE_RECURSE "${SCRATCH}")
file(MAKE_DIRECTORY "${SCRATCH}")

# Discovery: one row, named for the library's locale from the manifest.
expect_run(0 "\ncsv\tComma-separated values\n(.*\n)?gust\tGust log\n(.*\n)?json\tJSON\n" "^$" formats)
expect_run(0 "\ngust\tBöen-Protokoll\n" "^$" --locale de_DE formats)

# Conversion through the plug-in, and the reading commands on its result.
set(_result "${SCRATCH}/pier_wind.mgjson")
expect_run(0 "^$" "^$" convert -o "${_result}" "${SAMPLE}")
expect_run(0 "^ok: schema version 2, 6 nodes, 3 sample sets, 16 samples\n$" "^$" validate "${_result}")
expect_run(0 "" "^$" info --json "${_result}")
set(_json "${LAST_OUT}")
expect_json("${_json}" "org.palvex.example.gustlog" file creator)
expect_json("${_json}" "utc" timing kind)
expect_json("${_json}" "2024-05-04T06:30:00.000Z" timing timeOrigin)
expect_json("${_json}" "North Pier" outline 0 children 0 value)
expect_json("${_json}" "12.5" outline 0 children 1 value)
expect_json("${_json}" "windSpeed" outline 1 sampleSetID)
expect_json("${_json}" "7" outline 1 sampleCount)
expect_json("${_json}" "hold" outline 2 interpolation)
expect_json("${_json}" "0.0" outline 2 properties numberStringProperties range legal min)
expect_json("${_json}" "360.0" outline 2 properties numberStringProperties range legal max)
expect_json("${_json}" "paddedString" outline 3 dataType)
expect_json("${_json}" "2" outline 3 sampleCount)
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
set(_failure "Conversion to MGJSON using converter Gust log with id org.palvex\\.example\\.gustlog failed\\.\n$")
foreach(_case
    "bad_number|${_header}0.0 3.2 270\n0.5 fast 272\n|3103"
    "bad_direction|${_header}0.0 3.2 400\n|3103"
    "too_many_decimals|${_header}0.0001 3.2 270\n|3103"
    "backwards|${_header}1.0 3.2 270\n0.5 3.3 271\n|3104"
    "no_readings|${_header}# the logger stopped at once\n|1506"
    "unreadable_start|GUSTLOG 1 station=\"Test\" start=yesterday\n0 1 1\n|2029")
  string(REPLACE "|" ";" _case "${_case}")
  list(GET _case 0 _name)
  list(GET _case 1 _text)
  list(GET _case 2 _code)
  file(WRITE "${SCRATCH}/${_name}.gust" "${_text}")
  expect_run(1 "^$" "^palvex: error ${_code}: ${_failure}" convert -o "${SCRATCH}/${_name}.mgjson" "${SCRATCH}/${_name}.gust")
endforeach()
# A header the plug-in's own check refuses leaves the file to the other converters.
file(WRITE "${SCRATCH}/version2.gust" "GUSTLOG 2 station=\"Test\" start=2024-05-04T06:30:00Z\n0 1 1\n")
expect_run(0 "\"creator\":\"com\\.corvane\\.sensor\\.csv\"" "^$" convert "${SCRATCH}/version2.gust")
file(REMOVE_RECURSE "${SCRATCH}")
