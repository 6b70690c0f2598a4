# How this project's targets are made: one place for warnings, sanitizers and linking.

add_library(ond_options INTERFACE)
target_include_directories(ond_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(
  ond_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
if(WIN32)
  target_compile_definitions(ond_options INTERFACE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
  # A user needs no DLLs of the compiler's.
  target_link_options(ond_options INTERFACE -static)
endif()
if(OND_SANITIZE)
  target_compile_options(ond_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(ond_options INTERFACE -fsanitize=address,undefined)
endif()
if(OND_FUZZERS)
  target_compile_options(ond_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined)
  target_link_options(ond_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined)
endif()

# Headers that stand alone (CLI11, doctest) come from Debian's packages; a cross build must not see the rest of
# /usr/include, so they are copied beside the build.
function(ond_header_library target folder)
  if(NOT EXISTS /usr/include/${folder})
    message(FATAL_ERROR "/usr/include/${folder} is missing; ./run and ./test install what the build needs")
  endif()
  file(COPY /usr/include/${folder} DESTINATION ${PROJECT_BINARY_DIR}/headers/${target})
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE ${PROJECT_BINARY_DIR}/headers/${target})
endfunction()
ond_header_library(ond_cli11 CLI)
ond_header_library(ond_doctest doctest)

# Part of the module. Object libraries, so that everything a part exports reaches the DLL.
function(ond_module_library name)
  add_library(${name} OBJECT ${ARGN})
  target_link_libraries(${name} PRIVATE ond_options)
  target_compile_definitions(${name} PRIVATE OND_BUILDING_MODULE)
endfunction()
