# The action-camera plug-in as a user meets it: the tool finds it in PLUGINS, converts the
# bundled example SAMPLE (a generated MP4 with a telemetry track and no video), and reads
# the result back.
include(${CMAKE_CURRENT_LIST_DIR}/../../support/plugin_run.cmake)

expect_run(0 "\nmp4\tAction-camera telemetry \\(GPMF\\)\n" "^$" formats)

set(_result "${SCRATCH}/action_cam.mgjson")
convert_and_describe("${SAMPLE}" "${_result}" "17 nodes, 10 sample sets, 63 samples")
expect_json_rows("${JSON}"
  "org.palvex.gpmf|file creator"
  "2024-01-15T10:29:59.999Z|timing timeOrigin"
  "ACTION CAM 1|outline 0 children 0 value"
  "2024-01-15T11:30:00|outline 0 children 2 value"
  "GPS (UTC)|outline 0 children 3 value"
  "Camera|outline 1 displayName"
  "Accelerometer [m/s²]|outline 1 children 0 displayName"
  "Z|outline 1 children 2 properties numberArrayProperties arrayDisplayNames 0"
  "-90.0|outline 1 children 5 properties numberStringProperties range legal min"
  "180.0|outline 1 children 6 properties numberStringProperties range legal max"
  "hold|outline 1 children 3 interpolation")
expect_run(0 "^2024-01-15T10:30:01\\.000Z\t4,-2,9\\.81\n2024-01-15T10:30:01\\.250Z\t5,-2\\.5,9\\.81\n$" "^$"
  samples --from 1.001 --to 1.251 "${_result}" "[1][0]")
expect_run(0 "^2024-01-15T10:29:59\\.999Z\t47\\.3769\n2024-01-15T10:30:00\\.499Z\t47\\.3770\n" "^$"
  samples "${_result}" "[1][5]")

# A later chapter beside the first joins it, with the time running on.
file(COPY_FILE "${SAMPLE}" "${SCRATCH}/GX010007.MP4")
file(COPY_FILE "${SAMPLE}" "${SCRATCH}/GX020007.MP4")
expect_run(0 "Chapters\" \\(chapters\\): number = 2\n.*24 samples.*\\(5\\.755 s\\)" "^$" info "${SCRATCH}/GX010007.MP4")
file(REMOVE_RECURSE "${SCRATCH}")
