# What every target of the project has in common.
include(CheckCXXCompilerFlag)
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

if(CXC_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
  add_link_options(-fsanitize=fuzzer-no-link)
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
  if(MSVC)
    target_compile_definitions(${target} PRIVATE _AFXEXT)  # an extension DLL of the framework
  endif()
endfunction()

# Compiles the passes of cxcdata over several doubles at a time for the machines that can; which
# of them runs is found out at run time.
function(cxc_wide_passes target)
  if(NOT CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64" OR NOT CMAKE_SIZEOF_VOID_P EQUAL 8)
    return()
  endif()
  if(MSVC)
    set(four /arch:AVX2)
    set(eight /arch:AVX512)
  else()
    set(four -mavx2)
    # g++ 12 takes its own undefined operands for ours.
    set(eight -mavx512f -Wno-maybe-uninitialized -Wno-uninitialized)
  endif()
  if(MINGW)
    # g++ keeps such numbers on the stack as if it were aligned for them, which 64-bit Windows does
    # not do: only an assembler that does without aligned moves makes that safe.
    check_cxx_compiler_flag(-Wa,-muse-unaligned-vector-move CXC_UNALIGNED_VECTOR_MOVE)
    if(NOT CXC_UNALIGNED_VECTOR_MOVE)
      return()
    endif()
    list(APPEND four -Wa,-muse-unaligned-vector-move)
    list(APPEND eight -Wa,-muse-unaligned-vector-move)
  endif()
  set_source_files_properties(cxcdata/wide_passes_four.cpp PROPERTIES COMPILE_OPTIONS "${four}")
  set_source_files_properties(cxcdata/wide_passes_eight.cpp PROPERTIES COMPILE_OPTIONS "${eight}")
  target_compile_definitions(${target} PRIVATE CXC_WIDE_PASSES)
endfunction()
