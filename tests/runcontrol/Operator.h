#pragma once

#include <BaseUtilities/CQtSignaler.h>

#include <QThread>

#include <string>
#include <vector>

// The values of the arguments as text, with all that could get lost on their way.
std::string Text(bool value);
std::string Text(std::uint32_t value);
std::string Text(std::int32_t value);
std::string Text(std::uintptr_t value);
std::string Text(EUIMode value);
std::string Text(EUIEmphasis value);
std::string Text(ENumericBase value);
std::string Text(gui::EAbortPromptState value);
std::string Text(sv_wrapper const& value);
std::string Text(CSafeString const& value);
std::string Text(std::optional<CSafeString> const& value);
std::string Text(std::optional<std::vector<CSafeString>> const* value);

template <class T>
std::string Text(std::vector<T> const& values)
{
    std::string text = "[";
    for (T const& value : values)
        text += (text.size() > 1 ? "," : "") + Text(value);
    return text + "]";
}

/// Answers every request, and remembers each with its arguments in the order of
/// the signal, the pointers for the answers left out.
class COperator : public QObject
{
    Q_OBJECT

public:
    std::vector<std::string> const& Requests() const { return m_Requests; }
    /// The thread that ran the last slot.
    QThread* LastThread() const { return m_LastThread; }

public Q_SLOTS:
    void RefreshDone();
    bool AbortTestSuite(bool offered);
    void BooleanChoice(EUIMode uiType, std::uint32_t timeout, sv_wrapper const& text,
                       bool* returnValue, sv_wrapper const& truePromptText,
                       sv_wrapper const& falsePromptText, gui::EAbortPromptState prompt,
                       sv_wrapper const& promptText);
    void GetInteger(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text,
                    sv_wrapper const& additionalText, std::uintptr_t* returnValue,
                    ENumericBase base, bool setInitialValue, std::uintptr_t max, std::uintptr_t min,
                    sv_wrapper const& accept, sv_wrapper const& reject,
                    gui::EAbortPromptState prompt, sv_wrapper const& promptText);
    void SelectItem(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text,
                    std::vector<CSafeString> const& items, std::int32_t* returnValue,
                    sv_wrapper const& accept, sv_wrapper const& reject,
                    gui::EAbortPromptState prompt, sv_wrapper const& promptText);
    void SelectMultipleItems(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text,
                             std::vector<CSafeString> const& items,
                             std::vector<std::int32_t>** returnValues, sv_wrapper const& accept,
                             sv_wrapper const& reject, gui::EAbortPromptState prompt,
                             sv_wrapper const& promptText);
    void ShowInfo(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text, bool canClose,
                  sv_wrapper const& closePromptText, EUIEmphasis emphasis,
                  gui::EAbortPromptState prompt, sv_wrapper const& promptText);
    std::optional<CSafeString> PickSingleFile(sv_wrapper const& first, sv_wrapper const& second,
                                              sv_wrapper const& third, sv_wrapper const& fourth);
    std::optional<CSafeString> PickDirectory(sv_wrapper const& first, sv_wrapper const& second,
                                             sv_wrapper const& third);
    custom_unique_ptr<std::optional<std::vector<CSafeString>>>
    PickMultipleFiles(sv_wrapper const& first, sv_wrapper const& second, sv_wrapper const& third,
                      sv_wrapper const& fourth);
    void CloseUserInput(bool value);
    void CloseUserInput();
    void UpdateResults();

private:
    template <class... Arguments>
    void Remember(char const* request, Arguments const&... arguments)
    {
        m_Requests.push_back(request + ((" " + Text(arguments)) + ... + std::string()));
        m_LastThread = QThread::currentThread();
    }

    std::vector<std::string> m_Requests;
    std::vector<std::int32_t> m_Chosen{2, 0};
    QThread* m_LastThread = nullptr;
};

using ViewAlias = sv_wrapper;

/// Spells the view in its slots by other names than the signals.
class COtherSpellings : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    std::optional<CSafeString> PickByAlias(ViewAlias const& first, ViewAlias const& second,
                                           ViewAlias const& third);
    std::optional<CSafeString> PickByOwnName(basic_sv_wrapper<char> const& first,
                                             basic_sv_wrapper<char> const& second,
                                             basic_sv_wrapper<char> const& third);
};

/// A thread with an event loop, ended with its object. Objects moved to it are
/// to be destroyed after it.
class CEventThread
{
public:
    CEventThread() { m_Thread.start(); }
    CEventThread(CEventThread const&) = delete;
    CEventThread& operator=(CEventThread const&) = delete;
    ~CEventThread()
    {
        m_Thread.quit();
        m_Thread.wait();
    }
    QThread* get() { return &m_Thread; }

private:
    QThread m_Thread;
};
