# Fails when a page of ROOT links to a file that is not there, or when README shows another example
# program than the one that is compiled:
#   cmake -DROOT=DIR -P check_docs.cmake

cmake_minimum_required(VERSION 3.25)

file(GLOB_RECURSE pages RELATIVE ${ROOT} ${ROOT}/docs/*.md ${ROOT}/ZelvoraSDK/*.md ${ROOT}/adapters/*.md)
foreach(page IN ITEMS README.md CONTRIBUTING.md CHANGELOG.md LISTS pages)
  file(READ ${ROOT}/${page} text)
  # Brackets would hold list elements together.
  string(REPLACE "](" "\nlink:" text "${text}")
  string(REPLACE "[" "" text "${text}")
  string(REPLACE "]" "" text "${text}")
  string(REGEX MATCHALL "\nlink:[^)#: \n]+[)#]" links "${text}")
  cmake_path(GET page PARENT_PATH folder)
  foreach(link IN LISTS links)
    string(REGEX REPLACE "\nlink:(.*)[)#]" "\\1" target "${link}")
    if(NOT EXISTS ${ROOT}/${folder}/${target})
      message(SEND_ERROR "${page} links to ${target}, which is not there")
    endif()
  endforeach()
endforeach()

file(READ ${ROOT}/README.md readme)
file(READ ${ROOT}/examples/hello/main.cpp example)
string(FIND "${readme}" "```cpp\n${example}```" place)
if(place EQUAL -1)
  message(SEND_ERROR "README.md does not show examples/hello/main.cpp as it is")
endif()
