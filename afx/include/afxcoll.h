// CPtrArray: a growing array of pointers that it does not own.
//
// Differences from MFC:
//  1. An index outside the array throws CInvalidArgException* in every build.
//  2. SetSize, SetAtGrow, Append, Copy, GetData and FreeExtra do not exist.
#pragma once

#include "afx_exception.h"

class AFX_API CPtrArray : public CObject {
    DECLARE_DYNAMIC(CPtrArray)

public:
    CPtrArray();
    ~CPtrArray() override;

    INT_PTR GetSize() const;
    INT_PTR GetCount() const;
    /// Index of the last element; -1 for an empty array.
    INT_PTR GetUpperBound() const;
    BOOL IsEmpty() const;

    void* GetAt(INT_PTR index) const;
    void SetAt(INT_PTR index, void* element);
    void*& ElementAt(INT_PTR index);
    void* operator[](INT_PTR index) const;
    void*& operator[](INT_PTR index);

    /// Returns the index of the new element.
    INT_PTR Add(void* element);
    /// An index behind the end fills the gap with null.
    void InsertAt(INT_PTR index, void* element, INT_PTR count = 1);
    void RemoveAt(INT_PTR index, INT_PTR count = 1);
    void RemoveAll();

private:
    void** at(INT_PTR index) const;

    void** m_elements;
    INT_PTR m_size;
    INT_PTR m_capacity;
};
