# Runs the C walk host on the bundled examples and checks what it prints.
# PALVEX is the host program, EMULATOR (optional, "|" between its words) what runs it,
# EXAMPLES the examples folder.
include(${CMAKE_CURRENT_LIST_DIR}/../../tests/support/expect_run.cmake)
set(_run "${EXAMPLES}/run_v2_utc.mgjson")
set(_flight "${EXAMPLES}/flight_v1_timecode.mgjson")

# The whole outline in order, then the first dynamic node's whole set: three samples take
# two pages, so the second page must carry on at the third sample.
expect_run(0 "^\\[0\\] group \"Runner\" \\(runner\\)
  \\[0\\]\\[0\\] static \"Name\" \\(name\\)
  \\[0\\]\\[1\\] static \"Resting heart rate\" \\(restingHeartRate\\)
  \\[0\\]\\[2\\] static \"Shoe size \\(EU, UK\\)\" \\(shoeSizes\\)
  \\[0\\]\\[3\\] static \"Race pace\" \\(racePace\\)
\\[1\\] group \"Sensors\" \\(sensors\\)
  \\[1\\]\\[0\\] dynamic \"Heart rate\" \\(heartRate\\)
  \\[1\\]\\[1\\] dynamic \"Position\" \\(position\\)
  \\[1\\]\\[2\\] dynamic \"Lap marker\" \\(lap\\)
samples of \"heartRate\" from 0/1 s to 2/1 s:
  #0 2024-05-04T06:30:00.000Z \\(0/1 s\\) \\+112
  #1 2024-05-04T06:30:01.000Z \\(1/1 s\\) \\+118
  #2 2024-05-04T06:30:02.000Z \\(2/1 s\\) \\+121
3 of 3 samples
$" "^$" "${_run}")

# A group inside a group, and timecode times counted from 00:00:00:00 at 30000/1001 frames.
expect_run(0 "
  \\[1\\]\\[1\\] group \"Navigation\" \\(navigation\\)
    \\[1\\]\\[1\\]\\[0\\] dynamic \"Position\" \\(position\\)
    \\[1\\]\\[1\\]\\[1\\] dynamic \"Flight phase\" \\(phase\\)
samples of \"altitudeSet\" from 107999892/30000 s to 108002895/30000 s:
  #0 01:00:00:00 \\(107999892/30000 s\\) \\+00120\\.0
.*  #3 01:00:00:03 \\(108002895/30000 s\\) \\+00131\\.5
4 of 4 samples
$" "^$" "${_flight}")

# Times from the command line; start after end runs backwards, and a full last page is
# followed by an empty one, which is no error.
expect_run(0 "samples of \"heartRate\" from 4/2 s to 1/1 s:
  #0 2024-05-04T06:30:02.000Z \\(2/1 s\\) \\+121 \\[descending\\]
  #1 2024-05-04T06:30:01.000Z \\(1/1 s\\) \\+118 \\[descending\\]
2 of 3 samples
$" "^$" "${_run}" 4/2 1)

# Errors arrive through the host's callback, once each, and end the program with status 1.
expect_run(1 "samples of \"heartRate\" from 5/1 s to 6/1 s:\n$"
  "^error 21: Unable to fetch dynamic samples for SampleId:\"heartRate\"\\.\n$" "${_run}" 5 6)
expect_run(1 "^$" "^error 4: File not exist at input path:.*missing\\.mgjson\\.\n$" "${EXAMPLES}/missing.mgjson")
expect_run(2 "^$" "^usage: walk_host" "${_run}" 1/x 2)
