# palvex plot: the SVG it writes for bundled examples is well formed and holds the series
# and points expected; bad input gets an error line or the usage, and no picture.
# EXAMPLES is the bundled examples folder; SCRATCH a folder the checks may fill and remove.
include(${CMAKE_CURRENT_LIST_DIR}/support/expect_run.cmake)

# Fails unless svg is one well-formed SVG document: every tag closed or self-closing, the
# containers balanced, nothing but tags and text between them.
function(expect_well_formed svg what)
  string(REGEX REPLACE "^<\\?xml [^<>]*\\?>\n" "" _body "${svg}")
  string(REGEX MATCHALL "<svg " _roots "${_body}")
  list(LENGTH _roots _root_count)
  if(NOT _root_count EQUAL 1 OR NOT _body MATCHES "^<svg [^<>]*>\n" OR NOT _body MATCHES "</svg>\n$")
    message(FATAL_ERROR "${what}: not one <svg> root\n${svg}")
  endif()
  foreach(_element svg g text title)
    string(REGEX MATCHALL "<${_element}[ >]" _open "${_body}")
    string(REGEX MATCHALL "</${_element}>" _close "${_body}")
    list(LENGTH _open _open_count)
    list(LENGTH _close _close_count)
    if(NOT _open_count EQUAL _close_count)
      message(FATAL_ERROR "${what}: ${_open_count} <${_element}> but ${_close_count} </${_element}>")
    endif()
  endforeach()
  # With the tags gone (attribute values hold no < or >), no markup character may remain.
  string(REGEX REPLACE "</?[a-z]+( [A-Za-z0-9:-]+=\"[^\"<>]*\")*/?>" "" _text "${_body}")
  if(_text MATCHES "[<>]")
    message(FATAL_ERROR "${what}: stray markup: ${_text}")
  endif()
endfunction()

# Fails unless svg has one <polyline> per expected count, in order, with that many points.
function(expect_polylines svg what)
  string(REGEX MATCHALL "<polyline [^>]*points=\"[^\"]*\"" _lines "${svg}")
  list(LENGTH _lines _found)
  list(LENGTH ARGN _expected)
  if(NOT _found EQUAL _expected)
    message(FATAL_ERROR "${what}: ${_found} polylines, expected ${_expected}")
  endif()
  set(_at 0)
  foreach(_count IN LISTS ARGN)
    list(GET _lines ${_at} _line)
    string(REGEX REPLACE ".*points=\"([^\"]*)\"" "\\1" _points "${_line}")
    string(REGEX MATCHALL "-?[0-9.]+,-?[0-9.]+" _pairs "${_points}")
    list(LENGTH _pairs _pair_count)
    if(NOT _pair_count EQUAL _count)
      message(FATAL_ERROR "${what}: polyline ${_at} has ${_pair_count} points, expected ${_count}")
    endif()
    math(EXPR _at "${_at} + 1")
  endforeach()
endfunction()

function(expect_event_marks svg what expected)
  string(REGEX MATCHALL "class=\"event\"" _marks "${svg}")
  list(LENGTH _marks _count)
  if(NOT _count EQUAL expected)
    message(FATAL_ERROR "${what}: ${_count} event marks, expected ${expected}")
  endif()
endfunction()

file(REMOVE_RECURSE "${SCRATCH}")
file(MAKE_DIRECTORY "${SCRATCH}")

# UTC: a number, an array of two (one line each), and a text as a mark; the legend names
# them by their display names and the ticks read as times of day.
expect_run(0 "<svg " "^$" plot "${EXAMPLES}/run_v2_utc.mgjson" "[1][0]" "[1][1]" "[1][2]")
expect_well_formed("${LAST_OUT}" "run")
expect_polylines("${LAST_OUT}" "run" 3 3 3)
expect_event_marks("${LAST_OUT}" "run" 1)
foreach(_text ">Heart rate<" ">Latitude<" ">Longitude<" ">Lap marker<" ">start<" ">06:30:01.000<" ">time \\(UTC, 2024-05-04\\)<")
  if(NOT LAST_OUT MATCHES "${_text}")
    message(FATAL_ERROR "run: no ${_text} in\n${LAST_OUT}")
  endif()
endforeach()

# Timecode, from a converted motion capture, written to a file.
expect_run(0 "^$" "^$" plot -o "${SCRATCH}/walk.svg" "${EXAMPLES}/walk.bvh" "[0][1]")
file(READ "${SCRATCH}/walk.svg" _walk)
expect_well_formed("${_walk}" "walk")
expect_polylines("${_walk}" "walk" 300 300 300)
if(NOT _walk MATCHES ">00:00:00:00<.*>00:00:09:29<" OR NOT _walk MATCHES ">X_POSITION<")
  message(FATAL_ERROR "walk: no timecode ticks or component names in\n${_walk}")
endif()

# A converter plug-in's format, as the tool finds its plug-ins beside itself.
expect_run(0 "<svg " "^$" plot "${EXAMPLES}/pier_wind.gust" "[1]")
expect_polylines("${LAST_OUT}" "gust" 7)

# A long set is reduced: at most two points for each of 1,000 time slices.
set(_samples "")
foreach(_i RANGE 5999)
  math(EXPR _second "${_i} / 100")
  math(EXPR _hundredth "${_i} % 100")
  math(EXPR _value "${_i} % 200")
  foreach(_part _second _hundredth)
    if(${_part} LESS 10)
      set(${_part} "0${${_part}}")
    endif()
  endforeach()
  if(_i GREATER 0)
    string(APPEND _samples ",")
  endif()
  string(APPEND _samples "{\"time\":\"2024-01-01T00:00:${_second}.${_hundredth}0Z\",\"value\":\"+${_value}\"}")
endforeach()
file(WRITE "${SCRATCH}/long.mgjson" "{\"version\":\"MGJSON2.0.0\",\"dynamicSamplesPresentB\":true,
\"dynamicDataInfo\":{\"useTimecodeB\":false,\"utcInfo\":{\"precisionLength\":3,\"isGMT\":true}},
\"dataOutline\":[{\"objectType\":\"dataDynamic\",\"displayName\":\"Saw & <teeth>\",\"matchName\":\"saw\",\"sampleSetID\":\"s\",
\"interpolation\":\"linear\",\"hasExpectedFrequencyB\":false,\"sampleCount\":6000,\"dataType\":{\"type\":\"numberString\",
\"numberStringProperties\":{\"pattern\":{\"isSigned\":true,\"digitsInteger\":3,\"digitsDecimal\":0},
\"range\":{\"occurring\":{\"min\":0,\"max\":199},\"legal\":{\"min\":0,\"max\":199}}}}}],
\"dataDynamicSamples\":[{\"sampleSetID\":\"s\",\"samples\":[${_samples}]}]}")
expect_run(0 "<svg " "^$" plot "${SCRATCH}/long.mgjson" "[0]")
expect_well_formed("${LAST_OUT}" "long")
expect_polylines("${LAST_OUT}" "long" 2000)
if(NOT LAST_OUT MATCHES ">Saw &amp; &lt;teeth&gt;<" OR NOT LAST_OUT MATCHES ">00:00:59<")
  message(FATAL_ERROR "long: the escaped name or the whole-second ticks are missing")
endif()

# Bad input: an error line and status 1, or the usage and status 2; no picture either way.
expect_run(1 "^$" "^palvex: error 33: [^\n]+\n$" plot "${EXAMPLES}/run_v2_utc.mgjson" "[0][0]")
expect_run(1 "^$" "^palvex: error 4: File not exist at input path:.*/gone\\.mgjson\\.\n$"
  plot -o "${SCRATCH}/gone.svg" "${SCRATCH}/gone.mgjson" "[0]")
expect_run(1 "^$" "^palvex: cannot write '[^\n]*/no-folder/x\\.svg'\n$"
  plot -o "${SCRATCH}/no-folder/x.svg" "${EXAMPLES}/run_v2_utc.mgjson" "[1][0]")
if(EXISTS "${SCRATCH}/gone.svg")
  message(FATAL_ERROR "a failed plot left ${SCRATCH}/gone.svg")
endif()
expect_run(2 "^$" "usage: palvex .*plot" plot "${EXAMPLES}/run_v2_utc.mgjson")
expect_run(2 "^$" "-o needs a file name" plot "${EXAMPLES}/run_v2_utc.mgjson" "[1][0]" -o)
expect_run(0 "usage: palvex .*plot .*DATAPATH" "^$" plot --help)
file(REMOVE_RECURSE "${SCRATCH}")
