# A room of the house: one folder, one library, which sees the rooms that it links and nothing else.
#
#   zavro_room(sheet HEADERS grid.h book.h SOURCES grid.cpp LINKS basic desktop)
#
# HEADERS are the room's public face. Other rooms include them as "sheet/grid.h"; the path exists only for
# targets that link the room, so an include against the arrows does not compile. Headers that are not listed
# stay inside: only files of the same folder reach them, by their bare name. LINKS are rooms (or libraries)
# that stand below; PRIVATE_LINKS are those that the public headers do not show.
function(zavro_room name)
  cmake_parse_arguments(ROOM "" "" "HEADERS;SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  set(face ${CMAKE_BINARY_DIR}/rooms/${name})
  foreach(header IN LISTS ROOM_HEADERS)
    file(CONFIGURE OUTPUT ${face}/${name}/${header}
      CONTENT "#pragma once\n#include \"${CMAKE_CURRENT_SOURCE_DIR}/${header}\"\n" @ONLY)
  endforeach()
  if(ROOM_SOURCES)
    add_library(${name} STATIC ${ROOM_SOURCES} ${ROOM_HEADERS})
    set(scope PUBLIC)
    target_link_libraries(${name} PRIVATE zavro_compiler ${ROOM_PRIVATE_LINKS})
    set_target_properties(${name} PROPERTIES OUTPUT_NAME zavro_${name} POSITION_INDEPENDENT_CODE ON)
  else()
    add_library(${name} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_include_directories(${name} ${scope} ${face})
  target_link_libraries(${name} ${scope} ${ROOM_LINKS})
endfunction()
