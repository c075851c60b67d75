# The GPX plug-in: its reader and document in palvex_tests, and the tool converting the
# bundled ride end to end through the module.
target_sources(palvex_tests PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/gpx_document_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/gpx_reader_test.cpp)
target_link_libraries(palvex_tests PRIVATE palvex_gpx_reader)

string(REPLACE ";" "|" _gpx_emulator "${CMAKE_CROSSCOMPILING_EMULATOR}")
add_test(NAME gpx_convert
  COMMAND ${CMAKE_COMMAND} -DPALVEX=$<TARGET_FILE:palvex_cli> "-DEMULATOR=${_gpx_emulator}"
          -DPLUGINS=${CMAKE_BINARY_DIR}/plugins -DSAMPLE=${PROJECT_SOURCE_DIR}/examples/ride.gpx
          -DSCRATCH=${CMAKE_CURRENT_BINARY_DIR}/gpx_convert_files
          -P ${CMAKE_CURRENT_LIST_DIR}/gpx_convert.cmake)
