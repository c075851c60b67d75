# expect_run(STATUS STDOUT_REGEX STDERR_REGEX ARGUMENTS...) runs the tool as a user would and
# checks its exit status and both outputs. PALVEX is the tool; EMULATOR, when set, runs it
# ("|" separates its words); TOOL_OPTIONS, when set, go before the arguments of every run.
# Line ends are compared without the carriage returns of Windows text output. The standard
# output is left in LAST_OUT.
string(REPLACE "|" ";" _emulator "${EMULATOR}")
function(expect_run expected_status expected_out expected_err)
  execute_process(COMMAND ${_emulator} ${PALVEX} ${TOOL_OPTIONS} ${ARGN}
    RESULT_VARIABLE _status OUTPUT_VARIABLE _out ERROR_VARIABLE _err)
  string(REPLACE "\r\n" "\n" _out "${_out}")
  string(REPLACE "\r\n" "\n" _err "${_err}")
  if(NOT _status EQUAL ${expected_status})
    message(FATAL_ERROR "palvex ${ARGN}: status ${_status}, expected ${expected_status}\n${_out}${_err}")
  endif()
  if(NOT _out MATCHES "${expected_out}")
    message(FATAL_ERROR "palvex ${ARGN}: stdout '${_out}' does not match '${expected_out}'")
  endif()
  if(NOT _err MATCHES "${expected_err}")
    message(FATAL_ERROR "palvex ${ARGN}: stderr '${_err}' does not match '${expected_err}'")
  endif()
  set(LAST_OUT "${_out}" PARENT_SCOPE)
endfunction()

# expect_json(JSON EXPECTED KEYS_AND_INDICES...) checks the value at a path of a JSON text.
function(expect_json json expected)
  string(JSON _value ERROR_VARIABLE _error GET "${json}" ${ARGN})
  if(_error OR NOT _value STREQUAL "${expected}")
    message(FATAL_ERROR "JSON at ${ARGN}: '${_value}' (${_error}), expected '${expected}'")
  endif()
endfunction()
