# SPDX-License-Identifier: BSD-2-Clause
# The library as a user gets it. Installs the build tree into a scratch
# prefix and moves the prefix elsewhere (nothing installed may depend on
# where it was installed), then: runs the installed ldpdump; builds and runs
# examples/ with find_package(ldpcodec CONFIG) against the moved prefix and
# against the build tree; builds and runs them with examples/Makefile and
# pkg-config. The examples exit non-zero on a wrong result, and the ones on
# examples/my_platform.c also on a leaked block.
# Run with -DBUILD_DIR= -DEXAMPLES_DIR= -DWORK_DIR= -DLIBDIR= -DC_COMPILER= -DMAKE= -DGENERATOR=
if(NOT MAKE)
  message(FATAL_ERROR "make not found: install it to check the pkg-config build of the examples")
endif()
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/moved-prefix)
set(strict "-Wall -Wextra -Wpedantic -Werror")

function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "${what} failed (${rc}):\n${out}")
  endif()
  set(out "${out}" PARENT_SCOPE)
endfunction()

run("install" ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/prefix)
file(RENAME ${WORK_DIR}/prefix ${prefix})

run("installed ldpdump" ${prefix}/bin/ldpdump 02010004000000ff)
if(NOT out MATCHES "KeepAlive id 255 LDP_OK")
  message(FATAL_ERROR "installed ldpdump did not decode a KeepAlive:\n${out}")
endif()

foreach(package IN ITEMS "CMAKE_PREFIX_PATH=${prefix}" "ldpcodec_DIR=${BUILD_DIR}")
  string(REGEX REPLACE "=.*" "" name "${package}")
  set(dir ${WORK_DIR}/cmake-${name})
  run("configure examples with ${package}" ${CMAKE_COMMAND} -S ${EXAMPLES_DIR} -B ${dir} -G ${GENERATOR}
      -D${package} -DCMAKE_C_COMPILER=${C_COMPILER} -DCMAKE_C_FLAGS=${strict})
  run("build examples with ${package}" ${CMAKE_COMMAND} --build ${dir})
  run("examples built with ${package}" ${CMAKE_COMMAND} -E chdir ${dir} ${CMAKE_CTEST_COMMAND}
      --output-on-failure)
endforeach()

file(MAKE_DIRECTORY ${WORK_DIR}/make)
run("examples built with pkg-config" ${CMAKE_COMMAND} -E chdir ${WORK_DIR}/make
    ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${prefix}/${LIBDIR}/pkgconfig
    ${MAKE} -f ${EXAMPLES_DIR}/Makefile check CC=${C_COMPILER} "CFLAGS=-O2 ${strict}")
message(STATUS "installed package: ldpdump, CMake (prefix and build tree) and pkg-config users work")
