# Configures the engine alone and looks at what was searched for.
file(REMOVE_RECURSE ${WORK})
execute_process(
    COMMAND
        ${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK} -G ${GENERATOR} -D CMAKE_CXX_COMPILER=${COMPILER} -D
        UNITFLOW_BUILD_TOOLS=OFF -D UNITFLOW_BUILD_TESTS=OFF -D UNITFLOW_BUILD_BENCHMARKS=OFF
    RESULT_VARIABLE result
    OUTPUT_VARIABLE output
    ERROR_VARIABLE output)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${output}")
endif()
file(STRINGS ${WORK}/CMakeCache.txt packages REGEX "^[^#/]*_DIR:PATH=")
if(NOT packages)
    message(FATAL_ERROR "no package was searched for, so this looks at the wrong lines")
endif()
list(FILTER packages EXCLUDE REGEX "^Qt5(Core)?_DIR:")
if(packages)
    message(FATAL_ERROR "more than Qt 5 Core was searched for: ${packages}")
endif()
