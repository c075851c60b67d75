# The FIT plug-in: its decoder and document against files made by the generator here,
# and the tool converting the bundled example end to end.
target_sources(palvex_tests PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/fit_builder.cpp
  ${CMAKE_CURRENT_LIST_DIR}/fit_samples.cpp
  ${CMAKE_CURRENT_LIST_DIR}/fit_decoder_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/fit_damage_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/fit_document_test.cpp)
target_link_libraries(palvex_tests PRIVATE palvex_fit_reader)

# The generator as a program: writes examples/ride.fit again when the recipe changes.
add_executable(make_example_fit ${CMAKE_CURRENT_LIST_DIR}/make_example_fit.cpp
  ${CMAKE_CURRENT_LIST_DIR}/fit_builder.cpp ${CMAKE_CURRENT_LIST_DIR}/fit_samples.cpp)
target_compile_definitions(make_example_fit PRIVATE PALVEX_SOURCE_DIR="${PROJECT_SOURCE_DIR}")

if(TARGET palvex_fit)
  add_plugin_script_test(fit_plugin_example ${CMAKE_CURRENT_LIST_DIR}/fit_example.cmake
    -DSAMPLE=${PROJECT_SOURCE_DIR}/examples/ride.fit -DMAKE_FIT=$<TARGET_FILE:make_example_fit>)
endif()
