# The drone telemetry subtitle plug-in as a user meets it: the tool finds it in PLUGINS,
# converts the bundled examples EXAMPLES/drone_*.srt, reads the results back, leaves
# ordinary subtitles alone and reports broken blocks with the plug-in's codes.
include(${CMAKE_CURRENT_LIST_DIR}/../../support/plugin_run.cmake)
expect_run(0 "\nsrt\tDrone telemetry subtitles\n" "^$" formats)

# Bracketed pairs with a date line: local times of an unknown zone.
set(_result "${SCRATCH}/bracketed.mgjson")
convert_and_describe("${EXAMPLES}/drone_bracketed.srt" "${_result}" "13 nodes, 13 sample sets, 390 samples")
expect_json_rows("${JSON}"
  "org.palvex.srttelemetry|file creator"
  "OFF|timing isGMT"
  "2024-05-01T12:34:56.789+00:00|timing timeOrigin"
  "Latitude [deg]|outline 9 displayName"
  "-90.0|outline 9 properties numberStringProperties range legal min"
  "hold|outline 7 interpolation")
expect_run(0 "^2024-05-01T12:34:56\\.789\\+00:00\t0\\.0015625\n" "^$" samples "${_result}" "[3]")
expect_run(0 "^2024-05-01T12:34:56\\.789\\+00:00\t2\\.8\n" "^$" samples "${_result}" "[4]")

# The older layout: GPS(...), BAROMETER and HOME(...) with a date line.
set(_result "${SCRATCH}/legacy.mgjson")
expect_run(0 "^$" "^$" convert -o "${_result}" "${EXAMPLES}/drone_legacy.srt")
expect_run(0 "^ok: schema version 2, 6 nodes, 6 sample sets, 180 samples\n$" "^$" validate "${_result}")
expect_run(0 "\\[5\\] dynamic \"Barometric altitude \\[m\\]\" \\(barometricAltitude\\)" "^$" info "${_result}")
expect_run(0 "^2019-08-14T16:20:32\\.000\\+00:00\t13\\.1\n$" "^$" samples --from 1 --to 1 "${_result}" "[5]")

# Ordinary subtitles are not telemetry: the plug-in declines them (and the built-in CSV
# converter, which takes anything, ends up with them); broken blocks fail with the line.
file(WRITE "${SCRATCH}/film.srt" "1\n00:00:01,000 --> 00:00:02,000\nHello there.\n")
expect_run(0 "\"creator\":\"com\\.corvane\\.sensor\\.csv\"" "^$" convert "${SCRATCH}/film.srt")
set(_good "1\n00:00:00,000 --> 00:00:01,000\n[latitude: 47.5]\n\n")
file(WRITE "${SCRATCH}/broken.srt" "${_good}2\nsoon --> later\n[latitude: 1]\n")
expect_failed_conversion("${SCRATCH}/broken.srt" 3403 "Drone telemetry subtitles with id org\\.palvex\\.srttelemetry")
file(WRITE "${SCRATCH}/cut.srt" "${_good}2\n00:00:0")
expect_run(0 "\"sampleCount\":1" "^$" info --json "${SCRATCH}/cut.srt")
file(REMOVE_RECURSE "${SCRATCH}")
