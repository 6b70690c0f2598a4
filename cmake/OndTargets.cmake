# How this project's targets are made: one place for warnings, sanitizers and linking.

add_library(ond_options INTERFACE)
target_include_directories(ond_options INTERFACE ${PROJECT_SOURCE_DIR})
# Only for C++: the resource compiler does not know them.
target_compile_options(
  ond_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wall;-Wextra;-Wpedantic;-Wshadow;-Wconversion;-Werror>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 sees overlaps that are not there in std::string's own code.
  target_compile_options(ond_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
endif()
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

# Headers that stand alone (CLI11, doctest, expected, RapidJSON) come from Debian's packages; a cross build must not see the rest of
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
ond_header_library(ond_rapidjson rapidjson)
ond_header_library(ond_expected tl)

# Part of the module. Object libraries, so that everything a part exports reaches the DLL.
function(ond_module_library name)
  add_library(${name} OBJECT ${ARGN})
  target_link_libraries(${name} PRIVATE ond_options)
  target_compile_definitions(${name} PRIVATE OND_BUILDING_MODULE)
endfunction()

# Makes version.rc for one binary and lets its resource scripts include it, and icons.rc, by name.
function(ond_version_resource version_target version_description)
  get_target_property(type ${version_target} TYPE)
  if(type STREQUAL EXECUTABLE)
    set(version_file_type VFT_APP)
    set(version_file_name ${version_target}.exe)
  else()
    set(version_file_type VFT_DLL)
    set(version_file_name ${version_target}.dll)
  endif()
  set(folder ${PROJECT_BINARY_DIR}/resources/${version_target})
  configure_file(${PROJECT_SOURCE_DIR}/res/version.rc.in ${folder}/version.rc @ONLY)
  target_include_directories(${version_target} PRIVATE ${PROJECT_SOURCE_DIR}/res ${folder})
  # The resource compiler reports no dependencies of its own.
  get_target_property(sources ${version_target} SOURCES)
  list(FILTER sources INCLUDE REGEX "\\.rc$")
  file(GLOB icons ${PROJECT_SOURCE_DIR}/res/*.ico)
  set_property(
    SOURCE ${sources}
    TARGET_DIRECTORY ${version_target}
    APPEND
    PROPERTY OBJECT_DEPENDS ${folder}/version.rc ${PROJECT_SOURCE_DIR}/res/icons.rc ${icons})
endfunction()
