# Only this folder talks to the operating system; one backend per platform.
if(WIN32)
  target_sources(palvex_objects PRIVATE
    platform/dynamic_module_win32.cpp
    platform/module_resources_win32.cpp
    platform/module_texts_win32.cpp
    platform/native_file_win32.cpp
    platform/system_path_win32.cpp
    platform/thread_slot_win32.cpp
  )
else()
  target_sources(palvex_objects PRIVATE
    platform/dynamic_module_posix.cpp
    platform/module_resources_embedded.cpp
    platform/module_texts_posix.cpp
    platform/native_file_posix.cpp
    platform/thread_slot_posix.cpp
  )
  # dlopen lives in its own library on older C libraries.
  target_link_libraries(palvex_objects PUBLIC ${CMAKE_DL_LIBS})
endif()
target_sources(palvex_objects PRIVATE
  platform/elf_sections.cpp
  platform/fault_injection.cpp
  platform/file_io.cpp
  platform/file_io_paths.cpp
  platform/long_path.cpp
)
# The test-only fault seam (fault_injection.hpp); without it every check is a constant.
if(PALVEX_FAULT_INJECTION)
  target_compile_definitions(palvex_objects PUBLIC PALVEX_FAULT_INJECTION=1)
endif()
