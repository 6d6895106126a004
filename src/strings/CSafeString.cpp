#include <BaseUtilities/CSafeString.h>

#include <BaseUtilities/EncodingConversions.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

static_assert(sizeof(CSafeString) == sizeof(void*), "one pointer wide on every interface");

namespace
{
std::string_view AsStandardView(basic_sv_wrapper<char> const& text)
{
    return static_cast<std::string_view>(text);
}

// Takes what a conversion made, so that the conversion comes before this allocation.
std::string* NewCopy(custom_unique_ptr<std::string> const& converted)
{
    return new std::string(*converted);
}

// Appends many short texts. The string grows when and as it does by appending one at a time, but
// most are just copied to where it is filled in advance.
class CAppender
{
public:
    explicit CAppender(std::string& text) : m_Text(text) { FillAhead(); }

    bool IsEmpty() const { return m_pEnd == m_Text.data(); }

    void Append(std::string_view text)
    {
        if (text.size() > m_Room) {
            Finish();
            m_Text.append(text);
            FillAhead();
            return;
        }
        std::memcpy(m_pEnd, text.data(), text.size());
        m_pEnd += text.size();
        m_Room -= text.size();
    }

    void Finish() { m_Text.resize(m_Text.size() - m_Room); }

private:
    void FillAhead()
    {
        constexpr unsigned long Step = 4096; // bounds the memory that is touched for nothing
        unsigned long const used = m_Text.size();
        m_Text.resize(std::min(m_Text.capacity(), used + Step));
        m_pEnd = m_Text.data() + used;
        m_Room = m_Text.size() - used;
    }

    std::string& m_Text;
    char* m_pEnd = nullptr;   // of what is appended
    unsigned long m_Room = 0; // filled behind it
};
} // namespace

CSafeString::CSafeString(char const* text) : m_pString(new std::string(text == nullptr ? "" : text))
{
}

CSafeString::CSafeString(basic_sv_wrapper<char> const& text)
    : m_pString(new std::string(text.data(), text.size()))
{
}

CSafeString::CSafeString(unsigned long count, char character)
    : m_pString(new std::string(count, character))
{
}

CSafeString::CSafeString(basic_sv_wrapper<wchar_t> text) : m_pString(NewCopy(StdWStrToUtf8(text)))
{
}

CSafeString::CSafeString(basic_sv_wrapper<char16_t> text) : m_pString(NewCopy(Utf16ToUtf8(text))) {}

CSafeString::CSafeString(std::vector<CSafeString> const& items,
                         basic_sv_wrapper<char> const& separator)
    : CSafeString(do_join(items, separator))
{
}

CSafeString::CSafeString(std::vector<CSafeString> const& items, char separator)
    : CSafeString(do_join(items, separator))
{
}

CSafeString::CSafeString(CSafeString const& other) : m_pString(new std::string(*other.m_pString)) {}

CSafeString::CSafeString(CSafeString&& other) noexcept
    : m_pString(std::exchange(other.m_pString, nullptr))
{
}

CSafeString& CSafeString::operator=(CSafeString const& other)
{
    if (this == &other)
        return *this;
    delete std::exchange(m_pString, nullptr);
    m_pString = new std::string(*other.m_pString);
    return *this;
}

CSafeString& CSafeString::operator=(CSafeString&& other) noexcept
{
    std::swap(m_pString, other.m_pString);
    return *this;
}

CSafeString::~CSafeString()
{
    delete m_pString;
}

void CSafeString::set(basic_sv_wrapper<char> const& text)
{
    m_pString->assign(text.data(), text.size());
}

void CSafeString::set(basic_sv_wrapper<char16_t> text)
{
    *m_pString = *Utf16ToUtf8(text);
}

void CSafeString::set(basic_sv_wrapper<wchar_t> text)
{
    *m_pString = *StdWStrToUtf8(text);
}

void CSafeString::clear()
{
    m_pString->clear();
}

char const* CSafeString::get() const noexcept
{
    return m_pString->c_str();
}

char const* CSafeString::data() const noexcept
{
    return m_pString->c_str();
}

char* CSafeString::data() noexcept
{
    return m_pString->data();
}

unsigned long CSafeString::size() const noexcept
{
    return m_pString->size();
}

bool CSafeString::empty() const noexcept
{
    return m_pString->empty();
}

// By way of data(): these check no position, also where the standard string would assert.

char& CSafeString::operator[](unsigned long position)
{
    return m_pString->data()[position];
}

char const& CSafeString::operator[](unsigned long position) const
{
    return m_pString->c_str()[position];
}

char& CSafeString::front()
{
    return *m_pString->data();
}

char const& CSafeString::front() const
{
    return *m_pString->c_str();
}

char& CSafeString::back()
{
    return m_pString->data()[m_pString->size() - 1];
}

char const& CSafeString::back() const
{
    return m_pString->c_str()[m_pString->size() - 1];
}

CSafeString::iterator CSafeString::begin()
{
    return m_pString->begin();
}

CSafeString::const_iterator CSafeString::cbegin()
{
    return m_pString->cbegin();
}

CSafeString::iterator CSafeString::end()
{
    return m_pString->end();
}

CSafeString::const_iterator CSafeString::cend()
{
    return m_pString->cend();
}

CSafeString::reverse_iterator CSafeString::rbegin()
{
    return m_pString->rbegin();
}

CSafeString::const_reverse_iterator CSafeString::crbegin()
{
    return m_pString->crbegin();
}

CSafeString::reverse_iterator CSafeString::rend()
{
    return m_pString->rend();
}

CSafeString::const_reverse_iterator CSafeString::crend()
{
    return m_pString->crend();
}

CSafeString::operator basic_sv_wrapper<char>() const noexcept
{
    return get();
}

int CSafeString::compare(basic_sv_wrapper<char> const& text) const
{
    return m_pString->compare(AsStandardView(text));
}

CSafeString CSafeString::substr(unsigned long position, unsigned long count) const
{
    if (position > size())
        static_cast<void>(m_pString->substr(position, count)); // throws, with its own text
    return basic_sv_wrapper<char>(get() + position, std::min(count, size() - position));
}

std::filesystem::path CSafeString::to_path() const
{
    return std::string(*m_pString);
}

CSafeString& CSafeString::operator+=(CSafeString const& other)
{
    m_pString->append(other.get());
    return *this;
}

CSafeString& CSafeString::operator+=(char const* text)
{
    m_pString->append(text);
    return *this;
}

CSafeString& CSafeString::operator+=(char character)
{
    m_pString->push_back(character);
    return *this;
}

CSafeString& CSafeString::operator+=(std::initializer_list<char> characters)
{
    m_pString->append(characters);
    return *this;
}

CSafeString& CSafeString::operator+=(basic_sv_wrapper<char> const& text)
{
    m_pString->append(text.data(), text.size());
    return *this;
}

CSafeString& CSafeString::append(basic_sv_wrapper<char> const& text)
{
    m_pString->append(text.data(), text.size());
    return *this;
}

CSafeString& CSafeString::append(basic_sv_wrapper<char> const& text, unsigned long position,
                                 unsigned long count)
{
    m_pString->append(AsStandardView(text), position, count);
    return *this;
}

CSafeString& CSafeString::append(char const* text, unsigned long count)
{
    m_pString->append(text, count);
    return *this;
}

CSafeString& CSafeString::append(char const* text)
{
    m_pString->append(text);
    return *this;
}

CSafeString& CSafeString::append(unsigned long count, char character)
{
    m_pString->append(count, character);
    return *this;
}

CSafeString& CSafeString::append(std::initializer_list<char> characters)
{
    m_pString->append(characters);
    return *this;
}

CSafeString CSafeString::do_join(std::vector<CSafeString> const& items,
                                 basic_sv_wrapper<char> const& separator)
{
    CSafeString const between(separator);
    CSafeString result;
    if (items.size() == 1) {
        result = items.front();
        return result;
    }
    std::string_view const separatorText = between.get(); // up to its NUL, and measured once
    CAppender appender(*result.m_pString);
    for (CSafeString const& item : items) {
        if (!appender.IsEmpty())
            appender.Append(separatorText);
        appender.Append(item.get());
    }
    appender.Finish();
    return result;
}

CSafeString CSafeString::do_join(std::vector<CSafeString> const& items, char separator)
{
    unsigned long const length = separator == '\0' ? 0 : 1;
    return do_join(items, basic_sv_wrapper<char>(&separator, length));
}

CSafeString CSafeString::join(std::vector<CSafeString> const& items,
                              basic_sv_wrapper<char> const& separator)
{
    *this = do_join(items, separator);
    return *this;
}

CSafeString CSafeString::join(std::vector<CSafeString> const& items, char separator)
{
    *this = do_join(items, separator);
    return *this;
}

bool operator==(CSafeString const& left, CSafeString const& right)
{
    unsigned long const size = left.size();
    return size == right.size() && std::memcmp(left.get(), right.get(), size) == 0;
}

bool std::less<CSafeString>::operator()(CSafeString const& left, CSafeString const& right) const
{
    return left.compare(basic_sv_wrapper<char>(right.get(), right.size())) < 0;
}
