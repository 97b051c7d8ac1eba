# How every target of this project is built: one function per kind of room.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# A shared library shows only what ZELVORA_EXPORT marks, and nothing of Boost: zelvora_show_own_names below.
if(BUILD_SHARED_LIBS)
  set(CMAKE_CXX_VISIBILITY_PRESET hidden)
  set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
endif()

# Flags that all targets share. Carried by an interface target so that nothing leaks to consumers.
# Designated initialisers leave out fields on purpose, which -Wextra takes for an oversight.
add_library(zelvora_flags INTERFACE)
target_compile_options(zelvora_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                               -Wno-missing-field-initializers
  # Asio allocates coroutine frames by hand; when g++ does not inline, it takes their release for a mismatch.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-mismatched-new-delete>)
# False alarms of g++ 12 about "…" + text and compared bytes, at -O3 and between the sanitizers' code.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(zelvora_flags INTERFACE
    $<$<CONFIG:Release>:-Wno-restrict;-Wno-stringop-overread>)
  if(ZELVORA_SANITIZE)
    target_compile_options(zelvora_flags INTERFACE -Wno-array-bounds)
  endif()
endif()
if(ZELVORA_WARNINGS_AS_ERRORS)
  target_compile_options(zelvora_flags INTERFACE -Werror)
endif()
if(ZELVORA_HARDEN)
  target_link_libraries(zelvora_flags INTERFACE zelvora_hardening)
endif()
if(ZELVORA_SANITIZE)
  add_compile_options(-fsanitize=${ZELVORA_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ZELVORA_SANITIZE})
  if(ZELVORA_SANITIZE MATCHES undefined)
    add_compile_options(-fno-sanitize-recover=undefined)
  endif()
  if(ZELVORA_SANITIZE MATCHES thread)
    # The thread sanitizer does not model the fences that Asio sets around handlers.
    add_compile_definitions(BOOST_ASIO_DISABLE_FENCED_BLOCK)
    # One fence is left, where an executor is released, and g++ warns of it.
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-tsan>)
  endif()
endif()

# Asio and the other headers of Boost.
add_library(zelvora_boost INTERFACE)
target_link_libraries(zelvora_boost INTERFACE Boost::headers Threads::Threads)
target_compile_definitions(zelvora_boost INTERFACE BOOST_ASIO_NO_DEPRECATED)
set_target_properties(zelvora_boost PROPERTIES EXPORT_NAME boost)
if(ZELVORA_INSTALL)
  install(TARGETS zelvora_boost EXPORT ZelvoraSDK)
endif()

# zelvora_precompiled(NAME TYPE HEADERS … USES …): headers that most files read, for the targets that say
# zelvora_precompile(TARGET NAME). They shorten builds from scratch. They are not the rule because of their
# effects on compiler caches, on warnings and on forgotten includes. TYPE is STATIC or EXECUTABLE, because
# code for the two is compiled differently.
function(zelvora_precompiled name type)
  cmake_parse_arguments(arg "" "" "HEADERS;USES" ${ARGN})
  if(NOT ZELVORA_PRECOMPILE_HEADERS)
    return()
  endif()
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "int main() {}\n")
  if(type STREQUAL EXECUTABLE)
    add_executable(${name} ${source})
  else()
    add_library(${name} ${type} ${source})
  endif()
  target_precompile_headers(${name} PRIVATE ${arg_HEADERS})
  target_link_libraries(${name} PRIVATE zelvora_flags ${arg_USES})
endfunction()

function(zelvora_precompile target name)
  if(ZELVORA_PRECOMPILE_HEADERS)
    target_precompile_headers(${target} REUSE_FROM ${name})
    # Where a library's own definitions rule it out, headers are read as usual.
    set_target_properties(${target} PROPERTIES PCH_WARN_INVALID OFF)
  endif()
endfunction()

# Compiles a target's sources as one file, to shorten builds from scratch. Then no two sources of a room may
# use one name in their unnamed namespaces, which readers like, too.
function(zelvora_unite target)
  if(ZELVORA_PRECOMPILE_HEADERS)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 0)
    # g++ treats an included source file as a header.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
  endif()
endfunction()

# zelvora_library(NAME SOURCES … USES … PRIVATE …): one layer or adapter, as target zelvora_NAME, alias
# Zelvora::NAME inside this tree. PRIVATE names the libraries that only its sources know.
function(zelvora_library name)
  cmake_parse_arguments(arg "" "" "SOURCES;USES;PRIVATE" ${ARGN})
  if(arg_SOURCES)
    add_library(zelvora_${name} STATIC ${arg_SOURCES})
    set(scope PUBLIC)
    target_link_libraries(zelvora_${name} PRIVATE zelvora_flags ${arg_PRIVATE})
    set_target_properties(zelvora_${name} PROPERTIES ZELVORA_STANDS_ON "${arg_PRIVATE}")
    zelvora_precompile(zelvora_${name} zelvora_core_headers)
    zelvora_unite(zelvora_${name})
  else()
    add_library(zelvora_${name} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_include_directories(zelvora_${name} ${scope} ${PROJECT_SOURCE_DIR})
  target_compile_features(zelvora_${name} ${scope} cxx_std_20)
  target_link_libraries(zelvora_${name} ${scope} ${arg_USES})
  # Where the tree is part of another project, Zelvora::host is the whole library of that name.
  if(PROJECT_IS_TOP_LEVEL OR NOT name STREQUAL "host")
    add_library(Zelvora::${name} ALIAS zelvora_${name})
  endif()
endfunction()

# zelvora_show_own_names(TARGET): keeps a shared library to what ZELVORA_EXPORT marks. Boost's headers make
# their templates visible everywhere; exports.map hides them again.
function(zelvora_show_own_names target)
  if(BUILD_SHARED_LIBS)
    set(map ${PROJECT_SOURCE_DIR}/cmake/exports.map)
    target_link_options(${target} PRIVATE LINKER:--version-script=${map})
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${map})
  endif()
endfunction()

# zelvora_product(NAME FILE ROOMS … USES …): what an application links, lib<FILE>, made of the rooms given;
# Zelvora::NAME here and once installed. Shared or static by BUILD_SHARED_LIBS. The tests link the rooms
# themselves, because a shared library hides their inner parts.
function(zelvora_product name file)
  cmake_parse_arguments(arg "" "" "ROOMS;USES" ${ARGN})
  set(target zelvora_${name}_product)
  add_library(${target})
  foreach(room IN LISTS arg_ROOMS)
    get_target_property(type zelvora_${room} TYPE)
    if(NOT type STREQUAL INTERFACE_LIBRARY)
      target_sources(${target} PRIVATE $<TARGET_OBJECTS:zelvora_${room}>)
      get_target_property(stands_on zelvora_${room} ZELVORA_STANDS_ON)
      if(stands_on)
        target_link_libraries(${target} PRIVATE ${stands_on})
      endif()
    endif()
  endforeach()
  target_link_libraries(${target} PUBLIC ${arg_USES})
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
                                              $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX OUTPUT_NAME ${file}
    EXPORT_NAME ${name} VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  if(BUILD_SHARED_LIBS AND NOT ZELVORA_SANITIZE)
    # A missing symbol shows up here and not in an application's build.
    target_link_options(${target} PRIVATE LINKER:--no-undefined LINKER:--exclude-libs,ALL)
  endif()
  zelvora_show_own_names(${target})
  if(NOT TARGET Zelvora::${name})
    add_library(Zelvora::${name} ALIAS ${target})
  endif()
  zelvora_install_library(${target})
endfunction()

# zelvora_install_library(TARGET): the library itself for users of programs, its link and archive for those
# who build programs.
function(zelvora_install_library target)
  if(ZELVORA_INSTALL)
    install(TARGETS ${target} EXPORT ZelvoraSDK
      LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT devel
      ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT devel)
  endif()
endfunction()
