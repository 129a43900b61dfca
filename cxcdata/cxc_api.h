// Marks what the library exports. CXC_EXPORTS is defined while the library itself is compiled.
#pragma once

#if defined(CXC_STATIC)
#define CXC_API
#elif defined(_WIN32)
#if defined(CXC_EXPORTS)
#define CXC_API __declspec(dllexport)
#else
#define CXC_API __declspec(dllimport)
#endif
#else
#define CXC_API __attribute__((visibility("default")))
#endif
