#pragma once

#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/TEST_STATUS.h>
#include <BaseUtilities/TQException.h>

#include <gtest/gtest.h>

#include <clocale>
#include <exception>
#include <string>
#include <typeinfo>

/// Sets the indentation level of messages while it lives.
class CIndentLevel
{
public:
    explicit CIndentLevel(unsigned long level) { CFormattedString::m_sIndentLevel = level; }
    CIndentLevel(CIndentLevel const&) = delete;
    CIndentLevel& operator=(CIndentLevel const&) = delete;
    ~CIndentLevel() { CFormattedString::m_sIndentLevel = m_Before; }

private:
    unsigned long const m_Before = CFormattedString::m_sIndentLevel;
};

/// The "C" locale while it lives: the one in which InvalidWide has no bytes.
class CPlainLocale
{
public:
    CPlainLocale() { std::setlocale(LC_ALL, "C"); }
    CPlainLocale(CPlainLocale const&) = delete;
    CPlainLocale& operator=(CPlainLocale const&) = delete;
    ~CPlainLocale() { std::setlocale(LC_ALL, m_Before.c_str()); }

private:
    std::string const m_Before = std::setlocale(LC_ALL, nullptr);
};

/// Wide text that "%ls" cannot convert.
inline constexpr wchar_t InvalidWide[] = {wchar_t(0x20AC), 0};

/// What `action` throws: nothing of the family must come as anything else.
struct Caught
{
    std::type_info const* type = nullptr;
    std::string text;
    TEST_STATUS status = TEST_STATUS(0); // 0 also for what carries none
};

template <class Action>
Caught Catch(Action const& action)
{
    try {
        action();
    } catch (TQException const& error) {
        return {&typeid(error), error.what(), error.GetStatus()};
    } catch (std::exception const& error) {
        return {&typeid(error), error.what()};
    }
    return {};
}

inline void ExpectFormattingFailure(Caught const& caught)
{
    ASSERT_NE(caught.type, nullptr) << "nothing was thrown";
    EXPECT_EQ(*caught.type, typeid(std::runtime_error));
    EXPECT_EQ(caught.text, "INTERNAL ERROR - std::vsprintf() failed.");
}
