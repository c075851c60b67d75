target_sources(palvex_tests PRIVATE
  plugin_kit/plugin_kit_test.cpp
)

# A plug-in written with the kit alone, at the C++ standard the kit promises.
add_library(palvex_kit_plugin OBJECT plugin_kit/kit_plugin.cpp)
target_include_directories(palvex_kit_plugin PRIVATE ${PROJECT_SOURCE_DIR}/include)
set_target_properties(palvex_kit_plugin PROPERTIES CXX_STANDARD 17 CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF)
target_sources(palvex_tests PRIVATE $<TARGET_OBJECTS:palvex_kit_plugin>)

# The example plug-in's reader, tested where its failures can be seen in full.
set(_gust_logger ${PROJECT_SOURCE_DIR}/examples/plugins/gust_logger)
target_sources(palvex_tests PRIVATE plugin_kit/gust_log_test.cpp ${_gust_logger}/gust_log.cpp)
target_include_directories(palvex_tests PRIVATE ${_gust_logger})
