# How every part of the tree is compiled, and the functions that make rooms, the library and programs.

set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_SCAN_FOR_MODULES OFF)

find_program(VELMORIA_CCACHE ccache)
mark_as_advanced(VELMORIA_CCACHE)
if(VELMORIA_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER env CCACHE_SLOPPINESS=pch_defines,time_macros ${VELMORIA_CCACHE})
endif()
find_program(VELMORIA_MOLD mold)
mark_as_advanced(VELMORIA_MOLD)
if(VELMORIA_MOLD)
  add_link_options(-fuse-ld=mold)
endif()

# One place for language, warnings and instrumentation.
add_library(velmoria_options INTERFACE)
target_compile_features(velmoria_options INTERFACE cxx_std_20)
target_include_directories(velmoria_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(velmoria_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor
  $<$<BOOL:${VELMORIA_WERROR}>:-Werror>
  # g++ 12 sees overlapping copies in std::string's operator+ where there are none.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
target_compile_definitions(velmoria_options INTERFACE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
if(VELMORIA_SANITIZE)
  target_compile_options(velmoria_options INTERFACE
    -fsanitize=${VELMORIA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
    # The sanitizers' own instrumentation makes g++ 12 report unset values that are set.
    -Wno-maybe-uninitialized)
  target_link_options(velmoria_options INTERFACE -fsanitize=${VELMORIA_SANITIZE})
endif()
if(VELMORIA_COVERAGE)
  target_compile_options(velmoria_options INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(velmoria_options INTERFACE --coverage)
endif()
# The profile lies beside the objects, so both are made in one folder.
if(VELMORIA_PROFILE STREQUAL "record")
  target_compile_options(velmoria_options INTERFACE -fprofile-generate -fprofile-update=prefer-atomic)
  target_link_options(velmoria_options INTERFACE -fprofile-generate)
elseif(VELMORIA_PROFILE STREQUAL "use")
  target_compile_options(velmoria_options INTERFACE
    # What was never run has no profile, and what was changed since has one that does not fit.
    -fprofile-use -fprofile-correction -Wno-missing-profile -Wno-coverage-mismatch)
elseif(VELMORIA_PROFILE)
  message(FATAL_ERROR "VELMORIA_PROFILE is record or use, not ${VELMORIA_PROFILE}")
endif()
if(VELMORIA_PCH AND VELMORIA_CCACHE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(velmoria_options INTERFACE -fpch-preprocess)
endif()

function(velmoria_compile_settings target)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
  target_link_libraries(${target} PRIVATE velmoria_options Boost::headers Threads::Threads)
endfunction()

function(velmoria_library_settings target)
  velmoria_compile_settings(${target})
  set_target_properties(${target} PROPERTIES
    POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_compile_definitions(${target} PRIVATE VELMORIA_BUILDING)
endfunction()

# A target that exists for its precompiled header alone; others reuse it.
function(velmoria_precompiled name)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "")
  add_library(${name} OBJECT ${source})
  target_precompile_headers(${name} PRIVATE ${ARGN})
endfunction()

set(VELMORIA_STD_HEADERS <string> <string_view> <vector> <memory> <optional> <variant> <array> <algorithm> <span>
  <unordered_map> <utility> <cstdint>)
if(VELMORIA_PCH)
  velmoria_precompiled(pch_library ${VELMORIA_STD_HEADERS} <boost/smart_ptr/intrusive_ptr.hpp>)
  velmoria_library_settings(pch_library)
endif()

# What the objects of a room need when they are linked. One list, for the library and for the tests.
add_library(velmoria_link INTERFACE)
target_link_libraries(velmoria_link INTERFACE ${ODBC_LINK_LIBRARIES} $<LINK_ONLY:spdlog::spdlog> Threads::Threads)

# velmoria_room(name): the sources of velmoria/<name> as the object library room_<name>. An empty room is left out.
function(velmoria_room name)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/velmoria/${name}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_library(room_${name} OBJECT ${sources})
  velmoria_library_settings(room_${name})
  if(VELMORIA_PCH)
    target_precompile_headers(room_${name} REUSE_FROM pch_library)
  endif()
  if(name STREQUAL "platform")
    target_include_directories(room_platform SYSTEM PRIVATE ${ODBC_INCLUDE_DIRS})
    target_link_libraries(room_platform PRIVATE spdlog::spdlog)
  endif()
  set_property(GLOBAL APPEND PROPERTY VELMORIA_BUILT_ROOMS ${name})
endfunction()

# libvelmoria.so, and velmoria_whole: the same objects for tests, which also look at what the library hides.
function(velmoria_library)
  get_property(rooms GLOBAL PROPERTY VELMORIA_BUILT_ROOMS)
  add_library(velmoria_whole INTERFACE)
  target_link_libraries(velmoria_whole INTERFACE velmoria_link)
  foreach(room IN LISTS rooms)
    target_sources(velmoria_whole INTERFACE $<TARGET_OBJECTS:room_${room}>)
    list(APPEND objects $<TARGET_OBJECTS:room_${room}>)
  endforeach()
  if(NOT objects)
    return()
  endif()

  velmoria_public_headers(headers)
  add_library(velmoria SHARED ${objects})
  add_library(velmoria::velmoria ALIAS velmoria)
  target_sources(velmoria PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${headers})
  target_compile_features(velmoria PUBLIC cxx_std_20)
  target_link_libraries(velmoria PUBLIC Boost::headers PRIVATE $<BUILD_INTERFACE:velmoria_options>
    $<BUILD_INTERFACE:velmoria_link>)
  set_target_properties(velmoria PROPERTIES
    LINKER_LANGUAGE CXX VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  if(NOT VELMORIA_SANITIZE)
    target_link_options(velmoria PRIVATE -Wl,-z,defs)
  endif()
  velmoria_headers_alone(${headers})
  include(VelmoriaInstall)
endfunction()

# velmoria_program(name folder [library]): an executable over the library as a host sees it, or over another of its
# forms. An empty folder is left out.
function(velmoria_program name folder)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  find_package(SQLite3 REQUIRED)
  add_executable(${name} ${sources})
  velmoria_compile_settings(${name})
  target_include_directories(${name} SYSTEM PRIVATE ${ODBC_INCLUDE_DIRS})
  set(library velmoria)
  if(ARGN)
    set(library ${ARGN})
  endif()
  target_link_libraries(${name} PRIVATE ${library} velmoria_link SQLite::SQLite3)
endfunction()
