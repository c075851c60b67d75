# Only this folder talks to the operating system; one backend per platform.
if(WIN32)
  target_sources(palvex_objects PRIVATE
    platform/module_resources_win32.cpp
  )
else()
  target_sources(palvex_objects PRIVATE
    platform/module_resources_embedded.cpp
  )
endif()
