#include "CRequestBridge.h"

#include "RequestDialogs.h"
#include "Text.h"

#include <UIChoices.h>

#include <QFileDialog>
#include <QMetaObject>
#include <QThread>

#include <algorithm>
#include <memory>
#include <type_traits>
#include <utility>

namespace
{
CRequestTexts Texts(sv_wrapper const& text, sv_wrapper const& accept, sv_wrapper const& reject,
                    gui::EAbortPromptState abort, sv_wrapper const& abortText)
{
    return {ToQString(text), ToQString(accept), ToQString(reject),
            abort == gui::EAbortPromptState::Shown ? ToQString(abortText) : QString()};
}

QStringList ToQStrings(std::vector<CSafeString> const& items)
{
    QStringList texts;
    for (CSafeString const& item : items)
        texts.append(ToQString(item));
    return texts;
}

EInfoIcon IconFor(EUIEmphasis emphasis)
{
    switch (emphasis) {
    case EUIEmphasis::Warning:
        return EInfoIcon::Warning;
    case EUIEmphasis::Error:
        return EInfoIcon::Error;
    default:
        return EInfoIcon::Information;
    }
}

// Qt's own picker in this program's window, alike on every desktop.
void Prepare(QFileDialog& picker, sv_wrapper const& title, sv_wrapper const& folder)
{
    picker.setOption(QFileDialog::DontUseNativeDialog);
    picker.setWindowTitle(ToQString(title));
    if (folder)
        picker.setDirectory(ToQString(folder));
}
} // namespace

CRequestBridge::CRequestBridge(QWidget& window, std::function<void()> onAbort)
    : m_Window(window),
      m_OnAbort(std::move(onAbort))
{
}

void CRequestBridge::ConnectTo(CQtSignaler& signaler)
{
    Connect(signaler, &CQtSignaler::AbortTestSuite, &CRequestBridge::AbortTestSuite);
    Connect(signaler, &CQtSignaler::BooleanChoice, &CRequestBridge::BooleanChoice);
    Connect(signaler, &CQtSignaler::GetInteger, &CRequestBridge::GetInteger);
    Connect(signaler, &CQtSignaler::SelectItem, &CRequestBridge::SelectItem);
    Connect(signaler, &CQtSignaler::SelectMultipleItems, &CRequestBridge::SelectMultipleItems);
    Connect(signaler, &CQtSignaler::ShowInfo, &CRequestBridge::ShowInfo);
    Connect(signaler, &CQtSignaler::PickSingleFile, &CRequestBridge::PickSingleFile);
    Connect(signaler, &CQtSignaler::PickDirectory, &CRequestBridge::PickDirectory);
    Connect(signaler, &CQtSignaler::PickMultipleFiles, &CRequestBridge::PickMultipleFiles);
    Connect(signaler, &CQtSignaler::CloseUserInput, &CRequestBridge::CloseUserInput);
    Connect(signaler, &CQtSignaler::UpdateResults, &CRequestBridge::UpdateResults);
    Connect(signaler, &CQtSignaler::RefreshDone, &CRequestBridge::UpdateResults);
}

void CRequestBridge::Close()
{
    m_Closed = true;
    CloseUserInput(true);
}

// Direct in this object's thread, where waiting for oneself would never end; blocking otherwise.
template <class Result, class Slot>
Result CRequestBridge::CallInOwnThread(Slot slot)
{
    auto const kind =
        QThread::currentThread() == thread() ? Qt::DirectConnection : Qt::BlockingQueuedConnection;
    if constexpr (std::is_void_v<Result>) {
        auto const guarded = [&] {
            try {
                slot();
            } catch (...) { // nobody could tell the emitter; unanswered means rejected
            }
        };
        QMetaObject::invokeMethod(this, guarded, kind);
    } else {
        Result result{};
        CallInOwnThread<void>([&] { result = slot(); });
        return result;
    }
}

template <class Result, class Signal, class... Parameters>
void CRequestBridge::Connect(CQtSignaler& signaler, Signal signal,
                             Result (CRequestBridge::*slot)(Parameters...))
{
    connect(
        &signaler, signal, this,
        [this, slot](auto const&... arguments) -> Result {
            return CallInOwnThread<Result>([&] { return (this->*slot)(arguments...); });
        },
        Qt::DirectConnection);
}

bool CRequestBridge::IsAccepted(CRequestDialog& dialog)
{
    if (m_Closed)
        return false;
    m_Open.emplace_back(&dialog);
    EReply const reply = dialog.Ask();
    m_Open.pop_back();
    if (reply == EReply::AbortSuite)
        m_OnAbort();
    return reply == EReply::Accepted && !m_Closed;
}

bool CRequestBridge::IsAccepted(QFileDialog& picker)
{
    if (m_Closed)
        return false;
    m_Open.emplace_back(&picker);
    bool const accepted = picker.exec() == QDialog::Accepted;
    m_Open.pop_back();
    return accepted && !m_Closed;
}

bool CRequestBridge::AbortTestSuite(bool initial)
{
    CRequestTexts const texts = {initial ? tr("The suite suggests to end here. Abort it?")
                                         : tr("Abort the suite?"),
                                 tr("Abort"), tr("Go on"), QString()};
    CRequestDialog dialog(&m_Window, texts, 0);
    return IsAccepted(dialog);
}

void CRequestBridge::BooleanChoice(EUIMode, std::uint32_t timeout, sv_wrapper const& text,
                                   bool* answer, sv_wrapper const& trueText,
                                   sv_wrapper const& falseText, gui::EAbortPromptState abort,
                                   sv_wrapper const& abortText)
{
    *answer = false;
    CRequestDialog dialog(&m_Window, Texts(text, trueText, falseText, abort, abortText), timeout);
    *answer = IsAccepted(dialog);
}

void CRequestBridge::GetInteger(EUIMode, std::uint32_t timeout, sv_wrapper const& text,
                                sv_wrapper const& additionalText, std::uintptr_t* answer,
                                ENumericBase base, bool setInitialValue, std::uintptr_t max,
                                std::uintptr_t min, sv_wrapper const& acceptText,
                                sv_wrapper const& rejectText, gui::EAbortPromptState abort,
                                sv_wrapper const& abortText)
{
    CIntegerDialog dialog(&m_Window, Texts(text, acceptText, rejectText, abort, abortText), timeout,
                          ToQString(additionalText), {static_cast<int>(base), min, max});
    if (setInitialValue)
        dialog.SetValue(*answer);
    if (IsAccepted(dialog))
        *answer = dialog.Value();
}

void CRequestBridge::SelectItem(EUIMode, std::uint32_t timeout, sv_wrapper const& text,
                                std::vector<CSafeString> const& items, std::int32_t* answer,
                                sv_wrapper const& acceptText, sv_wrapper const& rejectText,
                                gui::EAbortPromptState abort, sv_wrapper const& abortText)
{
    *answer = -1;
    CItemsDialog dialog(&m_Window, Texts(text, acceptText, rejectText, abort, abortText), timeout,
                        ToQStrings(items), EChoice::One);
    if (IsAccepted(dialog))
        *answer = dialog.Chosen().front();
}

void CRequestBridge::SelectMultipleItems(EUIMode, std::uint32_t timeout, sv_wrapper const& text,
                                         std::vector<CSafeString> const& items,
                                         std::vector<std::int32_t>** answer,
                                         sv_wrapper const& acceptText, sv_wrapper const& rejectText,
                                         gui::EAbortPromptState abort, sv_wrapper const& abortText)
{
    *answer = nullptr;
    CItemsDialog dialog(&m_Window, Texts(text, acceptText, rejectText, abort, abortText), timeout,
                        ToQStrings(items), EChoice::Several);
    if (IsAccepted(dialog))
        *answer = std::make_unique<std::vector<std::int32_t>>(dialog.Chosen()).release();
}

void CRequestBridge::ShowInfo(EUIMode, std::uint32_t timeout, sv_wrapper const& text, bool canClose,
                              sv_wrapper const& closeText, EUIEmphasis emphasis,
                              gui::EAbortPromptState abort, sv_wrapper const& abortText)
{
    CInfoDialog dialog(&m_Window, Texts(text, closeText, "", abort, abortText), timeout,
                       IconFor(emphasis), canClose);
    IsAccepted(dialog);
}

std::optional<CSafeString> CRequestBridge::PickSingleFile(sv_wrapper const& title,
                                                          sv_wrapper const& folder,
                                                          sv_wrapper const& name,
                                                          sv_wrapper const& filter)
{
    QFileDialog picker(&m_Window);
    Prepare(picker, title, folder);
    picker.setAcceptMode(QFileDialog::AcceptSave);
    picker.setNameFilter(ToQString(filter));
    picker.selectFile(ToQString(name));
    if (!IsAccepted(picker))
        return std::nullopt;
    return ToSafeString(picker.selectedFiles().value(0));
}

std::optional<CSafeString> CRequestBridge::PickDirectory(sv_wrapper const& title,
                                                         sv_wrapper const& folder,
                                                         sv_wrapper const& name)
{
    QFileDialog picker(&m_Window);
    Prepare(picker, title, folder);
    picker.setFileMode(QFileDialog::Directory);
    picker.setOption(QFileDialog::ShowDirsOnly);
    if (name)
        picker.selectFile(ToQString(name));
    if (!IsAccepted(picker))
        return std::nullopt;
    return ToSafeString(picker.selectedFiles().value(0));
}

custom_unique_ptr<std::optional<std::vector<CSafeString>>>
CRequestBridge::PickMultipleFiles(sv_wrapper const& title, sv_wrapper const& folder,
                                  sv_wrapper const& name, sv_wrapper const& filter)
{
    std::optional<std::vector<CSafeString>> files;
    QFileDialog picker(&m_Window);
    Prepare(picker, title, folder);
    picker.setFileMode(QFileDialog::ExistingFiles);
    picker.setNameFilter(ToQString(filter));
    if (name)
        picker.selectFile(ToQString(name));
    if (IsAccepted(picker)) {
        files.emplace();
        for (QString const& file : picker.selectedFiles())
            files->push_back(ToSafeString(file));
    }
    return make_custom_unique<std::optional<std::vector<CSafeString>>>(std::move(files));
}

// The newest prompt, or all of them.
void CRequestBridge::CloseUserInput(bool all)
{
    std::vector<QPointer<QDialog>> open = m_Open;
    std::reverse(open.begin(), open.end());
    if (!all && open.size() > 1)
        open.resize(1);
    for (QPointer<QDialog> const& dialog : open)
        if (dialog)
            dialog->done(QDialog::Rejected);
}

void CRequestBridge::UpdateResults()
{
    if (m_OnUpdateResults && !m_Closed)
        m_OnUpdateResults();
}
