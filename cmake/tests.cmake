include(GoogleTest)

# For the sanitizer presets: all test programs that need neither server nor window, and those that need a server.
add_custom_target(unit_tests)
add_custom_target(session_tests)

# tolvenary_test(NAME LABEL unit|session|window SOURCES ... LINKS ... [TIMEOUT seconds] [ENVIRONMENT VARIABLE=VALUE]
# [WHOLE]): one test program. CTest knows each of its tests under the label, or the WHOLE as one, if the tests share
# something that takes seconds to set up.
function(tolvenary_test name)
  cmake_parse_arguments(test "WHOLE" "LABEL;TIMEOUT;ENVIRONMENT" "SOURCES;LINKS" ${ARGN})
  if(NOT test_TIMEOUT)
    set(test_TIMEOUT 60)
  endif()
  add_executable(${name} ${test_SOURCES})
  target_link_libraries(${name} PRIVATE ${test_LINKS} GTest::gmock GTest::gtest GTest::gtest_main tolvenary_rules)
  target_compile_options(${name} PRIVATE $<$<CONFIG:RelWithDebInfo>:-O1 -g1>)
  # Tests that hear or see run alone: they would measure their neighbours.
  set(serial TRUE)
  if(NOT test_LABEL STREQUAL "window")
    add_dependencies(${test_LABEL}_tests ${name})
  endif()
  if(test_LABEL STREQUAL "unit")
    set(serial FALSE)
  endif()
  set(properties LABELS ${test_LABEL} TIMEOUT ${test_TIMEOUT} RUN_SERIAL ${serial})
  if(test_ENVIRONMENT)
    list(APPEND properties ENVIRONMENT ${test_ENVIRONMENT})
  endif()
  if(test_WHOLE)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES ${properties})
    return()
  endif()
  gtest_discover_tests(
    ${name}
    TEST_PREFIX "${name}."
    DISCOVERY_TIMEOUT 60
    PROPERTIES ${properties}
  )
endfunction()
