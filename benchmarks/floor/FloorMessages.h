#pragma once

#include "FloorExport.h"
#include "FloorText.h"

#include <BaseUtilities/TEST_STATUS.h>
#include <BaseUtilities/TQColor.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>
#include <tuple>

namespace Floor
{
/// Grows in steps of 1024 bytes and discards its contents.
class FLOOR_EXPORT CBuffer
{
public:
    CBuffer() = default;
    CBuffer(CBuffer const& other);
    CBuffer& operator=(CBuffer const& other);
    ~CBuffer();
    char* Get(unsigned long wanted);
    friend FLOOR_EXPORT bool operator==(CBuffer const& left, CBuffer const& right);

private:
    char* m_pBuffer = nullptr;
    unsigned long m_Size = 0;
};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"

// Of any arguments, so made where it is used, as the library's.
template <class... Args>
void Build(CBuffer& out, std::tuple<unsigned long, char> indent, View const& format,
           Args const&... args)
{
    thread_local CBuffer work;
    thread_local std::string terminated(512, '\0');
    terminated.assign(format.data(), format.size());
    int const measured = std::snprintf(nullptr, 0, terminated.c_str(), args...);
    if (measured < 0)
        throw std::runtime_error("INTERNAL ERROR - std::vsprintf() failed.");
    auto const length = static_cast<unsigned long>(measured);
    auto const [count, fill] = indent;
    char* const text = work.Get(count + length + 1);
    if (count != 0)
        std::memset(text, fill, count);
    std::ignore = std::snprintf(text + count, length + 1, terminated.c_str(), args...);
    out = work;
}

#pragma GCC diagnostic pop

inline FLOOR_EXPORT unsigned long indentLevel = 0; // one for the whole process

/// An indented message in a buffer of its own.
class CMessage
{
public:
    template <class... Args>
    CMessage(View const& format, Args const&... args)
    {
        Build(m_Buffer, {indentLevel * 2, ' '}, format, args...);
        m_pText = m_Buffer.Get(0);
    }
    CMessage(CMessage const&) = delete;
    CMessage& operator=(CMessage const&) = delete;
    char const* get() const { return m_pText; }

private:
    CBuffer m_Buffer;
    char const* m_pText;
};

class FLOOR_EXPORT CException : public std::runtime_error
{
public:
    CException(View const& message, TEST_STATUS status);
    CException(CException const&) = default;
    CException& operator=(CException const&) = default;
    ~CException() override;
    TEST_STATUS GetStatus() const noexcept { return m_Status; }

private:
    TEST_STATUS m_Status;
};

class FLOOR_EXPORT CRunTimeException : public CException
{
public:
    CRunTimeException(View const& message = "TQRunTimeException Thrown",
                      TEST_STATUS status = TEST_STATUS_ERROR);
    CRunTimeException(CRunTimeException const&) = default;
    CRunTimeException& operator=(CRunTimeException const&) = default;
    ~CRunTimeException() override;
};

template <class... Args>
[[noreturn]] FLOOR_EXPORT void Throw(TEST_STATUS status, View const& format, Args const&... args)
{
    if (format.empty())
        throw CRunTimeException();
    thread_local CBuffer buffer;
    Build(buffer, {0, '\0'}, format, args...);
    char const* const text = buffer.Get(0);
    throw CRunTimeException(text, status);
}

// What the library makes in itself, too.
extern template FLOOR_EXPORT void Build(CBuffer&, std::tuple<unsigned long, char>, View const&,
                                        char const* const&);
extern template FLOOR_EXPORT void Throw(TEST_STATUS, View const&, char const* const&);

struct FLOOR_EXPORT CUuid
{
    std::uint32_t m_Data1 = 0;
    std::uint16_t m_Data2 = 0;
    std::uint16_t m_Data3 = 0;
    std::uint8_t m_Data4[8] = {};
    CText ToString() const;
};

FLOOR_EXPORT CText MakeTimeString(char const* format,
                                  std::chrono::system_clock::time_point const& when);

struct FLOOR_EXPORT CFormat
{
    TQColor m_Color{};
    TQColor m_BackColor{255, 255, 255, 255};
    std::uint8_t m_TextStyle = 0;
    std::uint16_t m_Weight = 400;
    std::uint8_t m_TextEffect = 0;
    bool m_ColorChanged = false;
    bool m_BackColorChanged = false;
    bool m_TextStyleChanged = false;
    bool m_WeightChanged = false;
    bool m_TextEffectChanged = false;
    bool m_HasColor = false;
    bool m_HasBackColor = false;

    CFormat& MergeFormat(CFormat const& other);
};
} // namespace Floor
