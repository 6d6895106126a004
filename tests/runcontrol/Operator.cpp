#include "Operator.h"

#include <string_view>

namespace
{
// With each NUL shown.
std::string Quoted(std::string_view characters)
{
    std::string text = "'";
    for (char const character : characters)
        text += character == '\0' ? std::string("\\0") : std::string(1, character);
    return text + "'";
}
} // namespace

std::string Text(bool value)
{
    return value ? "true" : "false";
}

std::string Text(std::uint32_t value)
{
    return std::to_string(value);
}

std::string Text(std::int32_t value)
{
    return std::to_string(value);
}

std::string Text(std::uintptr_t value)
{
    return std::to_string(value);
}

std::string Text(EUIMode value)
{
    return Text(static_cast<int>(value));
}

std::string Text(EUIEmphasis value)
{
    return Text(static_cast<int>(value));
}

std::string Text(ENumericBase value)
{
    return Text(static_cast<int>(value));
}

std::string Text(gui::EAbortPromptState value)
{
    return Text(static_cast<int>(value));
}

std::string Text(sv_wrapper const& value)
{
    return value.m_HasValue ? Quoted(static_cast<std::string_view>(value)) : "unset";
}

std::string Text(CSafeString const& value)
{
    return Quoted(std::string_view(value.get(), value.size()));
}

std::string Text(std::optional<CSafeString> const& value)
{
    return value ? Text(*value) : "empty";
}

std::string Text(std::optional<std::vector<CSafeString>> const* value)
{
    return value == nullptr ? "null" : *value ? Text(**value) : "empty";
}

void COperator::RefreshDone()
{
    Remember("RefreshDone");
}

bool COperator::AbortTestSuite(bool offered)
{
    Remember("AbortTestSuite", offered);
    return true;
}

void COperator::BooleanChoice(EUIMode uiType, std::uint32_t timeout, sv_wrapper const& text,
                              bool* returnValue, sv_wrapper const& truePromptText,
                              sv_wrapper const& falsePromptText, gui::EAbortPromptState prompt,
                              sv_wrapper const& promptText)
{
    Remember("BooleanChoice", uiType, timeout, text, truePromptText, falsePromptText, prompt,
             promptText);
    *returnValue = true;
}

void COperator::GetInteger(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text,
                           sv_wrapper const& additionalText, std::uintptr_t* returnValue,
                           ENumericBase base, bool setInitialValue, std::uintptr_t max,
                           std::uintptr_t min, sv_wrapper const& accept, sv_wrapper const& reject,
                           gui::EAbortPromptState prompt, sv_wrapper const& promptText)
{
    Remember("GetInteger", mode, timeout, text, additionalText, *returnValue, base, setInitialValue,
             max, min, accept, reject, prompt, promptText);
    *returnValue = max - 1;
}

void COperator::SelectItem(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text,
                           std::vector<CSafeString> const& items, std::int32_t* returnValue,
                           sv_wrapper const& accept, sv_wrapper const& reject,
                           gui::EAbortPromptState prompt, sv_wrapper const& promptText)
{
    Remember("SelectItem", mode, timeout, text, items, accept, reject, prompt, promptText);
    *returnValue = -2;
}

void COperator::SelectMultipleItems(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text,
                                    std::vector<CSafeString> const& items,
                                    std::vector<std::int32_t>** returnValues,
                                    sv_wrapper const& accept, sv_wrapper const& reject,
                                    gui::EAbortPromptState prompt, sv_wrapper const& promptText)
{
    Remember("SelectMultipleItems", mode, timeout, text, items, accept, reject, prompt, promptText);
    *returnValues = &m_Chosen;
}

void COperator::ShowInfo(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text, bool canClose,
                         sv_wrapper const& closePromptText, EUIEmphasis emphasis,
                         gui::EAbortPromptState prompt, sv_wrapper const& promptText)
{
    Remember("ShowInfo", mode, timeout, text, canClose, closePromptText, emphasis, prompt,
             promptText);
}

std::optional<CSafeString> COperator::PickSingleFile(sv_wrapper const& first,
                                                     sv_wrapper const& second,
                                                     sv_wrapper const& third,
                                                     sv_wrapper const& fourth)
{
    Remember("PickSingleFile", first, second, third, fourth);
    return CSafeString("a file");
}

std::optional<CSafeString>
COperator::PickDirectory(sv_wrapper const& first, sv_wrapper const& second, sv_wrapper const& third)
{
    Remember("PickDirectory", first, second, third);
    return CSafeString("a folder");
}

custom_unique_ptr<std::optional<std::vector<CSafeString>>>
COperator::PickMultipleFiles(sv_wrapper const& first, sv_wrapper const& second,
                             sv_wrapper const& third, sv_wrapper const& fourth)
{
    Remember("PickMultipleFiles", first, second, third, fourth);
    return make_custom_unique(
        std::optional<std::vector<CSafeString>>(std::vector<CSafeString>{"one", "two"}));
}

void COperator::CloseUserInput(bool value)
{
    Remember("CloseUserInput", value);
}

void COperator::CloseUserInput()
{
    Remember("CloseUserInput without argument");
}

void COperator::UpdateResults()
{
    Remember("UpdateResults");
}

std::optional<CSafeString> COtherSpellings::PickByAlias(ViewAlias const& first, ViewAlias const&,
                                                        ViewAlias const&)
{
    return CSafeString(first);
}

std::optional<CSafeString> COtherSpellings::PickByOwnName(basic_sv_wrapper<char> const& first,
                                                          basic_sv_wrapper<char> const&,
                                                          basic_sv_wrapper<char> const&)
{
    return CSafeString(first);
}
