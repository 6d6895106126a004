#pragma once

#include "CPrompter.h"

#include <BaseUtilities/CQtSignaler.h>

#include <QObject>

#include <filesystem>

/// Answers every request of the suite with a dialogue at the console, on the
/// thread that emits it.
///
/// A rejected request leaves its answer as it is for a number, and makes it "no",
/// no item or no path otherwise. So does whatever goes wrong: a slot never throws.
/// Time-outs are in seconds, 0 for none, and reject.
class CConsoleDialogues : public QObject
{
public:
    CConsoleDialogues(CPrompter& prompter, CConsoleReport& report);

    /// Connects every signal.
    void ConnectTo(CQtSignaler& signaler);

private:
    bool AbortTestSuite(bool suggested);
    void BooleanChoice(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text, bool* answer,
                       sv_wrapper const& trueText, sv_wrapper const& falseText,
                       gui::EAbortPromptState abort, sv_wrapper const& abortText);
    void GetInteger(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text,
                    sv_wrapper const& additionalText, std::uintptr_t* answer, ENumericBase base,
                    bool setInitialValue, std::uintptr_t max, std::uintptr_t min,
                    sv_wrapper const& acceptText, sv_wrapper const& rejectText,
                    gui::EAbortPromptState abort, sv_wrapper const& abortText);
    void SelectItem(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text,
                    std::vector<CSafeString> const& items, std::int32_t* answer,
                    sv_wrapper const& acceptText, sv_wrapper const& rejectText,
                    gui::EAbortPromptState abort, sv_wrapper const& abortText);
    void SelectMultipleItems(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text,
                             std::vector<CSafeString> const& items,
                             std::vector<std::int32_t>** answer, sv_wrapper const& acceptText,
                             sv_wrapper const& rejectText, gui::EAbortPromptState abort,
                             sv_wrapper const& abortText);
    void ShowInfo(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text, bool canClose,
                  sv_wrapper const& closeText, EUIEmphasis emphasis, gui::EAbortPromptState abort,
                  sv_wrapper const& abortText);
    std::optional<CSafeString> PickSingleFile(sv_wrapper const& title, sv_wrapper const& folder,
                                              sv_wrapper const& name, sv_wrapper const& filter);
    std::optional<CSafeString> PickDirectory(sv_wrapper const& title, sv_wrapper const& folder,
                                             sv_wrapper const& name);
    custom_unique_ptr<std::optional<std::vector<CSafeString>>>
    PickMultipleFiles(sv_wrapper const& title, sv_wrapper const& folder, sv_wrapper const& name,
                      sv_wrapper const& filter);
    void CloseUserInput(bool all);
    void UpdateResults();

    template <class Result, class Signal, class... Parameters>
    void Connect(CQtSignaler& signaler, Signal signal,
                 Result (CConsoleDialogues::*slot)(Parameters...));
    using PathCheck = std::function<std::string(std::filesystem::path const&)>;
    std::optional<std::filesystem::path> AskForPath(CQuestion question,
                                                    std::filesystem::path const& folder,
                                                    std::string const& name,
                                                    PathCheck const& check);

    CPrompter& m_Prompter;
    CConsoleReport& m_Report;
};
