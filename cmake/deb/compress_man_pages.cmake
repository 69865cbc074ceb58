# SPDX-License-Identifier: BSD-2-Clause
# Run by CPack before it packs: Debian wants manual pages gzip-compressed at
# the highest level without a time stamp, whichever install rule put them in.
file(GLOB_RECURSE files "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*")
foreach(page IN LISTS files)
  if(page MATCHES "/share/man/" AND NOT page MATCHES "\\.gz$" AND NOT IS_SYMLINK "${page}")
    execute_process(COMMAND gzip -9nf "${page}" RESULT_VARIABLE rc)
    if(NOT rc EQUAL 0)
      message(FATAL_ERROR "gzip failed on ${page}")
    endif()
  endif()
endforeach()
