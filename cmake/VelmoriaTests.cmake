# The test programs. Each exists once it has sources.
#
# unit_<room>       tests/unit/<room>
# contract_tests    tests/contract, one suite per platform door, over the fakes and over the real ones
# scenario_tests    tests/scenario, whole jobs over real databases
# golden_tests      tests/golden, exact texts and bytes
#
# ctest knows every test by itself, and every unit program once more as a whole in shuffled order.

find_package(SQLite3 REQUIRED)
include(GoogleTest)

function(velmoria_test_settings target)
  velmoria_compile_settings(${target})
  target_include_directories(${target} SYSTEM PRIVATE ${ODBC_INCLUDE_DIRS})
  target_compile_definitions(${target} PRIVATE VELMORIA_TESTS_DIR="${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${target} PRIVATE GTest::gmock SQLite::SQLite3)
endfunction()

if(VELMORIA_PCH)
  velmoria_precompiled(pch_tests ${VELMORIA_STD_HEADERS} <boost/smart_ptr/intrusive_ptr.hpp> <gmock/gmock.h>
    <gtest/gtest.h>)
  velmoria_test_settings(pch_tests)
endif()

# A static archive: a test program takes from it only the builders and fakes that it uses.
file(GLOB_RECURSE support_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/support/*.cpp)
list(FILTER support_sources EXCLUDE REGEX "/tests/support/components/")
if(support_sources)
  add_library(test_support STATIC ${support_sources})
  velmoria_test_settings(test_support)
  if(VELMORIA_PCH)
    target_precompile_headers(test_support REUSE_FROM pch_tests)
  endif()
endif()

# velmoria_test_component(name source): lib<name>.so, a component library in the folder components beside the test
# programs. What it needs of Velmoria it takes from the program that loads it.
function(velmoria_test_component name source)
  add_library(component_${name} SHARED ${PROJECT_SOURCE_DIR}/tests/support/components/${source})
  velmoria_compile_settings(component_${name})
  set_target_properties(component_${name} PROPERTIES OUTPUT_NAME ${name}
    LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/components CXX_VISIBILITY_PRESET hidden)
endfunction()
velmoria_test_component(Parts parts.cpp)
velmoria_test_component(small parts.cpp)
velmoria_test_component(Hollow hollow.cpp)
velmoria_test_component(Faulty faulty.cpp)
velmoria_test_component(Trade trade.cpp)

# velmoria_tests(name folder [ROOMS room...]): over the rooms given, or over the whole library.
function(velmoria_tests name folder)
  cmake_parse_arguments(arg "" "TIMEOUT" "ROOMS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  velmoria_test_settings(${name})
  if(VELMORIA_PCH)
    target_precompile_headers(${name} REUSE_FROM pch_tests)
  endif()
  if(arg_ROOMS)
    foreach(room IN LISTS arg_ROOMS)
      if(TARGET room_${room})
        target_sources(${name} PRIVATE $<TARGET_OBJECTS:room_${room}>)
      endif()
    endforeach()
    target_link_libraries(${name} PRIVATE velmoria_link)
  else()
    target_link_libraries(${name} PRIVATE velmoria_whole)
  endif()
  if(TARGET test_support AND NOT arg_ROOMS STREQUAL "runtime")
    target_link_libraries(${name} PRIVATE test_support)
  endif()
  target_link_libraries(${name} PRIVATE GTest::gmock_main)

  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  # Counters are written when a process ends: one process for each program, not one for each test.
  if(VELMORIA_COVERAGE)
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES TIMEOUT 1800)
    return()
  endif()
  gtest_discover_tests(${name} TEST_PREFIX "${name}/" NO_PRETTY_VALUES DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${arg_TIMEOUT})
  if(name MATCHES "^unit_")
    add_test(NAME ${name}/shuffled COMMAND ${name} --gtest_shuffle --gtest_brief=1)
    set_tests_properties(${name}/shuffled PROPERTIES TIMEOUT 600)
  endif()
endfunction()

foreach(room IN LISTS VELMORIA_ROOMS)
  if(room STREQUAL "runtime")
    velmoria_tests(unit_runtime tests/unit/runtime ROOMS runtime)
  elseif(room STREQUAL "platform")
    velmoria_tests(unit_platform tests/unit/platform ROOMS runtime platform)
  else()
    velmoria_tests(unit_${room} tests/unit/${room})
  endif()
endforeach()
# It has no test_support, which needs other rooms; this builder needs none.
target_sources(unit_runtime PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/row_chunk_builder.cpp)
set_target_properties(unit_platform PROPERTIES ENABLE_EXPORTS ON)
add_dependencies(unit_platform component_Parts component_small component_Hollow component_Faulty)
velmoria_tests(contract_tests tests/contract)
velmoria_tests(golden_tests tests/golden)
if(VELMORIA_EXAMPLES)
  add_dependencies(golden_tests orders)
endif()
velmoria_tests(scenario_tests tests/scenario TIMEOUT 600)
set_target_properties(scenario_tests PROPERTIES ENABLE_EXPORTS ON)
add_dependencies(scenario_tests component_Trade)
