# Clang for the C++ ABI and object format of Microsoft's tools, linking with lld-link, without any of their libraries.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_CXX_COMPILER_TARGET x86_64-pc-windows-msvc)
set(CMAKE_CXX_STANDARD_LIBRARIES "")
# There is no start-up code for a program that only tries the compiler.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
