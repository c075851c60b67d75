target_sources(palvex_objects PRIVATE
  file_access/data_path.cpp
  file_access/file_mapper.cpp
  file_access/outline_node.cpp
)
