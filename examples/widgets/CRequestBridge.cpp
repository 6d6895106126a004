#include "CRequestBridge.h"

#include "CallIn.h"
#include "RequestDialogs.h"
#include "Text.h"

#include <SuiteTexts.h>
#include <UIChoices.h>

#include <QApplication>
#include <QEventLoop>
#include <QFileDialog>
#include <QFileInfo>

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

ERequestIcon IconFor(EUIEmphasis emphasis)
{
    switch (emphasis) {
    case EUIEmphasis::Warning:
        return ERequestIcon::Warning;
    case EUIEmphasis::Error:
        return ERequestIcon::Error;
    default:
        return ERequestIcon::Information;
    }
}

void CloseDialog(QDialog& dialog)
{
    for (QDialog* const inner : dialog.findChildren<QDialog*>())
        inner->done(QDialog::Rejected);
    dialog.done(QDialog::Rejected);
}

// What a picker asks by itself would be modal to the whole program, and Qt closes no window behind
// such a dialogue. Before it appears, this takes that from it.
class CNoModality : public QObject
{
public:
    CNoModality() { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* const dialog =
            event->type() == QEvent::Show ? qobject_cast<QDialog*>(watched) : nullptr;
        if (dialog != nullptr && dialog->isModal())
            dialog->setModal(false);
        return false;
    }
};

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

template <class Result, class Slot>
Result CRequestBridge::CallInOwnThread(Slot slot)
{
    if constexpr (std::is_void_v<Result>) {
        CallIn(*this, [&] {
            try {
                slot();
            } catch (...) { // nobody could tell the emitter; unanswered means rejected
            }
        });
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

QWidget* CRequestBridge::Parent(EUIMode mode) const
{
    return mode == EUIMode::Modal ? &m_Window : nullptr;
}

// Deliberate: no dialogue is modal to Qt, which would refuse to close the window behind it.
// A request that comes meanwhile runs its loop within this one's, so that it is answered first and
// m_Open is a stack.
bool CRequestBridge::IsAccepted(QDialog& dialog)
{
    if (m_Closed)
        return false;
    CNoModality const noModality;
    QEventLoop loop;
    connect(&dialog, &QDialog::finished, &loop, &QEventLoop::quit);
    m_Open.emplace_back(&dialog);
    dialog.setResult(QDialog::Rejected);
    dialog.show();
    dialog.activateWindow();
    QApplication::alert(&dialog);
    loop.exec();
    m_Open.pop_back();
    return dialog.result() == QDialog::Accepted && !m_Closed;
}

bool CRequestBridge::IsAnswered(CRequestDialog& dialog)
{
    bool const accepted = IsAccepted(dialog);
    if (dialog.Reply() == EReply::AbortSuite)
        m_OnAbort();
    return accepted;
}

bool CRequestBridge::MayWrite(QString const& file)
{
    if (!QFileInfo::exists(file))
        return true;
    CRequestTexts const texts = {tr("%1 exists already. Replace it?").arg(file), tr("Replace"),
                                 tr("Choose another"), QString()};
    CRequestDialog dialog(&m_Window, texts, 0, ERequestIcon::Warning);
    return IsAnswered(dialog);
}

bool CRequestBridge::AbortTestSuite(bool initial)
{
    CRequestTexts const texts = {AbortQuestion(initial), abortAccepted, abortRejected, QString()};
    CRequestDialog dialog(&m_Window, texts, 0);
    return IsAnswered(dialog);
}

void CRequestBridge::BooleanChoice(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text,
                                   bool* answer, sv_wrapper const& trueText,
                                   sv_wrapper const& falseText, gui::EAbortPromptState abort,
                                   sv_wrapper const& abortText)
{
    *answer = false;
    CRequestDialog dialog(Parent(mode), Texts(text, trueText, falseText, abort, abortText),
                          timeout);
    *answer = IsAnswered(dialog);
}

void CRequestBridge::GetInteger(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text,
                                sv_wrapper const& additionalText, std::uintptr_t* answer,
                                ENumericBase base, bool setInitialValue, std::uintptr_t max,
                                std::uintptr_t min, sv_wrapper const& acceptText,
                                sv_wrapper const& rejectText, gui::EAbortPromptState abort,
                                sv_wrapper const& abortText)
{
    CIntegerDialog dialog(Parent(mode), Texts(text, acceptText, rejectText, abort, abortText),
                          timeout, ToQString(additionalText), {static_cast<int>(base), min, max});
    if (setInitialValue)
        dialog.SetValue(*answer);
    if (IsAnswered(dialog))
        *answer = dialog.Value();
}

void CRequestBridge::SelectItem(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text,
                                std::vector<CSafeString> const& items, std::int32_t* answer,
                                sv_wrapper const& acceptText, sv_wrapper const& rejectText,
                                gui::EAbortPromptState abort, sv_wrapper const& abortText)
{
    *answer = -1;
    CItemsDialog dialog(Parent(mode), Texts(text, acceptText, rejectText, abort, abortText),
                        timeout, ToQStrings(items), EChoice::One);
    if (IsAnswered(dialog))
        *answer = dialog.Chosen().front();
}

void CRequestBridge::SelectMultipleItems(EUIMode mode, std::uint32_t timeout,
                                         sv_wrapper const& text,
                                         std::vector<CSafeString> const& items,
                                         std::vector<std::int32_t>** answer,
                                         sv_wrapper const& acceptText, sv_wrapper const& rejectText,
                                         gui::EAbortPromptState abort, sv_wrapper const& abortText)
{
    *answer = nullptr;
    CItemsDialog dialog(Parent(mode), Texts(text, acceptText, rejectText, abort, abortText),
                        timeout, ToQStrings(items), EChoice::Several);
    if (IsAnswered(dialog))
        *answer = std::make_unique<std::vector<std::int32_t>>(dialog.Chosen()).release();
}

void CRequestBridge::ShowInfo(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text,
                              bool canClose, sv_wrapper const& closeText, EUIEmphasis emphasis,
                              gui::EAbortPromptState abort, sv_wrapper const& abortText)
{
    CInfoDialog dialog(Parent(mode), Texts(text, closeText, "", abort, abortText), timeout,
                       IconFor(emphasis), canClose);
    IsAnswered(dialog);
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
    // The picker's own question would be modal.
    picker.setOption(QFileDialog::DontConfirmOverwrite);
    unsigned const closings = m_Closings;
    while (closings == m_Closings && IsAccepted(picker)) {
        QString const file = picker.selectedFiles().value(0);
        if (MayWrite(file))
            return ToSafeString(file);
    }
    return std::nullopt;
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
    picker.setOption(QFileDialog::ReadOnly);
    if (name)
        picker.selectFile(ToQString(name));
    if (IsAccepted(picker)) {
        files.emplace();
        for (QString const& file : picker.selectedFiles())
            files->push_back(ToSafeString(file));
    }
    return make_custom_unique<std::optional<std::vector<CSafeString>>>(std::move(files));
}

// The newest prompt, or all of them; what a picker asks by itself goes with it.
void CRequestBridge::CloseUserInput(bool all)
{
    ++m_Closings;
    std::vector<QPointer<QDialog>> open = m_Open;
    std::reverse(open.begin(), open.end());
    if (!all && open.size() > 1)
        open.resize(1);
    for (QPointer<QDialog> const& dialog : open)
        if (dialog)
            CloseDialog(*dialog);
}

void CRequestBridge::UpdateResults()
{
    if (m_OnUpdateResults && !m_Closed)
        m_OnUpdateResults();
}
