# The drone telemetry subtitle plug-in: its reader in palvex_tests, and the tool converting
# the bundled examples through the built module.
target_sources(palvex_tests PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/srt_document_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/srt_telemetry_test.cpp)
target_link_libraries(palvex_tests PRIVATE palvex_srt_reader palvex_rapidjson)
if(TARGET palvex_srt)
  string(REPLACE ";" "|" _srt_emulator "${CMAKE_CROSSCOMPILING_EMULATOR}")
  add_test(NAME bundled_srt
    COMMAND ${CMAKE_COMMAND} -DPALVEX=$<TARGET_FILE:palvex_cli> "-DEMULATOR=${_srt_emulator}"
            -DPLUGINS=${CMAKE_BINARY_DIR}/plugins -DEXAMPLES=${PROJECT_SOURCE_DIR}/examples
            -DSCRATCH=${CMAKE_CURRENT_BINARY_DIR}/bundled_srt_files
            -P ${CMAKE_CURRENT_LIST_DIR}/srt_run.cmake)
endif()
