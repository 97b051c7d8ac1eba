# Fails when a header below ROOT has no reason to exist, when a public header leads to a private one,
# and when a folder of the tests mirrors none of the library's:
#   cmake -DROOT=DIR -P check_headers.cmake

cmake_minimum_required(VERSION 3.25)

include(${CMAKE_CURRENT_LIST_DIR}/../../cmake/ZelvoraHeaders.cmake)

# Rooms whose headers all have at least two includers. What Qt generates for the types of QML is one.
set(rooms base async platform outcome spec routing backend speech facade workbench adapters ui)

# What tests/ holds besides the library's folders.
set(other_tests docs examples hardening install layers support tools)

file(GLOB_RECURSE files RELATIVE ${ROOT}
  ${ROOT}/ZelvoraSDK/*.h ${ROOT}/ZelvoraSDK/*.cpp ${ROOT}/tools/*.h ${ROOT}/tools/*.cpp
  ${ROOT}/tests/*.h ${ROOT}/tests/*.cpp ${ROOT}/examples/*.h ${ROOT}/examples/*.cpp
  ${ROOT}/benchmarks/*.h ${ROOT}/benchmarks/*.cpp ${ROOT}/fuzz/*.cpp)
if(NOT files)
  message(FATAL_ERROR "no sources below '${ROOT}'")
endif()

set(includes "")
foreach(file IN LISTS files)
  file(STRINGS ${ROOT}/${file} lines REGEX "^[ \t]*#[ \t]*include[ \t]*<ZelvoraSDK/")
  string(REGEX REPLACE "[^;<]*<ZelvoraSDK/([^>]+)>[^;]*" "\\1" included "${lines}")
  list(APPEND includes ${included})
  string(REGEX REPLACE "^ZelvoraSDK/" "" header ${file})
  # The adapters, the views and the stand-ins have public headers of their own: all that are in no private folder.
  if(header IN_LIST zelvora_public_headers
     OR (file MATCHES "^ZelvoraSDK/(adapters|testing|ui)/.*\\.h$" AND NOT file MATCHES "/private/"))
    foreach(other IN LISTS included)
      if(NOT other IN_LIST zelvora_public_headers AND (other MATCHES "/private/"
         OR NOT other MATCHES "^(adapters|testing|ui)/"))
        message(SEND_ERROR "${file} is public and may not include <ZelvoraSDK/${other}>")
      endif()
    endforeach()
  endif()
endforeach()

foreach(header IN LISTS zelvora_public_headers)
  string(REGEX MATCH "^[^/]+" room ${header})
  if(EXISTS ${ROOT}/ZelvoraSDK/${room} AND NOT EXISTS ${ROOT}/ZelvoraSDK/${header})
    message(SEND_ERROR "the public header ${header} is missing")
  endif()
endforeach()

list(SORT includes)
list(JOIN includes " \n " includes)
set(includes " ${includes} ")
foreach(file IN LISTS files)
  if(NOT file MATCHES "^ZelvoraSDK/(([^/]+)/.*\\.h)$")
    continue()
  endif()
  set(header ${CMAKE_MATCH_1})
  if(NOT CMAKE_MATCH_2 IN_LIST rooms OR header IN_LIST zelvora_public_headers)
    continue()
  endif()
  file(STRINGS ${ROOT}/${file} for_qml REGEX "^ *QML_[A-Z_]+" LIMIT_COUNT 1)
  if(for_qml)
    continue()
  endif()
  string(FIND "${includes}" " ${header} " first)
  string(FIND "${includes}" " ${header} " last REVERSE)
  if(first EQUAL last)
    message(SEND_ERROR "${file} has fewer than two includers: put it where it is used")
  endif()
endforeach()

file(GLOB folders RELATIVE ${ROOT}/tests ${ROOT}/tests/*)
foreach(folder IN LISTS folders)
  if(IS_DIRECTORY ${ROOT}/tests/${folder} AND NOT folder IN_LIST other_tests
     AND NOT IS_DIRECTORY ${ROOT}/ZelvoraSDK/${folder})
    message(SEND_ERROR "tests/${folder} mirrors no folder of the library")
  endif()
endforeach()
