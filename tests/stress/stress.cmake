# The concurrency stress program (stress_main.cpp). A program of its own rather than part
# of palvex_tests: its first phase needs a process in which nothing was set up yet, and it
# links the shared library only, as a host does. The thread-sanitizer build
# (scripts/test-threads.sh) builds this target alone and runs it longer.
add_executable(palvex_stress_tests stress/stress_main.cpp stress/workload.cpp stress/digest.cpp)
find_package(Threads REQUIRED)
target_link_libraries(palvex_stress_tests PRIVATE palvex Threads::Threads)
# A folder holding the example plug-in alone: the bundled plug-ins beside it in the build
# tree are not what this program checks.
set(_stress_plugins ${CMAKE_CURRENT_BINARY_DIR}/stress_plugins)
add_dependencies(palvex_stress_tests gust_logger)
add_custom_command(TARGET palvex_stress_tests POST_BUILD
  COMMAND ${CMAKE_COMMAND} -E make_directory ${_stress_plugins}
  COMMAND ${CMAKE_COMMAND} -E copy_if_different $<TARGET_FILE:gust_logger> ${_stress_plugins})
target_compile_definitions(palvex_stress_tests PRIVATE
  PALVEX_SOURCE_DIR="${PROJECT_SOURCE_DIR}" PALVEX_STRESS_PLUGIN_DIR="${_stress_plugins}")
if(NOT CMAKE_CROSSCOMPILING)
  # A short run: the results under load in every build; scripts/test-threads.sh runs it
  # longer under ThreadSanitizer.
  add_test(NAME stress_threads COMMAND palvex_stress_tests --threads 4 --iterations 4)
endif()
