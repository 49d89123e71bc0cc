# Read by CPack when it makes the package: what the programs' libraries are called in Debian.
set(folder ${CPACK_TOPLEVEL_DIRECTORY}/shlibdeps)
file(WRITE ${folder}/debian/control "Source: zavrogrl\nPackage: zavrogrl\nArchitecture: any\n")
execute_process(
  COMMAND dpkg-shlibdeps -O ${CPACK_ZAVRO_PROGRAMS}
  WORKING_DIRECTORY ${folder}
  OUTPUT_VARIABLE found
  OUTPUT_STRIP_TRAILING_WHITESPACE
  ERROR_QUIET
  COMMAND_ERROR_IS_FATAL ANY)
if(NOT found MATCHES "^shlibs:Depends=(.+)$")
  message(FATAL_ERROR "dpkg-shlibdeps named no libraries: ${found}")
endif()
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-dejavu-core, ${CMAKE_MATCH_1}")
