# SPDX-License-Identifier: BSD-2-Clause
# Fails unless libldpcodec.so exports exactly the functions that the public
# headers declare with LDP_API, defines nothing outside LDP_*, and leaves
# every platform symbol undefined. Run with -DLIB=... -DNM=... -DHEADERS=...
# (the folder of the public headers).
execute_process(COMMAND ${NM} -D --defined-only ${LIB} OUTPUT_VARIABLE defined RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "nm failed on ${LIB}")
endif()
string(REPLACE "\n" ";" lines "${defined}")
set(exported "")
foreach(line IN LISTS lines)
  if(line STREQUAL "")
    continue()
  endif()
  string(REGEX MATCH "[^ ]+$" sym "${line}")
  if(NOT sym MATCHES "^LDP_")
    message(FATAL_ERROR "exported symbol outside the LDP_ interface: ${line}")
  endif()
  list(APPEND exported ${sym})
endforeach()

# Every function the headers mark for export, comments stripped first so a
# name in a sentence does not count.
file(GLOB headers ${HEADERS}/*.h)
set(declared "")
foreach(header IN LISTS headers)
  file(READ ${header} text)
  string(REGEX REPLACE "/\\*([^*]|\\*+[^*/])*\\*+/" "" text "${text}")
  string(REGEX MATCHALL "LDP_API[^;(]*[ *]LDP_[A-Za-z0-9_]+[ \t\n]*\\(" decls "${text}")
  foreach(decl IN LISTS decls)
    string(REGEX MATCH "LDP_[A-Za-z0-9_]+[ \t\n]*\\($" name "${decl}")
    string(REGEX REPLACE "[ \t\n]*\\($" "" name "${name}")
    list(APPEND declared ${name})
  endforeach()
endforeach()
list(LENGTH declared declared_count)
if(declared_count EQUAL 0)
  message(FATAL_ERROR "no LDP_API declaration found under ${HEADERS}")
endif()

set(missing ${declared})
list(REMOVE_ITEM missing ${exported})
set(extra ${exported})
list(REMOVE_ITEM extra ${declared})
if(missing OR extra)
  list(JOIN missing " " missing)
  list(JOIN extra " " extra)
  message(FATAL_ERROR "exports differ from the headers' LDP_API declarations\n"
                      "  declared, not exported: ${missing}\n"
                      "  exported, not declared: ${extra}")
endif()

execute_process(COMMAND ${NM} -D --undefined-only ${LIB} OUTPUT_VARIABLE undefined)
foreach(sym PLAT_SimpleAlloc_F PLAT_Malloc_F PLAT_Free_F PLAT_Assert SYS_Int32ToStr SYS_SystimeGet
            SYS_MemCmp memcpy_s memset_s snprintf_truncated_s g_aucPlatMemPt)
  if(NOT undefined MATCHES " ${sym}\n")
    message(FATAL_ERROR "${sym} is not imported by ${LIB}")
  endif()
endforeach()
message(STATUS "exports: the ${declared_count} LDP_API functions of the headers, nothing else; platform imported")
