#include "afxcoll.h"

#include <algorithm>
#include <cstdlib>

IMPLEMENT_DYNAMIC(CPtrArray, CObject)

CPtrArray::CPtrArray() : m_elements(nullptr), m_size(0), m_capacity(0) {}

CPtrArray::~CPtrArray() {
    std::free(m_elements);
}

INT_PTR CPtrArray::GetSize() const {
    return m_size;
}

INT_PTR CPtrArray::GetCount() const {
    return m_size;
}

INT_PTR CPtrArray::GetUpperBound() const {
    return m_size - 1;
}

BOOL CPtrArray::IsEmpty() const {
    return m_size == 0;
}

void** CPtrArray::at(INT_PTR index) const {
    if (index < 0 || index >= m_size) AfxThrowInvalidArgException();
    return m_elements + index;
}

void* CPtrArray::GetAt(INT_PTR index) const {
    return *at(index);
}

void CPtrArray::SetAt(INT_PTR index, void* element) {
    *at(index) = element;
}

void*& CPtrArray::ElementAt(INT_PTR index) {
    return *at(index);
}

void* CPtrArray::operator[](INT_PTR index) const {
    return *at(index);
}

void*& CPtrArray::operator[](INT_PTR index) {
    return *at(index);
}

INT_PTR CPtrArray::Add(void* element) {
    InsertAt(m_size, element);
    return m_size - 1;
}

void CPtrArray::InsertAt(INT_PTR index, void* element, INT_PTR count) {
    if (index < 0 || count < 1) AfxThrowInvalidArgException();
    constexpr INT_PTR most = PTRDIFF_MAX / static_cast<INT_PTR>(sizeof(void*));
    const INT_PTR from = std::max(index, m_size);
    if (from > most - count) AfxThrowMemoryException();
    const INT_PTR size = from + count;
    if (size > m_capacity) {
        const INT_PTR capacity = std::max(size, m_capacity + m_capacity / 2);
        void* memory = std::realloc(m_elements, static_cast<std::size_t>(capacity) * sizeof(void*));
        if (memory == nullptr) AfxThrowMemoryException();
        m_elements = static_cast<void**>(memory);
        m_capacity = capacity;
    }
    if (index < m_size)
        std::copy_backward(m_elements + index, m_elements + m_size, m_elements + size);
    else
        std::fill(m_elements + m_size, m_elements + index, nullptr);
    std::fill(m_elements + index, m_elements + index + count, element);
    m_size = size;
}

void CPtrArray::RemoveAt(INT_PTR index, INT_PTR count) {
    if (index < 0 || count < 0 || index > m_size || count > m_size - index)
        AfxThrowInvalidArgException();
    std::copy(m_elements + index + count, m_elements + m_size, m_elements + index);
    m_size -= count;
}

void CPtrArray::RemoveAll() {
    std::free(m_elements);
    m_elements = nullptr;
    m_size = 0;
    m_capacity = 0;
}
