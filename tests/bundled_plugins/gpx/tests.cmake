# The GPX plug-in: its reader and document in palvex_tests, and the tool converting the
# bundled ride end to end through the module.
target_sources(palvex_tests PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/gpx_document_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/gpx_reader_test.cpp)
target_link_libraries(palvex_tests PRIVATE palvex_gpx_reader)

add_plugin_script_test(gpx_convert ${CMAKE_CURRENT_LIST_DIR}/gpx_convert.cmake
  -DSAMPLE=${PROJECT_SOURCE_DIR}/examples/ride.gpx)
