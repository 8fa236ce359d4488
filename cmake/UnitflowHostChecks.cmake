# unitflow_add_host_checks(<target> [COMMAND <command>...])
#
# Registers a test for each check of a program that calls hostkit::run, named <target>.<check>.
# COMMAND is how the program is started when the target's own file is not enough.
#
# One test for each check, because a host that is wrong enough makes the engine stop the process:
# that check fails then, and the others still tell what they find. The names are asked of the program
# when the tests are run, so nothing has to be built to configure, and a newer engine brings its new
# checks along.
function(unitflow_add_host_checks target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" COMMAND)
    if(NOT arg_COMMAND)
        set(arg_COMMAND $<TARGET_FILE:${target}>)
    endif()
    set(base ${CMAKE_CURRENT_BINARY_DIR}/${target}_host_checks)
    file(
        GENERATE
        OUTPUT ${base}_$<CONFIG>.cmake
        CONTENT
            "set(command [==[$<JOIN:${arg_COMMAND},]==] [==[>]==])
execute_process(COMMAND \${command} --list OUTPUT_VARIABLE names RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    add_test([==[${target}.cannot_list_its_checks]==] \${command} --list)
    return()
endif()
string(REGEX REPLACE \"\\n$\" \"\" names \"\${names}\")
string(REPLACE \"\\n\" \";\" names \"\${names}\")
foreach(name IN LISTS names)
    add_test(\"${target}.\${name}\" \${command} \${name})
    set_tests_properties(\"${target}.\${name}\" PROPERTIES SKIP_REGULAR_EXPRESSION \"^skipped \")
endforeach()
")
    # The configuration is known when the tests are run, or from the start if there is but one.
    file(WRITE ${base}.cmake
         "if(NOT CTEST_CONFIGURATION_TYPE)
    set(CTEST_CONFIGURATION_TYPE \"${CMAKE_BUILD_TYPE}\")
endif()
include(\"${base}_\${CTEST_CONFIGURATION_TYPE}.cmake\" OPTIONAL)
")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${base}.cmake)
endfunction()
