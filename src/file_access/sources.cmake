target_sources(palvex_objects PRIVATE
  file_access/data_path.cpp
  file_access/data_type_reading.cpp
  file_access/file_mapper.cpp
  file_access/handler_delivery.cpp
  file_access/outline_node.cpp
  file_access/outline_queries.cpp
  file_access/sample_queries.cpp
  file_access/sensor_file_handler.cpp
)
