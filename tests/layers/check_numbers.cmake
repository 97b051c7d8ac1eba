# Fails when a file of the library below ROOT writes or reads numbers by the C locale, which the
# toolkit of an application sets to the user's own: to_chars and from_chars never ask it.
#   cmake -DROOT=DIR -P check_numbers.cmake

cmake_minimum_required(VERSION 3.25)

# What asks the locale. Formats of whole numbers do not, so printf is refused with those of decimals.
set(refused
  "%[-+#0-9.*]*l?[aefgAEFG]"
  "(^|[^A-Za-z_])(strto(f|d|ld)|ato(f|i|l|ll)|sto(f|d|ld|i|l|ll|ul|ull)|[a-z]*scanf|to_wstring)[ ]*\\("
  "(^|[^A-Za-z_])(is|to)(alpha|upper|lower|space|digit|alnum|punct)[ ]*\\("
  "setlocale|<iomanip>|<format>")
# A stream must say that it does not ask the locale.
set(stream "<sstream>")
set(stream_excuse "imbue(std::locale::classic())")

file(GLOB_RECURSE files RELATIVE ${ROOT} ${ROOT}/ZelvoraSDK/*.h ${ROOT}/ZelvoraSDK/*.cpp)
if(NOT files)
  message(FATAL_ERROR "no sources below '${ROOT}'")
endif()
foreach(file IN LISTS files)
  foreach(pattern IN LISTS refused)
    file(STRINGS ${ROOT}/${file} lines REGEX "${pattern}")
    foreach(line IN LISTS lines)
      if(NOT line MATCHES "^[ ]*//")
        message(SEND_ERROR "${file} asks the C locale: ${line}")
      endif()
    endforeach()
  endforeach()
  file(STRINGS ${ROOT}/${file} streams REGEX "${stream}")
  if(streams)
    file(READ ${ROOT}/${file} text)
    string(FIND "${text}" "${stream_excuse}" place)
    if(place EQUAL -1)
      message(SEND_ERROR "${file} has a stream that asks the locale: write ${stream_excuse}")
    endif()
  endif()
endforeach()
