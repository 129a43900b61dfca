// Marks what the matrix library exports.
#pragma once

#if defined(_WIN32)
#if defined(CXC_MATRIX_EXPORTS)
#define CXC_MATRIX_API __declspec(dllexport)
#else
#define CXC_MATRIX_API __declspec(dllimport)
#endif
#else
#define CXC_MATRIX_API __attribute__((visibility("default")))
#endif
