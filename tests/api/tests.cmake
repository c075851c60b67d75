target_sources(palvex_tests PRIVATE
  api/conversion_test.cpp
  api/error_model_test.cpp
  api/exports_test.cpp
  api/message_table_test.cpp
  api/open_file_test.cpp
  api/placement_test.cpp
)
