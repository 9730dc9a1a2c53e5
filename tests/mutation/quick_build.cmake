# Included by the preset "mutation". A changed header is compiled with all that includes it, half the time of which goes
# into the headers below. The check of array bounds leaves out arrays at the end of a record unless it is strict.
function(kine_prepare_for_mutation)
    target_precompile_headers(kinedll_core PRIVATE
        <algorithm> <array> <cmath> <cstddef> <cstdint> <cstring> <initializer_list> <limits> <optional> <span>
        <string_view> <utility>)
    target_compile_options(kinedll_core PRIVATE -fsanitize=bounds-strict)
endfunction()

cmake_language(DEFER CALL kine_prepare_for_mutation)
