# A sanitized build sanitizes everything: the engine, the host that carries it and the tests.
if(UNITFLOW_SANITIZE)
    add_compile_options(-fsanitize=${UNITFLOW_SANITIZE} -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${UNITFLOW_SANITIZE})
endif()
