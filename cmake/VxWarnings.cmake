# One interface target carries the warning flags, so every layer links the
# same policy instead of repeating it.
add_library(vx_warnings INTERFACE)
add_library(vx::warnings ALIAS vx_warnings)
target_compile_options(vx_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wimplicit-fallthrough)
if(VX_WARNINGS_AS_ERRORS)
    target_compile_options(vx_warnings INTERFACE -Werror)
endif()
