#pragma once

#include <BaseUtilities/CQtSignaler.h>

#include <QObject>
#include <QPointer>

#include <functional>
#include <vector>

class CRequestDialog;
class QDialog;
class QWidget;

/// Answers every request of the suite with a dialogue. None of them blocks the
/// window: its results can be read, the suite paused or aborted, and the window
/// closed while a question is open. A modal one stays above the window, though;
/// a modeless one is a window of its own.
///
/// It lives in the interface's thread, where all its slots run; whichever thread
/// emits waits for the answer. Of several open dialogues the operator answers any
/// at any time; the answers reach their emitters in the reverse order of the
/// requests, though, the newest first. A slot never throws: whatever goes wrong, and
/// whatever comes after Close, is answered as "rejected".
class CRequestBridge : public QObject
{
public:
    /// `onAbort` is called when the operator asks a dialogue to end the suite.
    CRequestBridge(QWidget& window, std::function<void()> onAbort);

    /// Connects every signal.
    void ConnectTo(CQtSignaler& signaler);
    /// Called when the suite has new results to show.
    void OnUpdateResults(std::function<void()> update) { m_OnUpdateResults = std::move(update); }
    bool IsAsking() const { return !m_Open.empty(); }
    /// Rejects what is open.
    void RejectOpen() { CloseUserInput(true); }
    /// Rejects what is open and whatever comes.
    void Close();

private:
    bool AbortTestSuite(bool initial);
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
                 Result (CRequestBridge::*slot)(Parameters...));
    template <class Result, class Slot>
    Result CallInOwnThread(Slot slot);
    QWidget* Parent(EUIMode mode) const;
    bool IsAccepted(QDialog& dialog);
    bool IsAnswered(CRequestDialog& dialog);
    bool MayWrite(QString const& file);

    QWidget& m_Window;
    std::function<void()> m_OnAbort;
    std::function<void()> m_OnUpdateResults;
    std::vector<QPointer<QDialog>> m_Open; // the newest last
    unsigned m_Closings = 0;               // calls of CloseUserInput
    bool m_Closed = false;
};
