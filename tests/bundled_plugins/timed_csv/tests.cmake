# The timed CSV plug-in: its reader in palvex_tests, and the tool converting the bundled
# example through the built module.
target_sources(palvex_tests PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/csv_records_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/csv_values_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/timed_csv_document_test.cpp)
target_link_libraries(palvex_tests PRIVATE palvex_timed_csv_reader palvex_rapidjson)
if(TARGET palvex_timed_csv)
  string(REPLACE ";" "|" _timed_csv_emulator "${CMAKE_CROSSCOMPILING_EMULATOR}")
  add_test(NAME bundled_timed_csv
    COMMAND ${CMAKE_COMMAND} -DPALVEX=$<TARGET_FILE:palvex_cli> "-DEMULATOR=${_timed_csv_emulator}"
            -DPLUGINS=${CMAKE_BINARY_DIR}/plugins -DEXAMPLES=${PROJECT_SOURCE_DIR}/examples
            -DSCRATCH=${CMAKE_CURRENT_BINARY_DIR}/bundled_timed_csv_files
            -P ${CMAKE_CURRENT_LIST_DIR}/timed_csv_run.cmake)
endif()
