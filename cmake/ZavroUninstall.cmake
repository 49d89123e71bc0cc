# cmake -DMANIFEST=install_manifest.txt -P ZavroUninstall.cmake: removes what an installation put there, and nothing else.
# The user's own folder with the program's files and every book stay.
if(NOT EXISTS ${MANIFEST})
  message(FATAL_ERROR "${MANIFEST} is not there: nothing was installed from this build")
endif()
file(STRINGS ${MANIFEST} files)
foreach(file IN LISTS files)
  if(EXISTS $ENV{DESTDIR}${file} OR IS_SYMLINK $ENV{DESTDIR}${file})
    message(STATUS "Removing $ENV{DESTDIR}${file}")
    file(REMOVE $ENV{DESTDIR}${file})
  endif()
endforeach()
