# The CLI's conventions: results on stdout, errors as one line on stderr, exit statuses.
function(expect_run expected_status expected_out expected_err)
  execute_process(COMMAND ${PALVEX} ${ARGN} RESULT_VARIABLE _status OUTPUT_VARIABLE _out ERROR_VARIABLE _err)
  if(NOT _status EQUAL ${expected_status})
    message(FATAL_ERROR "palvex ${ARGN}: status ${_status}, expected ${expected_status}\n${_out}${_err}")
  endif()
  if(NOT _out MATCHES "${expected_out}")
    message(FATAL_ERROR "palvex ${ARGN}: stdout '${_out}' does not match '${expected_out}'")
  endif()
  if(NOT _err MATCHES "${expected_err}")
    message(FATAL_ERROR "palvex ${ARGN}: stderr '${_err}' does not match '${expected_err}'")
  endif()
endfunction()

expect_run(0 "^bvh\tBiovision Hierarchy\ncsv\tComma-separated values\njson\tJSON\nmgjson\tMotion Graphics JSON\ntsv\tTab-separated values\ntxt\tTab-separated values\n$" "^$" formats)
expect_run(0 "^Unter dem Eingabepfad ist keine Datei vorhanden: /x\\.csv\\.\n$" "^$"
  --locale de_DE message "$$$/PXError/FileNotExist=File not exist at input path:^1." /x.csv)
expect_run(0 "^File not exist at input path:/x\\.csv\\.\n$" "^$"
  --locale xx_XX message "$$$/PXError/FileNotExist=File not exist at input path:^1." /x.csv)
expect_run(0 "usage: palvex" "^$" --help)
expect_run(0 "usage: palvex .*message KEY" "^$" message --help)
expect_run(2 "^$" "unknown command" frobnicate)
expect_run(2 "^$" "usage" message)
expect_run(2 "^$" "unknown option" --bogus formats)
