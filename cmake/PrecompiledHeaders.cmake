# Precompiled headers save half of the processor time of a build. Every file includes what it uses all the same:
# it builds without them too (-DQV_PRECOMPILED_HEADERS=OFF).

option(QV_PRECOMPILED_HEADERS "Compile the headers that most files include once per target" ON)

set(QV_COMMON_HEADERS <algorithm> <array> <cmath> <cstdint> <filesystem> <functional> <map> <memory> <mutex> <optional>
    <span> <string> <string_view> <utility> <vector> <fmt/format.h>)

# Precompiles the common headers, and those that are named, for `target`.
function(qv_precompile_headers target)
    if(QV_PRECOMPILED_HEADERS)
        target_precompile_headers(${target} PRIVATE ${QV_COMMON_HEADERS} ${ARGN})
    endif()
endfunction()

# Gives `target` the headers that were precompiled for `other`, which is compiled with the same options.
function(qv_reuse_precompiled_headers target other)
    if(QV_PRECOMPILED_HEADERS)
        target_precompile_headers(${target} REUSE_FROM ${other})
    endif()
endfunction()

# The same among the programs of one group: the first one's are used by all.
function(qv_share_precompiled_headers target group)
    get_property(owner GLOBAL PROPERTY QV_PRECOMPILED_${group})
    if(owner)
        qv_reuse_precompiled_headers(${target} ${owner})
    else()
        qv_precompile_headers(${target} ${ARGN})
        set_property(GLOBAL PROPERTY QV_PRECOMPILED_${group} ${target})
    endif()
endfunction()
