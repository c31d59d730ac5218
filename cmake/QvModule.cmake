# qv_module(<target> DIR <dir> [DEPS <targets>...] [TEST_DEPS <targets>...])
# One shared library from <dir>/src and, when <dir>/test holds sources, one
# GoogleTest executable <target>Test registered with CTest.
function(qv_module target)
  cmake_parse_arguments(M "" "DIR" "DEPS;TEST_DEPS" ${ARGN})
  file(GLOB _src CONFIGURE_DEPENDS ${M_DIR}/src/*.cpp)
  add_library(${target} SHARED ${_src})
  target_include_directories(${target} PUBLIC ${M_DIR}/src)
  target_link_libraries(${target} PUBLIC ${M_DEPS})
  qv_module_tests(${target} "${M_DIR}/test" ${M_TEST_DEPS})
endfunction()

# qv_module_tests(<target> <test dir glob> [deps...]): the test executable of a
# library from every *.cpp in the matching test folders.
function(qv_module_tests target dirs)
  file(GLOB _tests CONFIGURE_DEPENDS ${dirs}/*.cpp)
  if(_tests)
    add_executable(${target}Test ${_tests})
    target_link_libraries(${target}Test PRIVATE ${target} ${ARGN} GTest::gtest GTest::gmock)
    # Libraries announce their packages when loaded, even with no symbol called.
    target_link_options(${target}Test PRIVATE "LINKER:--no-as-needed")
    target_compile_definitions(${target}Test PRIVATE QV_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
    # Sanitized programs on a busy machine take seconds just to list their tests.
    gtest_discover_tests(${target}Test DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 120
                         PROPERTIES ENVIRONMENT "QV_RESOURCES=${CMAKE_SOURCE_DIR}/resources")
  endif()
endfunction()
