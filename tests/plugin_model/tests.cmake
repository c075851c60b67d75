target_sources(palvex_tests PRIVATE
  plugin_model/abi_layout_test.cpp
  plugin_model/commit_test.cpp
  plugin_model/dynamic_nodes_test.cpp
  plugin_model/mgjson_stream_fault_test.cpp
  plugin_model/mgjson_stream_test.cpp
  plugin_model/mgjson_writer_fault_test.cpp
  plugin_model/mgjson_writer_golden_test.cpp
  plugin_model/mgjson_writer_test.cpp
  plugin_model/number_text_test.cpp
  plugin_model/object_tree_test.cpp
  plugin_model/plugin_status_test.cpp
  plugin_model/roundtrip_test.cpp
  plugin_model/sample_store_fault_test.cpp
  plugin_model/sample_store_test.cpp
  plugin_model/sample_time_text_test.cpp
  plugin_model/shared_object_test.cpp
  plugin_model/standalone_converter_test.cpp
  plugin_model/text_arguments_test.cpp
)

# A converter compiled with include/ alone on its include path, as a separately built
# module is: proves that the public headers stand alone.
add_library(palvex_standalone_converter OBJECT plugin_model/standalone_converter.cpp)
target_include_directories(palvex_standalone_converter PRIVATE ${PROJECT_SOURCE_DIR}/include)
target_sources(palvex_tests PRIVATE $<TARGET_OBJECTS:palvex_standalone_converter>)
