# Applied to our own targets only: a host that includes our headers keeps its own settings.
function(unitflow_warnings target)
    target_compile_options(
        ${target}
        PRIVATE -Wall
                -Wextra
                -Wpedantic
                -Wconversion
                $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local>
                -Wnon-virtual-dtor
                -Woverloaded-virtual
                -Wold-style-cast)
endfunction()
