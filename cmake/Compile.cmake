# How every target of the project is compiled.

# tessaran_compile(target): language flags, warnings as errors, sanitizers.
function(tessaran_compile target)
  target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR} ${CMAKE_BINARY_DIR}/generated)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Werror
    # Fused multiply-add would make results depend on the machine.
    -ffp-contract=off)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 warns wrongly of overlapping copies in std::string's own operator+ (its bug 105651).
    target_compile_options(${target} PRIVATE -Wno-restrict)
  else()
    # Clang counts changes of sign among -Wconversion, GCC does not; GCC's reading is the project's.
    target_compile_options(${target} PRIVATE -Wno-sign-conversion)
  endif()
  if(TESSARAN_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=address,undefined
                           -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined)
  endif()
  if(TESSARAN_FUZZ)
    # A fuzzer keeps the inputs that reach new branches, so all code counts its branches.
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
    target_link_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# tessaran_library(target folder...): a static library of all sources in the folders. The sources
# are globbed on purpose: a new file in a folder belongs to that folder, nothing else to edit.
function(tessaran_library target)
  set(sources)
  foreach(folder IN LISTS ARGN)
    file(GLOB found CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/*.cpp)
    list(APPEND sources ${found})
  endforeach()
  add_library(${target} STATIC ${sources})
  target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR} ${CMAKE_BINARY_DIR}/generated)
  tessaran_compile(${target})
endfunction()

configure_file(${CMAKE_SOURCE_DIR}/cmake/version.h.in
               ${CMAKE_BINARY_DIR}/generated/tessaran_version.h @ONLY)

find_program(TESSARAN_MOLD mold)
if(TESSARAN_MOLD)
  add_link_options(-fuse-ld=mold)
endif()
