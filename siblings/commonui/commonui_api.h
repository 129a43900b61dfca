// Marks what the common UI library exports.
#pragma once

#if defined(_WIN32)
#if defined(CXC_COMMONUI_EXPORTS)
#define CXC_COMMONUI_API __declspec(dllexport)
#else
#define CXC_COMMONUI_API __declspec(dllimport)
#endif
#else
#define CXC_COMMONUI_API __attribute__((visibility("default")))
#endif
