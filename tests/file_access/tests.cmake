target_sources(palvex_tests PRIVATE
  file_access/data_path_test.cpp
  file_access/file_mapper_test.cpp
  file_access/handler_delivery_test.cpp
  file_access/outline_node_test.cpp
  file_access/outline_queries_test.cpp
  file_access/sample_queries_test.cpp
)
