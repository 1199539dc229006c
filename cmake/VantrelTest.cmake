# Every process a test starts carries this mark in its environment, so that a check after the
# suite finds any that is still running.
set(VANTREL_TEST_RUN_MARK "VANTREL_TEST_RUN=${CMAKE_BINARY_DIR}")

# vantrel_add_test(NAME source...): one Qt Test program per subject, run headless by CTest.
function(vantrel_add_test name)
    add_executable(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE vantrel vantrel_testsupport Qt6::Test)
    target_compile_definitions(${name} PRIVATE
        VANTREL_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data")
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;${VANTREL_TEST_RUN_MARK}"
        FIXTURES_REQUIRED test_processes
        TIMEOUT 300)
endfunction()
