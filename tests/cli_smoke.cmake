# The CLI's conventions: results on stdout, errors as one line on stderr, exit statuses.
# EMULATOR, when set, runs the program ("|" separates its words); line ends are compared
# without the carriage returns that Windows text output adds.
include(${CMAKE_CURRENT_LIST_DIR}/support/expect_run.cmake)

# Without --plugins the tool looks beside itself, where the build puts the example plug-in.
# The built-in rows in byte order; the plug-ins built beside the tool add theirs between.
expect_run(0 "(^|\n)bvh\tBiovision Hierarchy\n(.*\n)?csv\tComma-separated values\n(.*\n)?json\tJSON\nmgjson\tMotion Graphics JSON\n(.*\n)?tsv\tTab-separated values\ntxt\tTab-separated values\n$" "^$" formats)
expect_run(0 "^Unter dem Eingabepfad ist keine Datei vorhanden: /x\\.csv\\.\n$" "^$"
  --locale de_DE message "$$$/PXError/FileNotExist=File not exist at input path:^1." /x.csv)
expect_run(0 "^File not exist at input path:/x\\.csv\\.\n$" "^$"
  --locale xx_XX message "$$$/PXError/FileNotExist=File not exist at input path:^1." /x.csv)
expect_run(0 "usage: palvex" "^$" --help)
expect_run(0 "usage: palvex .*message KEY" "^$" message --help)
expect_run(2 "^$" "unknown command" frobnicate)
expect_run(2 "^$" "usage" message)
expect_run(2 "^$" "unknown option" --bogus formats)

# ---- Reading MGJSON files: info, samples, validate ----------------------------------------
# EXAMPLES is the bundled examples folder; SCRATCH a folder the checks may fill and remove.
set(_flight "${EXAMPLES}/flight_v1_timecode.mgjson")
set(_run "${EXAMPLES}/run_v2_utc.mgjson")

# Runs palvex, which must succeed, and puts its standard output in out_var.
function(capture_run out_var)
  execute_process(COMMAND ${_emulator} ${PALVEX} ${ARGN}
    RESULT_VARIABLE _status OUTPUT_VARIABLE _out ERROR_VARIABLE _err)
  if(NOT _status EQUAL 0)
    message(FATAL_ERROR "palvex ${ARGN}: status ${_status}\n${_out}${_err}")
  endif()
  set(${out_var} "${_out}" PARENT_SCOPE)
endfunction()

expect_run(0 "Timing    timecode, 30000/1001 frames per second, drop frame; seconds count from 00:00:00:00\n" "^$"
  info "${_flight}")
expect_run(0 "Outline\n  \\[0\\] group \"Aircraft\" \\(aircraft\\)\n    \\[0\\]\\[0\\] static \"Tail number\" \\(tailNumber\\): paddedString = \"PX-101\"\n" "^$"
  info "${_flight}")
expect_run(0 "      \\[1\\]\\[1\\]\\[1\\] dynamic \"Flight phase\" \\(phase\\): paddedString, sample set \"phaseSet\", hold, 2 samples, 01:00:00:00 " "^$"
  info "${_flight}")
expect_run(0 "Video sync\n  run_chest_cam.mp4  time 2024-05-04T06:30:00.000Z\n  run_handlebar_cam.mp4  frame 48\n" "^$"
  --locale fr_FR info "${_run}")

capture_run(_json info --json "${_run}")
expect_json("${_json}" "2024-05-04T06:30:00.000Z" timing timeOrigin)
expect_json("${_json}" "run_chest_cam.mp4" videoSyncTimeList 0 fileName)
expect_json("${_json}" "48" videoSyncTimeList 1 frameNumber)
expect_json("${_json}" "[1][1]" outline 1 children 1 path)
expect_json("${_json}" "dynamic" outline 1 children 1 type)
expect_json("${_json}" "numberStringArray" outline 1 children 1 dataType)
expect_json("${_json}" "position" outline 1 children 1 sampleSetID)
expect_json("${_json}" "linear" outline 1 children 1 interpolation)
expect_json("${_json}" "3" outline 1 children 1 sampleCount)
expect_json("${_json}" "Amelia" outline 0 children 0 value)
expect_json("${_json}" "OFF" outline 0 children 3 value)
expect_json("${_json}" "6.0" outline 0 children 2 value 1)
capture_run(_json info --json "${_flight}")
expect_json("${_json}" "01:00:00:00" videoSyncTimeList 0 timeString)
expect_json("${_json}" "hold" outline 1 children 1 children 1 interpolation)
expect_json("${_json}" "00:00:00:00" timing timeOrigin)

expect_run(0 "^01:00:00:00\ttaxi\n01:00:00:02\ttakeoff\n$" "^$" samples "${_flight}" "[1][1][1]")
expect_run(0 "^01:00:00:01\t\\+00123\\.8\n01:00:00:02\t\\+00127\\.6\n$" "^$"
  samples --from 3600 --to 3600.07 "${_flight}" "[1][0]")
expect_run(0 "^2024-05-04T06:30:01\\.000Z\t\\+051\\.5008,-000\\.1244\n2024-05-04T06:30:02\\.000Z\t\\+051\\.5009,-000\\.1242\n$" "^$"
  samples --from 1 "${_run}" "[\"sensors\"][1]")
expect_run(0 "^2024-05-04T06:30:00\\.000Z\t\\+112\n2024-05-04T06:30:01\\.000Z\t\\+118\n$" "^$"
  samples --from 1/1 --to 0 "${_run}" "[1][0]")

file(REMOVE_RECURSE "${SCRATCH}")
file(MAKE_DIRECTORY "${SCRATCH}")
file(WRITE "${SCRATCH}/escapes.mgjson" [=[{"version":"MGJSON2.0.0","dynamicSamplesPresentB":true,
"dynamicDataInfo":{"useTimecodeB":false,"utcInfo":{"precisionLength":3,"isGMT":true}},
"dataOutline":[{"objectType":"dataDynamic","displayName":"Note","matchName":"note","sampleSetID":"n",
"interpolation":"hold","hasExpectedFrequencyB":false,"sampleCount":1,"dataType":{"type":"paddedString",
"paddedStringProperties":{"maxLen":8,"maxDigitsInStrLength":1,"eventMarkerB":true}}}],
"dataDynamicSamples":[{"sampleSetID":"n","samples":[{"time":"2024-01-01T00:00:00.000Z","value":{"length":"7","str":"a\tb\\c\nd"}}]}]}
]=])
expect_run(0 "^2024-01-01T00:00:00\\.000Z\ta\\\\tb\\\\\\\\c\\\\nd\n$" "^$" samples "${SCRATCH}/escapes.mgjson" "[0]")
# The tables keep such a text whole: TSV escapes it as the lines do, CSV quotes it.
expect_run(0 "^time\tNote\n2024-01-01T00:00:00\\.000Z\ta\\\\tb\\\\\\\\c\\\\nd\n$" "^$"
  samples --format tsv "${SCRATCH}/escapes.mgjson" "[0]")
expect_run(0 "^time,Note\n2024-01-01T00:00:00\\.000Z,\"a\tb\\\\c\nd\"\n$" "^$"
  samples --format csv "${SCRATCH}/escapes.mgjson" "[0]")
file(READ "${SCRATCH}/escapes.mgjson" _quotes)
string(REPLACE [["maxLen":8]] [["maxLen":9]] _quotes "${_quotes}")
string(REPLACE [["length":"7","str":"a\tb\\c\nd"]] [["length":"8","str":"x \"y\", z"]] _quotes "${_quotes}")
file(WRITE "${SCRATCH}/quotes.mgjson" "${_quotes}")
expect_run(0 "^time,Note\n2024-01-01T00:00:00\\.000Z,\"x \"\"y\"\", z\"\n$" "^$"
  samples --format csv "${SCRATCH}/quotes.mgjson" "[0]")
# A display name that is not UTF-8 and a number string that is no number: the JSON stays
# valid, with U+FFFD and null in their places.
string(ASCII 255 _not_utf8)
string(ASCII 239 191 189 _replacement)  # U+FFFD in UTF-8
file(WRITE "${SCRATCH}/odd.mgjson" "{\"useTimecodeB\":true,\"timecodeInfo\":{\"frameRate\":{\"value\":25,\"scale\":1},\"dropFrame\":false},\"dataOutline\":[{\"objectType\":\"dataStatic\",\"displayName\":\"a${_not_utf8}b\",\"matchName\":\"odd\",\"dataType\":{\"type\":\"numberString\",\"numberStringProperties\":{\"pattern\":{\"isSigned\":true,\"digitsInteger\":2,\"digitsDecimal\":0},\"range\":{\"occurring\":{\"min\":0,\"max\":1},\"legal\":{\"min\":0,\"max\":1}}}},\"value\":\"x1\"}]}")
capture_run(_json info --json "${SCRATCH}/odd.mgjson")
expect_json("${_json}" "a${_replacement}b" outline 0 displayName)
string(JSON _type TYPE "${_json}" outline 0 value)
if(NOT _type STREQUAL "NULL")
  message(FATAL_ERROR "a number string that is no number: ${_type}, expected NULL")
endif()
# A path that is not ASCII reaches the library as the UTF-8 it was given, on Windows too
# (where a program's arguments come in the ANSI code page unless it declares UTF-8).
file(COPY_FILE "${_run}" "${SCRATCH}/café_日本.mgjson")
expect_run(0 "^ok: schema version 2, 9 nodes, 3 sample sets, 7 samples\n$" "^$" validate "${SCRATCH}/café_日本.mgjson")
expect_run(1 "^$" "^palvex: error 4: File not exist at input path:.*/ñandú\\.mgjson\\.\n$"
  validate "${SCRATCH}/ñandú.mgjson")
file(REMOVE_RECURSE "${SCRATCH}")

# ---- Converting: convert, and the reading commands on inputs they convert ------------------
file(MAKE_DIRECTORY "${SCRATCH}/out")
file(WRITE "${SCRATCH}/data.csv" "a,b\n1,x\n")
file(WRITE "${SCRATCH}/table.txt" "k\tv\n1,5\t2\n")
expect_run(0 "^ok: schema version 2, 4 nodes, 0 sample sets, 0 samples\n$" "^$" validate "${SCRATCH}/data.csv")
expect_run(0 "group \"b\" \\(data2\\)\n.*static \"b 0\" \\(data3\\): string = \"x\"" "^$" info "${SCRATCH}/data.csv")
expect_run(0 "^\\{\"version\":\"mgjson2\\.0\\.0\".*\"creator\":\"com\\.corvane\\.sensor\\.csv\"" "^$" convert "${SCRATCH}/data.csv")
expect_run(0 "^$" "^$" convert -o "${SCRATCH}/one.mgjson" "${SCRATCH}/table.txt")
expect_run(0 "Creator   com\\.corvane\\.sensor\\.tsv" "^$" info "${SCRATCH}/one.mgjson")
expect_run(0 "^$" "^$" convert -o "${SCRATCH}/out" "${SCRATCH}/data.csv" "${SCRATCH}/table.txt")
foreach(_placed data.mgjson table.mgjson)
  if(NOT EXISTS "${SCRATCH}/out/${_placed}")
    message(FATAL_ERROR "convert into a directory did not write ${_placed}")
  endif()
endforeach()
file(WRITE "${SCRATCH}/header.csv" "a,b\n")
expect_run(1 "^$" "^palvex: error 1506: File Cannot be converted\\.\n$" convert "${SCRATCH}/header.csv")
expect_run(1 "^$" "^palvex: error 4: File not exist at input path:.*/gone\\.csv\\.\n$" convert "${SCRATCH}/gone.csv")
expect_run(2 "^$" "existing directory" convert -o "${SCRATCH}/data.csv" "${SCRATCH}/data.csv" "${SCRATCH}/table.txt")
expect_run(2 "^$" "usage" convert)
# An empty plug-in folder leaves the built-in rows; a missing one is a warning, and the
# command goes on.
file(MAKE_DIRECTORY "${SCRATCH}/no-plugins")
expect_run(0 "^bvh\tBiovision Hierarchy\ncsv\tComma-separated values\njson\tJSON\nmgjson\tMotion Graphics JSON\ntsv\tTab-separated values\ntxt\tTab-separated values\n$" "^$" --plugins "${SCRATCH}/no-plugins" formats)
expect_run(0 "^bvh\t.*txt\tTab-separated values\n$" "^palvex: warning 16: [^\n]+\n$" --plugins "${SCRATCH}/gone" formats)
file(REMOVE_RECURSE "${SCRATCH}")

expect_run(0 "^ok: schema version 1, 9 nodes, 3 sample sets, 10 samples\n$" "^$" validate "${_flight}")
expect_run(0 "^ok: schema version 2, 9 nodes, 3 sample sets, 7 samples\n$" "^$" validate "${_run}")

# ---- Versions, --json and the sample formats ------------------------------------------------
expect_run(0 "^palvex [0-9]+\\.[0-9]+\\.[0-9]+\nlibrary ABI version 1\n$" "^$" --version)
expect_run(0 "  --version " "^$" --help)
# Every command's --help starts with the usage line its usage errors print.
foreach(_command convert formats info message samples validate)
  expect_run(0 "^usage: palvex \\[--locale LOCALE\\] \\[--plugins DIR\\] ${_command}[ \n]" "^$" ${_command} --help)
endforeach()
expect_run(2 "^$" "formats takes only --json" formats --jsn)

# The built-in rows alone, so that the first row is known.
capture_run(_text --plugins "${SCRATCH}/no-plugins" formats)
capture_run(_json --plugins "${SCRATCH}/no-plugins" formats --json)
string(JSON _count LENGTH "${_json}")
string(REGEX MATCHALL "\n" _lines "${_text}")
list(LENGTH _lines _lines)
if(NOT _count EQUAL _lines)
  message(FATAL_ERROR "formats --json: ${_count} formats, the text lists ${_lines}")
endif()
expect_json("${_json}" "bvh" 0 extension)
expect_json("${_json}" "Biovision Hierarchy" 0 description)

capture_run(_json validate --json "${_flight}")
expect_json("${_json}" "ON" ok)
expect_json("${_json}" "1" schemaVersion)
expect_json("${_json}" "9" nodes)
expect_json("${_json}" "3" sampleSets)
expect_json("${_json}" "10" samples)
expect_run(1 "^\\{\"ok\":false,\"errors\":\\[\\{\"code\":4,\"message\":\"File not exist at input path:[^\n]*\"\\}\\]\\}\n$"
  "^palvex: error 4: " validate --json "${EXAMPLES}/missing.mgjson")

# Components in their own columns, named by the array's display names.
expect_run(0 "^time\tLatitude\tLongitude\n2024-05-04T06:30:00\\.000Z\t\\+051\\.5007\t-000\\.1246\n" "^$"
  samples --format tsv "${_run}" "[\"sensors\"][1]")
expect_run(0 "^time,Latitude,Longitude\n.*\n2024-05-04T06:30:02\\.000Z,\\+051\\.5009,-000\\.1242\n$" "^$"
  samples --format csv "${_run}" "[\"sensors\"][1]")
capture_run(_json samples --format json --from 1 "${_run}" "[\"sensors\"][1]")
expect_json("${_json}" "2024-05-04T06:30:01.000Z" 0 time)
expect_json("${_json}" "-0.1244" 0 value 1)
string(JSON _count LENGTH "${_json}")
if(NOT _count EQUAL 2)
  message(FATAL_ERROR "samples --format json --from 1: ${_count} samples, expected 2")
endif()
capture_run(_json samples --format json "${_flight}" "[1][1][1]")
expect_json("${_json}" "takeoff" 1 value)
capture_run(_json samples --format json "${_flight}" "[1][0]")
string(JSON _type TYPE "${_json}" 0 value)
if(NOT _type STREQUAL "NUMBER")
  message(FATAL_ERROR "a number string sample in JSON: ${_type}, expected NUMBER")
endif()
# A query the library refuses leaves no half-written table or array behind.
foreach(_format tsv csv json)
  expect_run(1 "^$" "^palvex: error 21: " samples --format ${_format} --from 1 --to 2 "${_flight}" "[1][0]")
endforeach()
expect_run(1 "^$" "^palvex: error 4: File not exist at input path:${EXAMPLES}/missing\\.mgjson\\.\n$"
  validate "${EXAMPLES}/missing.mgjson")
expect_run(1 "^$" "^palvex: error 33: Dynamic data node not found at input path, Found node type: Static data node\\.\n$"
  samples "${_flight}" "[0][0]")
expect_run(1 "^$" "^palvex: error 21: Unable to fetch dynamic samples for SampleId:\"altitudeSet\"\\.\n$"
  samples --from 1 --to 2 "${_flight}" "[1][0]")
expect_run(1 "^$" "^palvex: error 23: " samples "${_flight}" "[x]")
expect_run(2 "^$" "not a time" samples --from soon "${_flight}" "[1][0]")
expect_run(2 "^$" "--format needs one of" samples --format xml "${_flight}" "[1][0]")
expect_run(2 "^$" "--format needs one of" samples "${_flight}" "[1][0]" --format)
expect_run(2 "^$" "usage" samples "${_flight}")
expect_run(2 "^$" "usage" info)
