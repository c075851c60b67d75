# The tool's pure drawing code, compiled in from cli/ (the rest of the tool is tested by
# running it: cli_smoke.cmake, cli_plot.cmake).
target_sources(palvex_tests PRIVATE
  cli/plot_reduction_test.cpp
  cli/svg_plot_test.cpp
  ${PROJECT_SOURCE_DIR}/cli/plot_reduction.cpp
  ${PROJECT_SOURCE_DIR}/cli/svg_plot.cpp
)
target_include_directories(palvex_tests PRIVATE ${PROJECT_SOURCE_DIR}/cli)
