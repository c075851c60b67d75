target_sources(palvex_objects PRIVATE
  mgjson_read/mgjson_parser.cpp
  mgjson_read/mgjson_parser_factory.cpp
  mgjson_read/mgjson_parser_v1.cpp
  mgjson_read/mgjson_parser_v2.cpp
  mgjson_read/number_reader.cpp
  mgjson_read/property_path.cpp
  mgjson_read/scanner.cpp
  mgjson_read/time_info_extraction.cpp
  mgjson_read/time_axis.cpp
  mgjson_read/time_values.cpp
  mgjson_read/time_values_utc.cpp
  mgjson_read/validator.cpp
  mgjson_read/validator_properties.cpp
  mgjson_read/validator_time_info.cpp
  mgjson_read/validator_v1.cpp
  mgjson_read/validator_v2.cpp
)
