# RapidJSON is header-only. Its headers trip -Werror (deprecated std::iterator), so
# they are included as system headers. The cross build must see only RapidJSON's own
# folder, never the host's /usr/include as a whole.
find_path(RAPIDJSON_INCLUDE_DIR rapidjson/document.h
  PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
add_library(palvex_rapidjson INTERFACE)
if(CMAKE_CROSSCOMPILING)
  set(_rapidjson_only ${CMAKE_BINARY_DIR}/rapidjson-include)
  file(MAKE_DIRECTORY ${_rapidjson_only})
  file(CREATE_LINK ${RAPIDJSON_INCLUDE_DIR}/rapidjson ${_rapidjson_only}/rapidjson SYMBOLIC)
  target_include_directories(palvex_rapidjson SYSTEM INTERFACE ${_rapidjson_only})
else()
  target_include_directories(palvex_rapidjson SYSTEM INTERFACE ${RAPIDJSON_INCLUDE_DIR})
endif()
target_compile_definitions(palvex_rapidjson INTERFACE RAPIDJSON_HAS_STDSTRING=1)
