#include <BaseUtilities/CSimpleBuffer.h>

#include <algorithm>
#include <cstring>

namespace
{
constexpr unsigned long Step = 1024;

// A size too near the end of the range to round is left as it is: no such array exists.
constexpr unsigned long RoundUp(unsigned long size)
{
    unsigned long const rounded = (size + Step - 1) / Step * Step;
    return std::max(rounded, size);
}
} // namespace

CSimpleBuffer::CSimpleBuffer(CSimpleBuffer const& other) : CSimpleBuffer()
{
    *this = other;
}

CSimpleBuffer& CSimpleBuffer::operator=(CSimpleBuffer const& other)
{
    if (this == &other)
        return *this;
    // A size recorded by a failed growth stands for no bytes, on either side.
    if (other.m_pBuffer == nullptr || m_pBuffer == nullptr) {
        delete[] m_pBuffer;
        m_pBuffer = nullptr;
        m_Size = 0;
    }
    if (other.m_pBuffer != nullptr)
        std::memcpy(Resize(other.m_Size), other.m_pBuffer, other.m_Size);
    return *this;
}

CSimpleBuffer::~CSimpleBuffer()
{
    delete[] m_pBuffer;
}

char* CSimpleBuffer::Resize(unsigned long wanted)
{
    if (m_pBuffer != nullptr && m_Size >= wanted)
        return m_pBuffer;
    unsigned long const atLeast = std::max(wanted, Step);
    if (m_pBuffer == nullptr && m_Size >= atLeast)
        return m_pBuffer;

    delete[] m_pBuffer;
    m_pBuffer = nullptr;
    m_Size = RoundUp(atLeast);
    m_pBuffer = new char[m_Size];
    return m_pBuffer;
}

char* CSimpleBuffer::Get(unsigned long wanted)
{
    return Resize(wanted);
}

bool operator==(CSimpleBuffer const& left, CSimpleBuffer const& right)
{
    if (left.m_Size == 0 || left.m_Size != right.m_Size)
        return false;
    if (left.m_pBuffer == nullptr || right.m_pBuffer == nullptr)
        return false;
    return std::memcmp(left.m_pBuffer, right.m_pBuffer, left.m_Size) == 0;
}
