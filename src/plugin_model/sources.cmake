target_sources(palvex_objects PRIVATE
  plugin_model/dynamic_nodes.cpp
  plugin_model/group_impl.cpp
  plugin_model/mgjson_stream.cpp
  plugin_model/number_text.cpp
  plugin_model/object_registry.cpp
  plugin_model/plugin_status.cpp
  plugin_model/root_client_forms.cpp
  plugin_model/root_impl.cpp
  plugin_model/sample_record.cpp
  plugin_model/sample_store.cpp
  plugin_model/sample_time_text.cpp
  plugin_model/shared_object.cpp
  plugin_model/static_nodes.cpp
  plugin_model/text_arguments.cpp
  plugin_model/value_statistics.cpp
)
