#pragma once

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/Export.h>
#include <BaseUtilities/UIEnumerations.h>
#include <BaseUtilities/basic_sv_wrapper.h>
#include <BaseUtilities/custom_unique_ptr.h>

#include <QMetaType>
#include <QObject>

#include <cstdint>
#include <optional>
#include <vector>

/// The spelling of the char view in the signals. A string-based connection must
/// spell it so in the slot, too: SLOT(Show(EUIMode,std::uint32_t,sv_wrapper)).
/// Qt looks types up by name there: it takes `basic_sv_wrapper<char>` for the
/// same type, and refuses every other alias with a warning only.
using sv_wrapper = basic_sv_wrapper<char>;

/// Every request of a running test to its operator, as a Qt signal. The library
/// only emits: the application makes one object, registers it with
/// UIHelperBase, and connects the user interface to it.
///
/// Connect with Qt::BlockingQueuedConnection, or with Qt::DirectConnection where
/// emitter and receiver share a thread. Answers come back through pointers into
/// the emitter's frame and through return values, so a plain queued connection
/// would write into a frame that is gone. Without a receiver a signal returns at
/// once: false, or an empty result.
///
/// An exception of a slot reaches the emitter only through a direct connection.
/// In a blocking one Qt keeps it in the receiver's thread, where it ends the
/// event loop or the process: catch in the slot, and answer "rejected".
///
/// `timeout` is the receiver's to interpret, the meaning of 0 too. A null
/// `returnValue` is not checked for. Text is UTF-8, lent for the call.
///
/// Threads: emitted from any; the refresh flag is plain, without a lock.
class BASEUTILITIES_EXPORT CQtSignaler : public QObject
{
    Q_OBJECT

public:
    CQtSignaler();
    ~CQtSignaler() override;

    /// The refresh flag: cleared by RefreshInit, as at construction, and set by
    /// SetRefreshCompleted.
    void RefreshInit();
    void SetRefreshCompleted();
    bool RefreshCompleted() const;

    // The order of the signals is part of the interface.
Q_SIGNALS:
    /// The results view has been refreshed.
    void RefreshDone();

    /// Offers to abort the suite; the answer is whether to.
    bool AbortTestSuite(bool);

    /// A choice between two; the receiver writes `*returnValue`.
    /// Deliberate: the mode is called `uiType` here, and `mode` in all others.
    void BooleanChoice(EUIMode uiType, std::uint32_t timeout, sv_wrapper const& text,
                       bool* returnValue, sv_wrapper const& truePromptText,
                       sv_wrapper const& falsePromptText,
                       gui::EAbortPromptState showAbortTestSuitePrompt,
                       sv_wrapper const& abortTestSuitePromptText);

    /// A number, initially `*returnValue` when `setInitialValue` says so.
    /// Deliberate: the upper bound `max` comes before the lower bound `min`.
    void GetInteger(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text,
                    sv_wrapper const& additionalText, std::uintptr_t* returnValue,
                    ENumericBase base, bool setInitialValue, std::uintptr_t max, std::uintptr_t min,
                    sv_wrapper const& acceptPromptText, sv_wrapper const& rejectPromptText,
                    gui::EAbortPromptState showAbortTestSuitePrompt,
                    sv_wrapper const& abortTestSuitePromptText);

    /// One of `items`; the receiver writes its index to `*returnValue`.
    void SelectItem(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text,
                    std::vector<CSafeString> const& items, std::int32_t* returnValue,
                    sv_wrapper const& acceptPromptText, sv_wrapper const& rejectPromptText,
                    gui::EAbortPromptState showAbortTestSuitePrompt,
                    sv_wrapper const& abortTestSuitePromptText);

    /// Any of `items`; the receiver stores the address of a vector of indices
    /// in `*returnValues`. Who frees it is agreed within the application.
    void SelectMultipleItems(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text,
                             std::vector<CSafeString> const& items,
                             std::vector<std::int32_t>** returnValues,
                             sv_wrapper const& acceptPromptText, sv_wrapper const& rejectPromptText,
                             gui::EAbortPromptState showAbortTestSuitePrompt,
                             sv_wrapper const& abortTestSuitePromptText);

    /// An information box, which the operator may close when `canClose` says so.
    void ShowInfo(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text, bool canClose,
                  sv_wrapper const& closePromptText, EUIEmphasis emphasis,
                  gui::EAbortPromptState showAbortTestSuitePrompt,
                  sv_wrapper const& abortTestSuitePromptText);

    // The pickers' texts are agreed within the application; an empty result means
    // that nothing was picked.

    std::optional<CSafeString> PickSingleFile(sv_wrapper const&, sv_wrapper const&,
                                              sv_wrapper const&, sv_wrapper const&);

    std::optional<CSafeString> PickDirectory(sv_wrapper const&, sv_wrapper const&,
                                             sv_wrapper const&);

    custom_unique_ptr<std::optional<std::vector<CSafeString>>>
    PickMultipleFiles(sv_wrapper const&, sv_wrapper const&, sv_wrapper const&, sv_wrapper const&);

    /// Closes a prompt that is still open.
    void CloseUserInput(bool = false);

    /// The results have changed.
    void UpdateResults();

private:
    bool m_RefreshCompleted = false;
};
