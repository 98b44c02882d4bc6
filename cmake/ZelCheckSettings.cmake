# Refuses settings that would only show when the program runs: an address that no browser is asked for, a store that
# nobody can open.

get_cmake_property(names CACHE_VARIABLES)
list(FILTER names INCLUDE REGEX "^ZEL_.*_URL$")
foreach(name IN LISTS names)
    # Qt takes no others: neither these characters nor a "%" without two digits behind it.
    if(NOT ${name} MATCHES "^https?://[A-Za-z0-9.-]+(:[0-9]+)?([/?#][^] \"<>\\^`{|}[]*)?$"
            OR ${name} MATCHES "%([^0-9A-Fa-f]|.[^0-9A-Fa-f]|.?$)")
        message(FATAL_ERROR "${name} is no http or https address: \"${${name}}\"")
    endif()
endforeach()
if(ZEL_HOME_URL MATCHES "[?#&]")
    message(FATAL_ERROR "Nothing can lie below ZEL_HOME_URL: \"${ZEL_HOME_URL}\"")
endif()
if(NOT ZEL_CONTACT_EMAIL MATCHES "^[^@ ]+@[^@ ]+$")
    message(FATAL_ERROR "ZEL_CONTACT_EMAIL is no e-mail address: \"${ZEL_CONTACT_EMAIL}\"")
endif()
foreach(name ZEL_CONTACT_EMAIL ZEL_MAKER_SENTENCE)
    if(${name} MATCHES "[\"\\\n]")
        message(FATAL_ERROR "${name} holds a quote, a backslash or a line break: \"${${name}}\"")
    endif()
endforeach()
string(LENGTH "${ZEL_SCENE_KEY}" length)
if(NOT length EQUAL 24)
    message(FATAL_ERROR "ZEL_SCENE_KEY has ${length} bytes, not 24")
endif()
