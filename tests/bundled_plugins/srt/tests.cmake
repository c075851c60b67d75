# The drone telemetry subtitle plug-in: its reader in palvex_tests, and the tool converting
# the bundled examples through the built module.
target_sources(palvex_tests PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/srt_document_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/srt_telemetry_test.cpp)
target_link_libraries(palvex_tests PRIVATE palvex_srt_reader palvex_rapidjson)
if(TARGET palvex_srt)
  add_plugin_script_test(bundled_srt ${CMAKE_CURRENT_LIST_DIR}/srt_run.cmake
    -DEXAMPLES=${PROJECT_SOURCE_DIR}/examples)
endif()
