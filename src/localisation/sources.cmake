target_sources(palvex_objects PRIVATE
  localisation/dictionary.cpp
  localisation/utf.cpp
)
