# The action-camera telemetry plug-in: its reader and document in the test program (on
# inputs from the generator here), and the tool converting the bundled example end to end.
target_sources(palvex_tests PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/mp4_builder.cpp
  ${CMAKE_CURRENT_LIST_DIR}/gpmf_bad_input_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/gpmf_files_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/gpmf_klv_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/gpmf_notes_test.cpp)
target_link_libraries(palvex_tests PRIVATE palvex_gpmf_reader)

add_plugin_script_test(gpmf_convert ${CMAKE_CURRENT_LIST_DIR}/gpmf_convert.cmake
  -DSAMPLE=${PROJECT_SOURCE_DIR}/examples/action_cam.mp4)
