target_sources(palvex_tests PRIVATE
  converters/bvh_conversion_test.cpp
  converters/bvh_hierarchy_test.cpp
  converters/bvh_reader_test.cpp
  converters/bvh_rotation_test.cpp
  converters/bvh_timing_test.cpp
  converters/converter_selection_test.cpp
  converters/csv_reader_test.cpp
  converters/csv_table_test.cpp
  converters/json_conversion_test.cpp
  converters/json_document_test.cpp
  converters/json_start_check_test.cpp
  converters/json_text_test.cpp
)
