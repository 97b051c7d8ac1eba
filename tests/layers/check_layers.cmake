# Fails when an include of the library or of an adapter below ROOT runs against the layers:
#   cmake -DROOT=DIR -P check_layers.cmake

cmake_minimum_required(VERSION 3.25)

# What the files of each layer may include besides their own folder and the standard library:
# other layers by name, libraries by the beginning of the include.
set(layers      base async platform outcome spec routing backend speech facade workbench testing)
set(base        boost/ utf8proc.h)
set(async       base boost/)
set(platform    base async boost/)
set(outcome     base async boost/)
set(spec        base outcome platform boost/)
set(routing     base async platform outcome spec boost/)
set(backend     base async platform outcome spec routing boost/)
set(speech      base async platform boost/)
set(facade      base async platform outcome spec routing backend speech boost/)
set(workbench   base outcome spec routing facade boost/)
set(testing     base async platform boost/)
set(ui          base async platform outcome spec routing backend speech facade boost/ Q)
# What several recognisers share has its own folder.
set(adapter     base async platform boost/ ZelvoraSDK/adapters/audio/)

# The two front doors lie above their rooms but belong to them.
function(in_its_room file out)
  string(REGEX REPLACE "^ZelvoraSDK/platform\\.h$" "ZelvoraSDK/platform/platform.h" file "${file}")
  string(REGEX REPLACE "^ZelvoraSDK/zelvora\\.h$" "ZelvoraSDK/facade/zelvora.h" file "${file}")
  set(${out} ${file} PARENT_SCOPE)
endfunction()

# may_include(FILE OUT): what an include in FILE may begin with.
function(may_include file out)
  string(REGEX MATCH "^ZelvoraSDK/(adapters/)?([^/]+)/" folder "${file}")
  set(room ${CMAKE_MATCH_2})
  if(folder STREQUAL "")
    set(uses "")  # a header at the top, for everyone: the standard library only
  elseif(folder STREQUAL "ZelvoraSDK/adapters/host/")
    set(uses ${adapter} ZelvoraSDK/adapters/)
  elseif(folder MATCHES "^ZelvoraSDK/adapters/")
    set(uses ${adapter})
  elseif(room STREQUAL "ui" OR room IN_LIST layers)
    set(uses ${${room}})
  else()
    message(SEND_ERROR "${folder} is no known layer")
  endif()
  list(TRANSFORM uses REPLACE "^([a-z]+)$" "ZelvoraSDK/\\1/")
  set(${out} ${folder} ${uses} PARENT_SCOPE)
endfunction()

# is_allowed(FILE INCLUDE OUT)
function(is_allowed file include out)
  set(${out} TRUE PARENT_SCOPE)
  if(include MATCHES "^[a-z0-9_]+$")  # the standard library
    return()
  endif()
  # A private folder is for its own room, and no public header leads into it: it is not installed. The private
  # folder that the recognisers share is for all of them.
  if(include MATCHES "^ZelvoraSDK/adapters/audio/private/"
     AND file MATCHES "^ZelvoraSDK/adapters/(pocketsphinx|sherpa)/(private/|.*\\.cpp$)")
    return()
  endif()
  if(include MATCHES "^ZelvoraSDK/(adapters/)?[^/]+/private/")
    string(REGEX MATCH "^ZelvoraSDK/(adapters/)?[^/]+/" room "${include}")
    if(NOT file MATCHES "^${room}(private/|.*\\.cpp$)")
      set(${out} FALSE PARENT_SCOPE)
    endif()
    return()
  endif()
  # In its sources and private headers an adapter may include any other library.
  if(file MATCHES "^ZelvoraSDK/adapters/.*(\\.cpp|/private/[^/]*)$"
     AND NOT include MATCHES "^(ZelvoraSDK|tools|tests|examples|benchmarks|fuzz)/")
    return()
  endif()
  in_its_room(${file} file)
  in_its_room(${include} include)
  may_include(${file} beginnings)
  foreach(beginning IN LISTS beginnings)
    string(FIND "${include}" "${beginning}" place)
    if(place EQUAL 0)
      return()
    endif()
  endforeach()
  set(${out} FALSE PARENT_SCOPE)
endfunction()

file(GLOB_RECURSE files RELATIVE ${ROOT} ${ROOT}/ZelvoraSDK/*.h ${ROOT}/ZelvoraSDK/*.cpp)
if(NOT files)
  message(FATAL_ERROR "no sources below '${ROOT}'")
endif()
foreach(file IN LISTS files)
  file(STRINGS ${ROOT}/${file} lines REGEX "^[ \t]*#[ \t]*include")
  foreach(line IN LISTS lines)
    if(NOT line MATCHES "include[ \t]*<([^>]+)>")
      message(SEND_ERROR "${file}: write the path from the root, in angle brackets: ${line}")
      continue()
    endif()
    set(include ${CMAKE_MATCH_1})
    is_allowed(${file} ${include} allowed)
    if(NOT allowed)
      message(SEND_ERROR "${file} may not include <${include}>")
    endif()
  endforeach()
endforeach()
