#pragma once

#include <BaseUtilities/CSafeString.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <typeinfo>

/// The whole text of a string, NULs included.
inline std::string Bytes(CSafeString const& text)
{
    return std::string(text.get(), text.size());
}

/// The standard string that `text` owns, null once moved from: the one pointer
/// that the object consists of.
inline std::string* StorageOf(CSafeString const& text)
{
    static_assert(sizeof(CSafeString) == sizeof(std::string*));
    std::string* storage = nullptr;
    std::memcpy(&storage, static_cast<void const*>(&text), sizeof(storage));
    return storage;
}

/// Lets a string claim a size that no machine should have to hold, for operations
/// that read none of it. The size is the second word of the standard string.
class CClaimedSize
{
public:
    CClaimedSize(CSafeString const& text, unsigned long size)
        : m_pSize(reinterpret_cast<char*>(StorageOf(text)) + sizeof(char*))
    {
        std::memcpy(&m_Former, m_pSize, sizeof(m_Former));
        std::memcpy(m_pSize, &size, sizeof(size));
    }
    CClaimedSize(CClaimedSize const&) = delete;
    CClaimedSize& operator=(CClaimedSize const&) = delete;
    ~CClaimedSize() { std::memcpy(m_pSize, &m_Former, sizeof(m_Former)); }

private:
    char* m_pSize;
    unsigned long m_Former = 0;
};

/// Text too long for a standard string to keep inside itself, so that it is on the heap.
inline char const* const LongText = "forty characters, which go onto the heap";

/// Checks that `operation` throws exactly an `Exception` with exactly this text.
template <class Exception, class Operation>
void ExpectThrows(Operation operation, char const* what)
{
    try {
        operation();
        ADD_FAILURE() << "nothing was thrown instead of: " << what;
    } catch (Exception const& error) {
        EXPECT_EQ(typeid(error), typeid(Exception));
        EXPECT_STREQ(error.what(), what);
    }
}
