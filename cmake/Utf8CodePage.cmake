# Windows hands a program's narrow arguments (main's argv) and the C runtime's narrow
# file names over in the process's ANSI code page, not in UTF-8 as the library and its
# hosts use them. An application manifest that declares UTF-8 as the active code page
# makes them UTF-8 (Windows 10 1903 and later, and wine). Used for palvex.exe, whose
# arguments are paths handed on to the library unchanged.
#   palvex_use_utf8_code_page(TARGET)
function(palvex_use_utf8_code_page target)
  if(NOT WIN32)
    return()
  endif()
  set(_folder ${CMAKE_BINARY_DIR}/generated/${target})
  set(_manifest ${_folder}/utf8.manifest)
  file(CONFIGURE OUTPUT ${_manifest} CONTENT [=[<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">
  <application xmlns="urn:schemas-microsoft-com:asm.v3">
    <windowsSettings>
      <activeCodePage xmlns="http://schemas.microsoft.com/SMI/2019/WindowsSettings">UTF-8</activeCodePage>
    </windowsSettings>
  </application>
</assembly>
]=])
  # Resource 1 of type 24 (RT_MANIFEST): the manifest the system reads when it starts the program.
  file(CONFIGURE OUTPUT ${_folder}/utf8_manifest.rc CONTENT "1 24 \"${_manifest}\"\n")
  set_source_files_properties(${_folder}/utf8_manifest.rc PROPERTIES OBJECT_DEPENDS ${_manifest})
  target_sources(${target} PRIVATE ${_folder}/utf8_manifest.rc)
endfunction()
