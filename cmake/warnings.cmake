# Warnings stop our own build; they are never forced on whoever uses the installed package.
add_compile_options(-Wall -Wextra -Wpedantic -Werror)
# g++ 12 reports these falsely for std::string in optimised code (GCC bugs 105329 and 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-restrict -Wno-stringop-overflow -Wno-stringop-overread -Wno-array-bounds)
endif()
