// Base types and macros of the framework. On Windows they are the system's own.
#pragma once

#include <cstddef>
#include <cstdint>

#ifdef _WIN32
#include <windows.h>
#endif

#ifdef _WIN32
#ifdef AFX_EXPORTS
#define AFX_API __declspec(dllexport)
#else
#define AFX_API __declspec(dllimport)
#endif
#else
#define AFX_API __attribute__((visibility("default")))
#endif

#if !defined(_WIN32)
#if __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
#error "archives are images of memory in little-endian order; big-endian hosts are not supported"
#endif

// Widths are those of Windows: LONG and DWORD have 32 bits, text has 16-bit units.
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using UINT = unsigned int;
using LONG = int;
using DWORD = unsigned int;
using LONGLONG = long long;
using ULONGLONG = unsigned long long;
using BOOL = int;
using INT = int;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using COLORREF = DWORD;
using PUINT = UINT*;
using LPVOID = void*;

using CHAR = char;
using LPSTR = char*;
using LPCSTR = const char*;
using WCHAR = char16_t;
using TCHAR = char16_t;
using LPWSTR = char16_t*;
using LPCWSTR = const char16_t*;
using LPTSTR = TCHAR*;
using LPCTSTR = const TCHAR*;

#define __int64 long long
#define _T(text) u##text
#define TRUE 1
#define FALSE 0
#define PASCAL
#define __cdecl
#define MB_OK 0x00000000
#else
#include <tchar.h>
#endif

#define AFXAPI
#define afx_msg

static_assert(sizeof(TCHAR) == 2 && sizeof(LONG) == 4 && sizeof(DWORD) == 4,
              "archives depend on these widths");
