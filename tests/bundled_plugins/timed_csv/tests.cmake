# The timed CSV plug-in: its reader in palvex_tests, and the tool converting the bundled
# example through the built module.
target_sources(palvex_tests PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/csv_records_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/csv_values_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/timed_csv_document_test.cpp)
target_link_libraries(palvex_tests PRIVATE palvex_timed_csv_reader palvex_rapidjson)
if(TARGET palvex_timed_csv)
  add_plugin_script_test(bundled_timed_csv ${CMAKE_CURRENT_LIST_DIR}/timed_csv_run.cmake
    -DEXAMPLES=${PROJECT_SOURCE_DIR}/examples)
endif()
