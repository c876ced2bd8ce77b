# Writes the files of the page into a header: cmake -DOUTPUT=page_files.h "-DFILES=a;b" -P embed.cmake
set(TYPES html text/html css text/css js text/javascript svg image/svg+xml otf font/otf)
foreach(file ${FILES})
  get_filename_component(name ${file} NAME)
  get_filename_component(extension ${file} LAST_EXT)
  string(SUBSTRING ${extension} 1 -1 extension)
  list(FIND TYPES ${extension} at)
  math(EXPR at "${at} + 1")
  list(GET TYPES ${at} type)
  string(MAKE_C_IDENTIFIER ${name} symbol)
  file(READ ${file} bytes HEX)
  # Browsers refuse a font with a space in its internal name: "Cherry Bomb-Regular".
  string(REPLACE 43686572727920426f6d622d526567756c6172 4368657272792d426f6d622d526567756c6172
         bytes "${bytes}")
  string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
  set(path /${name})
  if(name STREQUAL index.html)
    set(path /)
  endif()
  string(APPEND arrays "inline constexpr unsigned char ${symbol}[] = {${bytes}};\n")
  string(APPEND rows "    {\"${path}\", \"${type}\", ${symbol}, sizeof ${symbol}},\n")
endforeach()
file(WRITE ${OUTPUT} "// Written by embed.cmake.
#pragma once
#include <cstddef>
${arrays}
struct PageFile {
  const char* path;
  const char* type;
  const unsigned char* bytes;
  std::size_t size;
};
inline constexpr PageFile PAGE_FILES[] = {
${rows}};
")
