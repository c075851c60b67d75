target_sources(palvex_tests PRIVATE
  mgjson_read/mgjson_parser_file_test.cpp
  mgjson_read/mgjson_parser_test.cpp
  mgjson_read/mgjson_parser_time_test.cpp
  mgjson_read/number_reader_test.cpp
  mgjson_read/rapidjson_config_test.cpp
  mgjson_read/sample_compactor_test.cpp
  mgjson_read/sample_file_test.cpp
  mgjson_read/sample_reader_test.cpp
  mgjson_read/sample_set_parser_test.cpp
  mgjson_read/sample_time_test.cpp
  mgjson_read/sample_value_test.cpp
  mgjson_read/scanner_test.cpp
  mgjson_read/time_axis_test.cpp
  mgjson_read/time_values_test.cpp
  mgjson_read/time_values_utc_test.cpp
  mgjson_read/validator_test.cpp
)
