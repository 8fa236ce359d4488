# Fails when a header that is meant for others is on no list, or a list names one that is not there.
include(${SOURCE}/cmake/PublicHeaders.cmake)

file(GLOB_RECURSE engine RELATIVE ${SOURCE}/engine ${SOURCE}/engine/*.h)
list(FILTER engine EXCLUDE REGEX "^(internal|patterns)/")
file(GLOB hostkit RELATIVE ${SOURCE} ${SOURCE}/hostkit/*.h)

file(GLOB trace RELATIVE ${SOURCE} ${SOURCE}/trace/*.h)

function(compare name listed found)
    list(SORT listed)
    list(SORT found)
    if(NOT listed STREQUAL found)
        message(SEND_ERROR "The headers of ${name} and their list in cmake/PublicHeaders.cmake "
                           "differ.\nlisted: ${listed}\nfound:  ${found}")
    endif()
endfunction()

compare("the engine" "${UNITFLOW_ENGINE_HEADERS};${UNITFLOW_HOST_HEADERS}" "${engine}")
compare("the host kit" "${UNITFLOW_HOSTKIT_HEADERS}" "${hostkit}")
compare("the traces" "${UNITFLOW_TRACE_HEADERS}" "${trace}")
