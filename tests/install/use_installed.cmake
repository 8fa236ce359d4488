# Installs into an empty folder, moves it, and builds, runs and checks the example with nothing but
# that: the example's sources are copied away from the repository.

function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output
                    ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        list(JOIN ARGV " " command)
        message(FATAL_ERROR "${command}\nended with ${result}:\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --config "${CONFIG}" --prefix ${WORK}/elsewhere)
file(RENAME ${WORK}/elsewhere ${WORK}/prefix)
file(COPY ${SOURCE}/examples/embed DESTINATION ${WORK})

set(flags "")
if(SANITIZE)
    set(flags -fsanitize=${SANITIZE})
endif()
run(${CMAKE_COMMAND}
    -S ${WORK}/embed
    -B ${WORK}/build
    -G ${GENERATOR}
    -D CMAKE_BUILD_TYPE=${CONFIG}
    -D CMAKE_CXX_COMPILER=${COMPILER}
    -D CMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}
    -D CMAKE_CXX_FLAGS=${flags}
    -D CMAKE_PREFIX_PATH=${WORK}/prefix)
run(${CMAKE_COMMAND} --build ${WORK}/build --config "${CONFIG}")
run(${CMAKE_CTEST_COMMAND} --test-dir ${WORK}/build -C "${CONFIG}" --output-on-failure
    --no-tests=error)
if(NOT output MATCHES "embed\\.units_follow .*Passed" OR NOT output MATCHES
                                                         "embed-checks\\.tree\\..*Passed")
    message(FATAL_ERROR "The example's own tests did not run:\n${output}")
endif()

# pkg-config finds the moved folder too.
find_program(PKG_CONFIG NAMES pkg-config)
if(PKG_CONFIG)
    file(GLOB_RECURSE pc ${WORK}/prefix/unitflow.pc)
    get_filename_component(pc_folder ${pc} DIRECTORY)
    set(ENV{PKG_CONFIG_PATH} ${pc_folder})
    run(${PKG_CONFIG} --cflags --libs unitflow)
    string(STRIP "${output}" output)
    separate_arguments(arguments UNIX_COMMAND "${output}")
    file(WRITE ${WORK}/uses.cpp "#include \"DependencyWalkerDefinitions.h\"
int main() { return DependencyWalkerDefinitions::getNodeTypeString().isEmpty() ? 1 : 0; }
")
    # A library, since a program would need a host.
    run(${COMPILER} -std=c++17 -fPIC -shared ${flags} ${WORK}/uses.cpp ${arguments} -o
        ${WORK}/libuses.so)
endif()
