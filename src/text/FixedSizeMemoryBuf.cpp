// A stream buffer whose get and put areas are one fixed block of memory.
#include "KZStringFunctions.h"

#include <new>

FixedSizeMemoryBuf::FixedSizeMemoryBuf(char* memory, unsigned long size) : m_owned(nullptr)
{
    coverBlock(memory, memory ? size : 0);
}

FixedSizeMemoryBuf::FixedSizeMemoryBuf(unsigned long size) : m_owned(nullptr)
{
    if (size > 0)
        m_owned = new (std::nothrow) char[size];
    coverBlock(m_owned, m_owned ? size : 0);
}

FixedSizeMemoryBuf::~FixedSizeMemoryBuf()
{
    delete[] m_owned;
}

void FixedSizeMemoryBuf::coverBlock(char* memory, unsigned long size)
{
    setg(memory, memory, memory + size);
    setp(memory, memory + size);
}
