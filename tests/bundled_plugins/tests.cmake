# Tests of the bundled converter plug-ins (plugins/): each folder here lists its own in
# <name>/tests.cmake, linking the plug-in's reader library into palvex_tests and adding
# any script tests that run the tool on its examples.
include(${CMAKE_CURRENT_LIST_DIR}/../support/tool_script_test.cmake)
target_sources(palvex_tests PRIVATE ${CMAKE_CURRENT_LIST_DIR}/common/utc_time_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/common/match_names_test.cpp ${CMAKE_CURRENT_LIST_DIR}/common/timed_stream_test.cpp)
target_link_libraries(palvex_tests PRIVATE palvex_plugin_support)
foreach(_plugin IN LISTS PALVEX_BUNDLED_PLUGINS)
  if(EXISTS ${CMAKE_CURRENT_LIST_DIR}/${_plugin}/tests.cmake)
    include(${CMAKE_CURRENT_LIST_DIR}/${_plugin}/tests.cmake)
  endif()
endforeach()
