#include "FloorMessages.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <iomanip>
#include <sstream>

namespace Floor
{
CBuffer::CBuffer(CBuffer const& other) : CBuffer()
{
    *this = other;
}

CBuffer& CBuffer::operator=(CBuffer const& other)
{
    if (this == &other)
        return *this;
    if (other.m_Size == 0) {
        delete[] m_pBuffer;
        m_pBuffer = nullptr;
        m_Size = 0;
        return *this;
    }
    std::memcpy(Get(other.m_Size), other.m_pBuffer, other.m_Size);
    return *this;
}

CBuffer::~CBuffer()
{
    delete[] m_pBuffer;
}

char* CBuffer::Get(unsigned long wanted)
{
    if (m_pBuffer != nullptr && m_Size >= wanted)
        return m_pBuffer;
    unsigned long const atLeast = std::max(wanted, 1024UL);
    if (m_pBuffer == nullptr && m_Size >= atLeast)
        return nullptr;
    delete[] m_pBuffer;
    m_pBuffer = nullptr;
    m_Size = (atLeast + 1023) / 1024 * 1024;
    return m_pBuffer = new char[m_Size];
}

bool operator==(CBuffer const& left, CBuffer const& right)
{
    return left.m_Size != 0 && left.m_Size == right.m_Size
           && std::memcmp(left.m_pBuffer, right.m_pBuffer, left.m_Size) == 0;
}

template void Build(CBuffer&, std::tuple<unsigned long, char>, View const&, char const* const&);
template void Throw(TEST_STATUS, View const&, char const* const&);

CException::CException(View const& message, TEST_STATUS status)
    : std::runtime_error(CText(message).get()),
      m_Status(status)
{
}

CException::~CException() = default;

CRunTimeException::CRunTimeException(View const& message, TEST_STATUS status)
    : CException(message.empty() ? "TQRunTimeException Thrown" : message, status)
{
}

CRunTimeException::~CRunTimeException() = default;

CText CUuid::ToString() const
{
    CMessage const message("{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", m_Data1, m_Data2,
                           m_Data3, m_Data4[0], m_Data4[1], m_Data4[2], m_Data4[3], m_Data4[4],
                           m_Data4[5], m_Data4[6], m_Data4[7]);
    return {message.get()};
}

CText MakeTimeString(char const* format, std::chrono::system_clock::time_point const& when)
{
    std::time_t const time =
        std::chrono::duration_cast<std::chrono::seconds>(when.time_since_epoch()).count();
    std::stringstream stream;
    stream << std::put_time(std::localtime(&time), format);
    std::string const text = stream.str();
    return {View(text)};
}

namespace
{
bool Same(TQColor const& left, TQColor const& right)
{
    return std::memcmp(&left, &right, sizeof left) == 0;
}

constexpr TQColor Black{0, 0, 0, 255};

bool IsComplement(std::uint32_t channel, std::uint32_t other)
{
    return channel == (~other & 255);
}

void Merge(TQColor& color, TQColor const& other, bool& changed, bool& has)
{
    if (color.m_Alpha != 255 || !IsComplement(color.m_Red, other.m_Red)
        || !IsComplement(color.m_Green, other.m_Green) || !IsComplement(color.m_Blue, other.m_Blue))
        changed = has = true;
    if (Same(color, Black) && Same(other, Black)) {
        color = {255, 255, 255, 255};
        return;
    }
    color.m_Red = (color.m_Red ^ other.m_Red) & 255;
    color.m_Green = (color.m_Green ^ other.m_Green) & 255;
    color.m_Blue = (color.m_Blue ^ other.m_Blue) & 255;
}

template <class Attribute>
void Merge(Attribute& attribute, Attribute other, bool& changed)
{
    if (attribute == other)
        return;
    attribute = other;
    changed = true;
}
} // namespace

CFormat& CFormat::MergeFormat(CFormat const& other)
{
    if (!Same(m_Color, other.m_Color))
        Merge(m_Color, other.m_Color, m_ColorChanged, m_HasColor);
    if (!Same(m_BackColor, other.m_BackColor))
        Merge(m_BackColor, other.m_BackColor, m_BackColorChanged, m_HasBackColor);
    Merge(m_Weight, other.m_Weight, m_WeightChanged);
    Merge(m_TextStyle, other.m_TextStyle, m_TextStyleChanged);
    Merge(m_TextEffect, other.m_TextEffect, m_TextEffectChanged);
    return *this;
}
} // namespace Floor
