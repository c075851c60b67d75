target_sources(palvex_tests PRIVATE
  localisation/dictionary_test.cpp
  localisation/utf_test.cpp
)
