# Visual Studio's own framework as a shared DLL; the library is an extension DLL of it.
set(CMAKE_MFC_FLAG 2)
add_library(cxc_framework INTERFACE)
target_compile_definitions(cxc_framework INTERFACE _AFXDLL)
