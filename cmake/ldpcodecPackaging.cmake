# SPDX-License-Identifier: BSD-2-Clause
# Debian packages through CPack: `cpack -G DEB` in a build configured with
# -DCMAKE_INSTALL_PREFIX=/usr makes one package per install component:
#   libldpcodec0     runtime      libldpcodec.so.0 and libldpplatform.so.0
#   libldpcodec-dev  development  headers, link names, static libraries,
#                                 CMake package and pkg-config files
#   ldpdump          ldpdump      the decoder tool and its manual page
# Each carries its copyright file; the Debian changelog is generated here.
if(NOT PROJECT_IS_TOP_LEVEL)
  return()
endif()

set(LDP_DEB_VERSION ${PROJECT_VERSION})
set(LDP_DEB_RELEASE 1)
set(LDP_DEB_MAINTAINER "The ldpcodec authors <ldpcodec@example.org>")
set(LDP_DEB_PACKAGES libldpcodec0 libldpcodec-dev ldpdump)
set(LDP_DEB_COMPONENTS runtime development ldpdump)

# /usr/share/doc/<package>/{copyright,changelog.Debian.gz} for each package.
# The changelog date honours SOURCE_DATE_EPOCH for reproducible packages.
string(TIMESTAMP LDP_DEB_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
# The licence terms (from "Redistribution" on) as a copyright-file paragraph.
file(READ ${PROJECT_SOURCE_DIR}/LICENSE LDP_LICENSE_TEXT)
string(FIND "${LDP_LICENSE_TEXT}" "Redistribution" at)
string(SUBSTRING "${LDP_LICENSE_TEXT}" ${at} -1 LDP_LICENSE_TEXT)
string(STRIP "${LDP_LICENSE_TEXT}" LDP_LICENSE_TEXT)
string(REPLACE "\n\n" "\n.\n" LDP_LICENSE_TEXT "${LDP_LICENSE_TEXT}")
string(REPLACE "\n" "\n " LDP_LICENSE_TEXT " ${LDP_LICENSE_TEXT}")
find_program(LDP_GZIP gzip)
foreach(pkg comp IN ZIP_LISTS LDP_DEB_PACKAGES LDP_DEB_COMPONENTS)
  set(LDP_DEB_PACKAGE ${pkg})
  set(dir ${PROJECT_BINARY_DIR}/deb/${pkg})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/deb/copyright.in ${dir}/copyright @ONLY)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/deb/changelog.in ${dir}/changelog.Debian @ONLY)
  set(docs ${dir}/copyright)
  if(LDP_GZIP)
    execute_process(COMMAND ${LDP_GZIP} -9nf ${dir}/changelog.Debian)
    list(APPEND docs ${dir}/changelog.Debian.gz)
  endif()
  install(FILES ${docs} DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${pkg} COMPONENT ${comp})
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ldpcodec)
set(CPACK_PACKAGE_VENDOR "The ldpcodec authors")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "${LDP_DEB_MAINTAINER}")
# Left at CPack's default so each component description's first line is its
# package synopsis (CPack prepends any other summary).
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${CMAKE_PROJECT_NAME} built using CMake")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
# Everything installed finds its neighbours by relative paths, so packages
# go to /usr whatever the configured prefix; configuring with
# -DCMAKE_INSTALL_PREFIX=/usr adds Debian's multiarch library directory.
if(NOT DEFINED CPACK_PACKAGING_INSTALL_PREFIX)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
endif()
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/deb/compress_man_pages.cmake)
set(CPACK_COMPONENTS_ALL ${LDP_DEB_COMPONENTS})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${LDP_DEB_RELEASE})
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${LDP_DEB_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# ldpdump needs our own libraries: found in the build tree, tied by DEPENDS.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libldpcodec0)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
# The run-time linker cache is refreshed by trigger when the libraries change.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/deb/triggers)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "LDP message codec - shared libraries
ldpcodec turns single LDP messages (RFC 5036 and extensions) into validated
records and records back into wire bytes, for the LDP engine of a router.
.
This package holds libldpcodec, which takes its memory, assertion, list and
copy services from the program, and libldpplatform, a default set of those
services for standalone use.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libldpcodec-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "LDP message codec - development files
ldpcodec turns single LDP messages (RFC 5036 and extensions) into validated
records and records back into wire bytes, for the LDP engine of a router.
.
This package holds the C headers, the link names, the static libraries when
built, the CMake package (find_package(ldpcodec CONFIG)) and the pkg-config
files ldpcodec and ldpplatform.")

set(CPACK_DEBIAN_LDPDUMP_PACKAGE_NAME ldpdump)
set(CPACK_DEBIAN_LDPDUMP_PACKAGE_SECTION net)
set(CPACK_COMPONENT_LDPDUMP_DEPENDS runtime)
set(CPACK_COMPONENT_LDPDUMP_DESCRIPTION "LDP message decoder for the command line
ldpdump decodes LDP messages given as hex text with ldpcodec and prints each
message's type, the result of decoding and the fields of the record.")

include(CPack)
