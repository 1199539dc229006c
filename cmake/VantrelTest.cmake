# Every process a test starts carries this mark in its environment, so that a check after the
# suite finds any that is still running.
set(VANTREL_TEST_RUN_MARK "VANTREL_TEST_RUN=${CMAKE_BINARY_DIR}")
if(VANTREL_SANITIZE)
    # Any report ends the test with a failure, with the stack that led to it.
    string(APPEND VANTREL_TEST_RUN_MARK ";ASAN_OPTIONS=halt_on_error=1:detect_leaks=1"
           ";UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1")
endif()

# vantrel_add_test(NAME source...): one Qt Test program per subject, run headless by CTest.
function(vantrel_add_test name)
    vantrel_add_test_on(${name} "vantrel;vantrel_testsupport" ${ARGN})
endfunction()

# vantrel_add_test_on(NAME LIBRARIES source...): the same, linked with the given libraries only, so
# that a test of logic without widgets does not build when that logic needs one.
function(vantrel_add_test_on name libraries)
    add_executable(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE ${libraries} Qt6::Test)
    target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/support)
    target_compile_definitions(${name} PRIVATE
        VANTREL_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data")
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;${VANTREL_TEST_RUN_MARK}"
        FIXTURES_REQUIRED test_processes
        TIMEOUT 300)
endfunction()
