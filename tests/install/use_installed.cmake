# Installs into an empty folder, moves it, and builds, runs and checks programs with nothing but
# that. Their sources are copied away from the repository.

function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output
                    ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        list(JOIN ARGV " " command)
        message(FATAL_ERROR "${command}\nended with ${result}:\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

set(flags "")
if(SANITIZE)
    set(flags -fsanitize=${SANITIZE})
endif()

# Builds a project and runs its tests, all of those that are named after it.
function(build_and_test project)
    get_filename_component(name ${project} NAME)
    file(COPY ${project} DESTINATION ${WORK})
    run(${CMAKE_COMMAND}
        -S ${WORK}/${name}
        -B ${WORK}/${name}-build
        -G ${GENERATOR}
        -D CMAKE_BUILD_TYPE=${CONFIG}
        -D CMAKE_CXX_COMPILER=${COMPILER}
        -D CMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}
        -D CMAKE_CXX_FLAGS=${flags}
        -D CMAKE_PREFIX_PATH=${WORK}/prefix)
    run(${CMAKE_COMMAND} --build ${WORK}/${name}-build --config "${CONFIG}")
    run(${CMAKE_CTEST_COMMAND} --test-dir ${WORK}/${name}-build -C "${CONFIG}" --output-on-failure
        --no-tests=error)
    foreach(test IN LISTS ARGN)
        if(NOT output MATCHES "${test} [.]+ +Passed")
            message(FATAL_ERROR "The test ${test} did not run:\n${output}")
        endif()
    endforeach()
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --config "${CONFIG}" --prefix ${WORK}/elsewhere)
file(RENAME ${WORK}/elsewhere ${WORK}/prefix)

build_and_test(${SOURCE}/examples/embed embed.units_follow embed-checks.keys.of_properties_differ)
build_and_test(${SOURCE}/tests/install/filehost-user filehost_is_usable trace_is_usable)

if(EXISTS ${WORK}/prefix/bin/unitflow)
    run(${WORK}/prefix/bin/unitflow --version)
    if(NOT EXISTS ${WORK}/prefix/share/unitflow/description.schema.json)
        message(FATAL_ERROR "the schema of descriptions is not installed")
    endif()
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
bool isEmpty() { return DependencyWalkerDefinitions::getNodeTypeString().isEmpty(); }
")
    # A library, since a program would need a host.
    run(${COMPILER} -std=c++17 -fPIC -shared ${flags} ${WORK}/uses.cpp ${arguments} -o
        ${WORK}/libuses.so)
endif()
