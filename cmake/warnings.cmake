if(WIN32)
    # A function may have a cold part without any instruction. The table of unwinding then has two entries for one
    # address, of which the search may find the empty one, and an exception through the other ends the program.
    add_compile_options(-fno-reorder-blocks-and-partition)
endif()

# Flags that every target of ours shares. Floating point must give the same bytes on every target:
# SSE2 arithmetic, no contraction, no reassociation.
add_library(kelmora_warnings INTERFACE)
target_compile_options(kelmora_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor
    -Werror -ffp-contract=off)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    target_compile_options(kelmora_warnings INTERFACE -msse2 -mfpmath=sse)
endif()
if(KELMORA_SANITISE)
    target_compile_options(kelmora_warnings INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(kelmora_warnings INTERFACE -fsanitize=address,undefined)
    target_compile_definitions(kelmora_warnings INTERFACE KELMORA_SANITISED)
endif()
