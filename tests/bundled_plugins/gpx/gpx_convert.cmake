# The GPX plug-in as a user meets it: the tool finds it in PLUGINS, converts the bundled
# ride SAMPLE, and reads the result back; broken files fail with the plug-in's codes and
# leave nothing behind.
include(${CMAKE_CURRENT_LIST_DIR}/../../support/plugin_run.cmake)

expect_run(0 "\ngpx\tGPS track \\(GPX\\)\n" "^$" formats)
expect_run(0 "\ngpx\tGPS-Track \\(GPX\\)\n" "^$" --locale de_DE formats)

set(_result "${SCRATCH}/ride.mgjson")
convert_and_describe("${SAMPLE}" "${_result}" "19 nodes, 13 sample sets, 1080 samples")
expect_json_rows("${JSON}"
  "org.palvex.gpx|file creator"
  "utc|timing kind"
  "3|timing precisionLength"
  "ON|timing isGMT"
  "Brenlach loop|outline 0 displayName"
  "2024-06-15T07:30:00.000Z|outline 0 children 1 value"
  "835.0|outline 0 children 2 value"
  "Latitude [°]|outline 0 children 4 displayName"
  "120|outline 0 children 4 sampleCount"
  "-90.0|outline 0 children 4 properties numberStringProperties range legal min"
  "Speed [m/s]|outline 0 children 7 displayName"
  "118|outline 0 children 7 sampleCount"
  "hold|outline 0 children 8 interpolation"
  "360.0|outline 0 children 8 properties numberStringProperties range legal max"
  "Heart rate [bpm]|outline 0 children 10 displayName"
  "Temperature [°C]|outline 0 children 12 displayName"
  "Waypoints|outline 1 displayName")
# Millisecond times keep their digits; the distance waits at the bakery rather than jumping.
expect_run(0 "^2024-06-15T07:30:10\\.750Z\t46\\.812784\n" "^$" samples --from 10 "${_result}" "[0][4]")
expect_run(0 "^2024-06-15T07:35:35\\.500Z\t([0-9.]+)\n2024-06-15T07:39:40\\.000Z\t([0-9.]+)\n" "^$"
  samples --from 335 "${_result}" "[0][9]")
string(REGEX MATCHALL "\t[0-9.]+\n" _distances "${LAST_OUT}")
list(GET _distances 0 _before)
list(GET _distances 1 _after)
if(NOT _before STREQUAL _after)
  message(FATAL_ERROR "distance jumps across the gap: ${_before} -> ${_after}")
endif()
expect_run(0 "^2024-06-15T07:37:00\\.000Z\tBakery\n$" "^$" samples "${_result}" "[1][0]")

# Opening the ride itself converts it on the fly, from a path that is not ASCII and with
# an extension that is not the plug-in's (its check takes the file).
file(COPY_FILE "${SAMPLE}" "${SCRATCH}/fahrt_北.xml")
expect_run(0 "\\[0\\]\\[0\\] static \"Name\" \\(name\\): string = \"Brenlach loop\"\n" "^$" info "${SCRATCH}/fahrt_北.xml")

# Failures carry the plug-in's codes and leave no output behind.
file(READ "${SAMPLE}" _ride)
string(SUBSTRING "${_ride}" 0 5000 _truncated)
expect_failed_conversions(gpx "GPS track \\(GPX\\) with id org\\.palvex\\.gpx"
  "truncated|${_truncated}|3202"
  "empty_root|<gpx version=\"1.1\"/>|3207"
  "untimed|<gpx><trk><trkseg><trkpt lat=\"1\" lon=\"2\"/></trkseg></trk></gpx>|3207"
  "no_lat|<gpx><trk><trkseg><trkpt lon=\"2\"/></trkseg></trk></gpx>|3204"
  "bad_time|<gpx><trk><trkseg><trkpt lat=\"1\" lon=\"2\"><time>noon</time></trkpt></trkseg></trk></gpx>|3206")
# A file named .gpx that is not GPX goes on to the other converters.
file(WRITE "${SCRATCH}/table.gpx" "time,speed\n1,2\n2,3\n")
expect_run(0 "\"creator\":\"com\\.corvane\\.sensor\\.csv\"" "^$" convert "${SCRATCH}/table.gpx")
file(REMOVE_RECURSE "${SCRATCH}")
