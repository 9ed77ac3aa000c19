# The targets' common ground: warnings, standard, and one include root a folder, so that a header can
# only be reached through a declared dependency.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(tradewick_options INTERFACE)
target_compile_options(tradewick_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Werror
                       # what a form does not declare is as the engine has it
                       -Wno-missing-field-initializers)
target_compile_definitions(tradewick_options INTERFACE QT_NO_KEYWORDS QT_NO_CAST_FROM_BYTEARRAY QT_NO_FOREACH)

# tradewick_include_root(TARGET FOLDER): headers of FOLDER are included as "folder/name.h" and only by
# targets that link TARGET.
function(tradewick_include_root target folder)
  set(root ${CMAKE_BINARY_DIR}/include/${target})
  file(MAKE_DIRECTORY ${root})
  get_filename_component(name ${folder} NAME)
  file(CREATE_LINK ${folder} ${root}/${name} SYMBOLIC)
  target_include_directories(${target} PUBLIC ${root})
endfunction()

# tradewick_library(FOLDER DEPENDS ...): the library tradewick_FOLDER of all sources of the current folder.
function(tradewick_library folder)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h *.qrc)
  add_library(tradewick_${folder} STATIC ${sources})
  tradewick_include_root(tradewick_${folder} ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(tradewick_${folder} PUBLIC ${ARG_DEPENDS} PRIVATE tradewick_options)
endfunction()

# tradewick_test(FOLDER [ONCE] DEPENDS ...): the test program of the current folder; each of its tests is two of ctest's,
# on SQLite and, as "mariadb.…", on a server. ONCE: the tests bring a server of their own.
function(tradewick_test folder)
  cmake_parse_arguments(ARG "ONCE" "" "DEPENDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h)
  add_executable(test_${folder} ${sources})
  target_link_libraries(test_${folder} PRIVATE ${ARG_DEPENDS} tradewick_test_main tradewick_options)
  # A list does not come through the discovery of tests as one property: all behind its first item, and the properties
  # that follow, get lost without a word. So the environment is set by what runs the tests.
  set(environment env QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 TRADEWICK_BIN=${CMAKE_BINARY_DIR}/bin)
  set_target_properties(test_${folder} PROPERTIES CROSSCOMPILING_EMULATOR "${environment}")
  gtest_discover_tests(
    test_${folder}
    TEST_PREFIX ${folder}.
    NO_PRETTY_VALUES # the parameters' names stand in the tests' own
    DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 600)
  if(ARG_ONCE)
    return()
  endif()
  list(APPEND environment TRADEWICK_TEST_SERVER=${CMAKE_BINARY_DIR}/test-server)
  set_target_properties(test_${folder} PROPERTIES CROSSCOMPILING_EMULATOR "${environment}")
  gtest_discover_tests(
    test_${folder}
    TEST_PREFIX mariadb.${folder}.
    NO_PRETTY_VALUES
    TEST_LIST test_${folder}_mariadb
    DISCOVERY_MODE PRE_TEST
    PROPERTIES FIXTURES_REQUIRED mariadb TIMEOUT 600)
endfunction()
