# cmake -D OUTPUT=HEADER -P HashOfFiles.cmake NAME FILE...: a header that defines NAME as a hash of the files' contents.

foreach(i RANGE 6 ${CMAKE_ARGC})
    if(i LESS CMAKE_ARGC)
        file(SHA256 ${CMAKE_ARGV${i}} hash)
        string(APPEND hashes ${hash})
    endif()
endforeach()
string(SHA256 hash "${hashes}")
string(SUBSTRING ${hash} 0 16 hash)
file(WRITE ${OUTPUT} "#pragma once\n\ninline constexpr char ${CMAKE_ARGV5}[] = \"${hash}\";\n")
