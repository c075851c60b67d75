# The tool with a plug-in folder: each module it cannot use is one warning and the command
# goes on; plug-ins convert; their failures are errors. EMULATOR, when set, runs the
# program ("|" separates its words); SCRATCH is a folder this script may fill and remove.
include(${CMAKE_CURRENT_LIST_DIR}/../support/plugin_run.cmake)
set(_warning "palvex: warning 1503: Manifest Parsing Failed\\.\n")

expect_run(0 "\npxt\tTest text\n" "^${_warning}$" formats)

file(WRITE "${SCRATCH}/reading.pxt" "PXTEXT\n0 1.5\n25 -2\n")
expect_run(0 "^$" "^${_warning}$" convert -o "${SCRATCH}/reading.mgjson" "${SCRATCH}/reading.pxt")
expect_run(0 "\\[0\\]\\[1\\] dynamic \"Value\" \\(value\\).* 2 samples" "^${_warning}$"
  info "${SCRATCH}/reading.mgjson")

file(WRITE "${SCRATCH}/broken.pxe" "PXCONVERT")
expect_run(1 "^$"
  "^${_warning}palvex: error 7401: Conversion to MGJSON using converter Failing conversion with id test\\.convert-error failed\\.\n$"
  convert -o "${SCRATCH}/broken.mgjson" "${SCRATCH}/broken.pxe")

# The failure to terminate comes when the tool lets go of the library, after the command.
file(WRITE "${SCRATCH}/quit.pxq" "PXQUIT\n0 1\n")
expect_run(1 "^$"
  "^${_warning}palvex: error 7102: Terminate of Plugin with id test\\.module\\.fail-terminate failed\n$"
  convert -o "${SCRATCH}/quit.mgjson" "${SCRATCH}/quit.pxq")

expect_run(0 "\ncsv\tComma-separated values\n" "^palvex: warning [0-9]+: .*\n$" --plugins "${SCRATCH}/missing" formats)
file(REMOVE_RECURSE "${SCRATCH}")
