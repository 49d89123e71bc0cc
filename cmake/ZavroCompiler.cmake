# One set of compiler settings for every target of the project.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

add_library(zavro_compiler INTERFACE)
if(MSVC)
  target_compile_options(zavro_compiler INTERFACE /W4 $<$<BOOL:${ZAVRO_WERROR}>:/WX> /utf-8)
else()
  target_compile_options(zavro_compiler INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
    -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual $<$<BOOL:${ZAVRO_WERROR}>:-Werror>
    # Single precision is written out where it is wanted; no contraction may change a level.
    -ffp-contract=off)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 sees overlapping copies in std::string where there are none (its bug 105651), and endless
    # comparisons of byte vectors.
    target_compile_options(zavro_compiler INTERFACE -Wno-restrict -Wno-stringop-overread)
  endif()
endif()

if(ZAVRO_SANITIZE)
  add_compile_options(-fsanitize=${ZAVRO_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${ZAVRO_SANITIZE})
endif()
if(ZAVRO_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(ZAVRO_COVERAGE)
  add_compile_options(--coverage -O0)
  add_link_options(--coverage)
endif()
