// The framework's base: types, strings, objects, exceptions, files and archives.
#pragma once

#include "afx_types.h"

#include "afx_object.h"

#include "afx_string.h"

#include "afx_exception.h"

#include "afx_file.h"

#include "afx_archive.h"
