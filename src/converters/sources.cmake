target_sources(palvex_objects PRIVATE
  converters/format_registry.cpp
)
