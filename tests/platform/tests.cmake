target_sources(palvex_tests PRIVATE
  platform/elf_sections_test.cpp
  platform/file_io_bad_paths_test.cpp
  platform/file_io_fault_test.cpp
  platform/file_io_paths_test.cpp
  platform/file_io_test.cpp
  platform/long_path_test.cpp
  platform/module_resources_test.cpp
  platform/module_texts_test.cpp
  platform/thread_slot_test.cpp
)
if(WIN32)
  target_sources(palvex_tests PRIVATE
    platform/native_file_win32_test.cpp
    platform/open_handles_win32.cpp
  )
else()
  target_sources(palvex_tests PRIVATE
    platform/native_file_posix_test.cpp
  )
endif()
