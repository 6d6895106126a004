#include "FloorMessages.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <iomanip>
#include <sstream>

#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"

namespace Floor
{
struct CBuilder
{
    static char* Grow(CBuffer& buffer, unsigned long wanted)
    {
        if (buffer.m_pBuffer != nullptr && buffer.m_Size >= wanted)
            return buffer.m_pBuffer;
        delete[] buffer.m_pBuffer;
        buffer.m_Size = (std::max(wanted, 1024UL) + 1023) / 1024 * 1024;
        return buffer.m_pBuffer = new char[buffer.m_Size];
    }

    static void Copy(CBuffer& to, CBuffer const& from)
    {
        std::memcpy(Grow(to, from.m_Size), from.m_pBuffer, from.m_Size);
    }

    template <class... Args>
    static char const* Build(CBuffer& out, unsigned long indent, View const& format, Args... args)
    {
        thread_local CBuffer work;
        thread_local std::string terminated(512, '\0');
        terminated.assign(format.data(), format.size());
        int const measured = std::snprintf(nullptr, 0, terminated.c_str(), args...);
        if (measured < 0)
            throw std::runtime_error("INTERNAL ERROR - std::vsprintf() failed.");
        auto const length = static_cast<unsigned long>(measured);
        char* const text = Grow(work, indent + length + 1);
        if (indent != 0)
            std::memset(text, ' ', indent);
        static_cast<void>(std::snprintf(text + indent, length + 1, terminated.c_str(), args...));
        Copy(out, work);
        return out.m_pBuffer;
    }

    static bool Equal(CBuffer const& left, CBuffer const& right)
    {
        return left.m_Size != 0 && left.m_Size == right.m_Size
               && std::memcmp(left.m_pBuffer, right.m_pBuffer, left.m_Size) == 0;
    }
};

CBuffer::CBuffer(CBuffer const& other) : CBuffer()
{
    CBuilder::Copy(*this, other);
}

CBuffer& CBuffer::operator=(CBuffer const& other)
{
    CBuilder::Copy(*this, other);
    return *this;
}

CBuffer::~CBuffer()
{
    delete[] m_pBuffer;
}

char* CBuffer::Get(unsigned long wanted)
{
    return CBuilder::Grow(*this, wanted);
}

bool operator==(CBuffer const& left, CBuffer const& right)
{
    return CBuilder::Equal(left, right);
}

void Build(CBuffer& out, unsigned long indent, View const& format, char const* argument, int number)
{
    CBuilder::Build(out, indent, format, argument, number);
}

CMessage::CMessage(View const& format, char const* argument, int number)
    : m_pText(CBuilder::Build(m_Buffer, 0, format, argument, number))
{
}

CMessage::~CMessage() = default;

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

void Throw(TEST_STATUS status, View const& format, char const* argument)
{
    if (format.empty())
        throw CRunTimeException();
    thread_local CBuffer buffer;
    throw CRunTimeException(CBuilder::Build(buffer, 0, format, argument), status);
}

void Throw(TEST_STATUS status, View const& format, char const* argument, int number)
{
    if (format.empty())
        throw CRunTimeException();
    thread_local CBuffer buffer;
    throw CRunTimeException(CBuilder::Build(buffer, 0, format, argument, number), status);
}

CText CUuid::ToString() const
{
    CBuffer buffer;
    return CText(CBuilder::Build(buffer, 0, "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                                 m_Data1, m_Data2, m_Data3, m_Data4[0], m_Data4[1], m_Data4[2],
                                 m_Data4[3], m_Data4[4], m_Data4[5], m_Data4[6], m_Data4[7]));
}

CText MakeTimeString(char const* format, std::chrono::system_clock::time_point const& when)
{
    std::time_t const time =
        std::chrono::duration_cast<std::chrono::seconds>(when.time_since_epoch()).count();
    std::stringstream stream;
    stream << std::put_time(std::localtime(&time), format);
    std::string const text = stream.str();
    return CText(View(text));
}

namespace
{
bool Same(TQColor const& left, TQColor const& right)
{
    return std::memcmp(&left, &right, sizeof left) == 0;
}

bool IsBlack(TQColor const& color)
{
    return Same(color, {0, 0, 0, 255});
}

void Merge(TQColor& color, TQColor const& other, bool& changed, bool& has)
{
    std::uint32_t const red = color.m_Red ^ other.m_Red;
    std::uint32_t const green = color.m_Green ^ other.m_Green;
    std::uint32_t const blue = color.m_Blue ^ other.m_Blue;
    bool const complement = red == 255 && green == 255 && blue == 255 && color.m_Alpha == 255;
    changed = changed || !complement;
    has = has || !complement;
    std::uint32_t const flip = IsBlack(color) && IsBlack(other) ? 255 : 0;
    color.m_Red = (red & 255) | flip;
    color.m_Green = (green & 255) | flip;
    color.m_Blue = (blue & 255) | flip;
}

template <class Attribute>
void Merge(Attribute& attribute, Attribute other, bool& changed)
{
    changed = changed || attribute != other;
    attribute = other;
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
