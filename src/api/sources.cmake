target_sources(palvex_objects PRIVATE
  api/client_table.cpp
  api/exports.cpp
  api/guard.cpp
  api/input_resolution.cpp
  api/manager_lifetime.cpp
  api/messages.cpp
  api/open_file_table.cpp
  api/output_placement.cpp
  api/palvex_impl.cpp
  api/px_exception.cpp
  api/service_table.cpp
  api/stream_set.cpp
  api/temporary_file.cpp
)
