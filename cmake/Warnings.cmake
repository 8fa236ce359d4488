# Applied to our own targets only: a host that includes our headers keeps its own settings.
function(unitflow_warnings target)
    target_compile_options(
        ${target}
        PRIVATE -Wall
                -Wextra
                -Wpedantic
                -Wconversion
                -Wshadow
                -Wnon-virtual-dtor
                -Woverloaded-virtual
                -Wold-style-cast)
endfunction()
