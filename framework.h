// The framework, under its own header names. The include path decides whose it is: Visual
// Studio's, or the subset in afx/ where that is not available.
#pragma once

#include <afxwin.h>

#include <afxext.h>

#include <afxcmn.h>

#include <afxdlgs.h>

#include <afxdialogex.h>
