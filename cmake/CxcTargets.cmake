# What every target of the project has in common.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# DLLs lie beside the programs that need them.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

if(NOT MSVC)
  # Results must be the same bits on every build.
  add_compile_options(-ffp-contract=off -fno-fast-math)
  # A CString passed through "..." is a silent garbage pointer without this.
  add_compile_options(-Werror=conditionally-supported -Werror=delete-non-virtual-dtor)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    add_compile_options(-Wno-unknown-warning-option)
    add_compile_options(-Werror=non-pod-varargs)
  endif()
endif()
if(WIN32)
  add_compile_definitions(UNICODE _UNICODE NOMINMAX WINVER=0x0A00 _WIN32_WINNT=0x0A00)
endif()
if(CXC_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer -O1)
  add_link_options(-fsanitize=address,undefined)
endif()

# Warnings of the library's own code.
function(cxc_warnings target)
  if(NOT MSVC)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                           $<$<BOOL:${CXC_WERROR}>:-Werror>)
  endif()
endfunction()

# A shared library of the project; `exports` is defined while it is compiled.
function(cxc_library_target target exports)
  target_compile_definitions(${target} PRIVATE ${exports})
  cxc_warnings(${target})
  if(WIN32)
    set_target_properties(${target} PROPERTIES PREFIX "")  # cxc.dll, as Windows names it
  endif()
endfunction()
