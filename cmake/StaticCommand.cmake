# A file browser starts the thumbnailer once per file it shows. Loading cairo's eighteen shared
# libraries and the C++ runtime takes longer than drawing a small document's thumbnail, so where
# the static archives are installed the command carries its drawing stack in itself; the C
# library and libplist, which has no archive, stay shared. The proof command is started by hand
# and links as usual.
option(VELMOR_STATIC_COMMAND "Link the thumbnailer command against the static archives of its libraries" ON)

# In the order the linker needs them: each archive before the ones it uses.
set(VELMOR_STATIC_ARCHIVES
    cairo pixman-1 fontconfig freetype expat brotlidec brotlicommon png16
    xcb-shm xcb-render Xrender Xext X11 xcb Xau Xdmcp icuuc icudata z)

function(velmor_link_command_statically target)
  if(NOT VELMOR_STATIC_COMMAND OR VELMOR_SANITIZE)
    return()
  endif()
  set(archives)
  foreach(name ${VELMOR_STATIC_ARCHIVES})
    find_library(VELMOR_ARCHIVE_${name} NAMES lib${name}.a)
    if(NOT VELMOR_ARCHIVE_${name})
      message(STATUS "lib${name}.a not found: ${target} links the shared libraries")
      return()
    endif()
    list(APPEND archives ${VELMOR_ARCHIVE_${name}})
  endforeach()
  # The archives come before the shared libraries on the line, so they satisfy every symbol, and
  # --as-needed drops the shared ones that are then left unused.
  target_link_libraries(${target} PRIVATE ${archives})
  target_link_options(${target} PRIVATE -static-libstdc++ -static-libgcc LINKER:--as-needed LINKER:--gc-sections)
endfunction()
