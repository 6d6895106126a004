#include "Requests.h"

namespace
{
using namespace std::string_literals;

template <class Function>
struct Signature;

template <class R, class... Arguments>
struct Signature<R (CQtSignaler::*)(Arguments...)>
{
    using Result = R;

    template <class Signal>
    static QMetaObject::Connection ConnectThrower(CQtSignaler& signaler, Signal signal)
    {
        return QObject::connect(&signaler, signal,
                                [](Arguments...) -> R { throw RefusedByOperator(); });
    }
};

template <class... Arguments, std::size_t... Indices>
bool InvokeMethod(QMetaMethod const& method, CQtSignaler& signaler, Qt::ConnectionType type,
                  QGenericReturnArgument result, std::index_sequence<Indices...>,
                  Arguments const&... arguments)
{
    [[maybe_unused]] QByteArrayList const types = method.parameterTypes();
    if constexpr (sizeof...(arguments) <= 10) {
        return method.invoke(&signaler, type, result,
                             QGenericArgument(types[Indices].constData(), &arguments)...);
    } else { // more than Qt 6.4 takes: by the call that an invocation comes down to
        void* pointers[] = {result.data(),
                            const_cast<void*>(static_cast<void const*>(&arguments))...};
        auto const call = [&] {
            signaler.qt_metacall(QMetaObject::InvokeMetaMethod, method.methodIndex(), pointers);
        };
        if (type == Qt::DirectConnection) {
            call();
            return true;
        }
        return QMetaObject::invokeMethod(&signaler, call, type);
    }
}

template <class R, class... Arguments>
R Invoke(int index, CQtSignaler& signaler, Qt::ConnectionType type, Arguments const&... arguments)
{
    QMetaMethod const method = SignalerMethod(index);
    auto const invoke = [&](QGenericReturnArgument result) {
        if (!InvokeMethod(method, signaler, type, result,
                          std::make_index_sequence<sizeof...(arguments)>(), arguments...))
            throw std::logic_error("not invoked");
    };
    if constexpr (std::is_void_v<R>) {
        invoke(QGenericReturnArgument());
    } else {
        R result{};
        invoke(QGenericReturnArgument(method.typeName(), &result));
        return result;
    }
}

// Each calls `call` with its signal's arguments and gives the answer as text.

struct AskNothing
{
    template <class Call>
    std::string operator()(Call const& call) const
    {
        call();
        return "";
    }
};

struct AskToAbort
{
    template <class Call>
    std::string operator()(Call const& call) const
    {
        return Text(call(true));
    }
};

struct AskForChoice
{
    template <class Call>
    std::string operator()(Call const& call) const
    {
        bool answer = false;
        call(EUIMode(3), std::uint32_t(4000000000), sv_wrapper("Go\0on?"), &answer,
             sv_wrapper("yes"), sv_wrapper("no"), gui::EAbortPromptState(-1), sv_wrapper());
        return Text(answer);
    }
};

struct AskForInteger
{
    template <class Call>
    std::string operator()(Call const& call) const
    {
        std::uintptr_t answer = 5;
        call(EUIMode(-3), std::uint32_t(1), sv_wrapper("How many?"), sv_wrapper("at most all"),
             &answer, ENumericBase(16), true, std::uintptr_t(0xffffffffffffffff), std::uintptr_t(7),
             sv_wrapper("ok"), sv_wrapper("cancel"), gui::EAbortPromptState(2), sv_wrapper("stop"));
        return Text(answer);
    }
};

struct AskForItem
{
    template <class Call>
    std::string operator()(Call const& call) const
    {
        std::int32_t answer = -1;
        call(EUIMode(4), std::uint32_t(0), sv_wrapper("Which?"),
             std::vector<CSafeString>{"a", "", CSafeString(2, '\0')}, &answer, sv_wrapper("ok"),
             sv_wrapper("cancel"), gui::EAbortPromptState(3), sv_wrapper(""));
        return Text(answer);
    }
};

struct AskForItems
{
    template <class Call>
    std::string operator()(Call const& call) const
    {
        std::vector<std::int32_t>* answer = nullptr;
        call(EUIMode(5), std::uint32_t(60), sv_wrapper("Which ones?"),
             std::vector<CSafeString>{"a", "b", "c"}, &answer, sv_wrapper("ok"),
             sv_wrapper("cancel"), gui::EAbortPromptState(4), sv_wrapper("stop"));
        return answer == nullptr ? "null" : Text(*answer);
    }
};

struct AskToRead
{
    template <class Call>
    std::string operator()(Call const& call) const
    {
        call(EUIMode(6), std::uint32_t(9), sv_wrapper("Done."), true, sv_wrapper("close"),
             EUIEmphasis(-7), gui::EAbortPromptState(5), sv_wrapper("stop"));
        return "";
    }
};

struct AskForFourTexts
{
    template <class Call>
    std::string operator()(Call const& call) const
    {
        return Result(
            call(sv_wrapper("first"), sv_wrapper(), sv_wrapper(""), sv_wrapper("fourth")));
    }

private:
    static std::string Result(std::optional<CSafeString> const& result) { return Text(result); }
    static std::string
    Result(custom_unique_ptr<std::optional<std::vector<CSafeString>>> const& result)
    {
        return Text(result.get());
    }
};

struct AskForThreeTexts
{
    template <class Call>
    std::string operator()(Call const& call) const
    {
        return Text(call(sv_wrapper("first"), sv_wrapper("second"), sv_wrapper("third")));
    }
};

struct AskToClose
{
    template <class Call>
    std::string operator()(Call const& call) const
    {
        call(true);
        return "";
    }
};

template <int Index, auto Signal, auto Slot, class Ask>
struct CRow
{
    static std::string Emit(CQtSignaler& signaler)
    {
        return Ask()([&](auto const&... arguments) -> decltype(auto) {
            return (signaler.*Signal)(arguments...);
        });
    }

    static std::string InvokeIt(CQtSignaler& signaler, Qt::ConnectionType type)
    {
        using Result = typename Signature<decltype(Signal)>::Result;
        return Ask()([&](auto const&... arguments) {
            return Invoke<Result>(Index, signaler, type, arguments...);
        });
    }

    static QMetaObject::Connection ConnectOperator(CQtSignaler& signaler, COperator& receiver,
                                                   Qt::ConnectionType type)
    {
        return QObject::connect(&signaler, Signal, &receiver, Slot, type);
    }

    static QMetaObject::Connection ConnectRelay(CQtSignaler& signaler, CQtSignaler& relay)
    {
        return QObject::connect(&signaler, Signal, &relay, Signal, Qt::DirectConnection);
    }

    static QMetaObject::Connection ConnectThrower(CQtSignaler& signaler)
    {
        return Signature<decltype(Signal)>::ConnectThrower(signaler, Signal);
    }

    static RequestRow Make(char const* name, char const* signal, char const* slot,
                           char const* request, char const* answer, char const* unanswered)
    {
        return {name,           Index,      signal, slot,      request,          request,
                answer,         unanswered, &Emit,  &InvokeIt, &ConnectOperator, &ConnectRelay,
                &ConnectThrower};
    }
};

// The form without its argument, which the compiler completes when it is emitted.
RequestRow CloseWithoutArgument()
{
    using Row =
        CRow<11, &CQtSignaler::CloseUserInput,
             static_cast<void (COperator::*)(bool)>(&COperator::CloseUserInput), AskNothing>;
    RequestRow row{};
    row.name = "CloseUserInputWithoutArgument";
    row.index = 11;
    row.signal = SIGNAL(CloseUserInput());
    row.slot = SLOT(CloseUserInput());
    row.request = "CloseUserInput false";
    row.requestByString = "CloseUserInput without argument";
    row.answer = row.unanswered = "";
    row.emitIt = [](CQtSignaler& signaler) {
        signaler.CloseUserInput();
        return ""s;
    };
    row.invokeIt = &Row::InvokeIt;
    row.connectOperator = &Row::ConnectOperator;
    row.connectRelay = &Row::ConnectRelay;
    row.connectThrower = &Row::ConnectThrower;
    return row;
}

std::vector<RequestRow> MakeRows()
{
    return {
        CRow<0, &CQtSignaler::RefreshDone, &COperator::RefreshDone, AskNothing>::Make(
            "RefreshDone", SIGNAL(RefreshDone()), SLOT(RefreshDone()), "RefreshDone", "", ""),
        CRow<1, &CQtSignaler::AbortTestSuite, &COperator::AbortTestSuite, AskToAbort>::Make(
            "AbortTestSuite", SIGNAL(AbortTestSuite(bool)), SLOT(AbortTestSuite(bool)),
            "AbortTestSuite true", "true", "false"),
        CRow<2, &CQtSignaler::BooleanChoice, &COperator::BooleanChoice, AskForChoice>::Make(
            "BooleanChoice",
            SIGNAL(BooleanChoice(EUIMode, std::uint32_t, sv_wrapper, bool*, sv_wrapper, sv_wrapper,
                                 gui::EAbortPromptState, sv_wrapper)),
            SLOT(BooleanChoice(EUIMode, std::uint32_t, sv_wrapper, bool*, sv_wrapper, sv_wrapper,
                               gui::EAbortPromptState, sv_wrapper)),
            "BooleanChoice 3 4000000000 'Go\\0on?' 'yes' 'no' -1 unset", "true", "false"),
        CRow<3, &CQtSignaler::GetInteger, &COperator::GetInteger, AskForInteger>::Make(
            "GetInteger",
            SIGNAL(GetInteger(EUIMode, std::uint32_t, sv_wrapper, sv_wrapper, std::uintptr_t*,
                              ENumericBase, bool, std::uintptr_t, std::uintptr_t, sv_wrapper,
                              sv_wrapper, gui::EAbortPromptState, sv_wrapper)),
            SLOT(GetInteger(EUIMode, std::uint32_t, sv_wrapper, sv_wrapper, std::uintptr_t*,
                            ENumericBase, bool, std::uintptr_t, std::uintptr_t, sv_wrapper,
                            sv_wrapper, gui::EAbortPromptState, sv_wrapper)),
            "GetInteger -3 1 'How many?' 'at most all' 5 16 true 18446744073709551615 7 'ok' "
            "'cancel' 2 'stop'",
            "18446744073709551614", "5"),
        CRow<4, &CQtSignaler::SelectItem, &COperator::SelectItem, AskForItem>::Make(
            "SelectItem",
            SIGNAL(SelectItem(EUIMode, std::uint32_t, sv_wrapper, std::vector<CSafeString>,
                              std::int32_t*, sv_wrapper, sv_wrapper, gui::EAbortPromptState,
                              sv_wrapper)),
            SLOT(SelectItem(EUIMode, std::uint32_t, sv_wrapper, std::vector<CSafeString>,
                            std::int32_t*, sv_wrapper, sv_wrapper, gui::EAbortPromptState,
                            sv_wrapper)),
            "SelectItem 4 0 'Which?' ['a','','\\0\\0'] 'ok' 'cancel' 3 ''", "-2", "-1"),
        CRow<5, &CQtSignaler::SelectMultipleItems, &COperator::SelectMultipleItems,
             AskForItems>::Make("SelectMultipleItems",
                                SIGNAL(SelectMultipleItems(
                                    EUIMode, std::uint32_t, sv_wrapper, std::vector<CSafeString>,
                                    std::vector<std::int32_t>**, sv_wrapper, sv_wrapper,
                                    gui::EAbortPromptState, sv_wrapper)),
                                SLOT(SelectMultipleItems(
                                    EUIMode, std::uint32_t, sv_wrapper, std::vector<CSafeString>,
                                    std::vector<std::int32_t>**, sv_wrapper, sv_wrapper,
                                    gui::EAbortPromptState, sv_wrapper)),
                                "SelectMultipleItems 5 60 'Which ones?' ['a','b','c'] 'ok' "
                                "'cancel' 4 'stop'",
                                "[2,0]", "null"),
        CRow<6, &CQtSignaler::ShowInfo, &COperator::ShowInfo, AskToRead>::Make(
            "ShowInfo",
            SIGNAL(ShowInfo(EUIMode, std::uint32_t, sv_wrapper, bool, sv_wrapper, EUIEmphasis,
                            gui::EAbortPromptState, sv_wrapper)),
            SLOT(ShowInfo(EUIMode, std::uint32_t, sv_wrapper, bool, sv_wrapper, EUIEmphasis,
                          gui::EAbortPromptState, sv_wrapper)),
            "ShowInfo 6 9 'Done.' true 'close' -7 5 'stop'", "", ""),
        CRow<7, &CQtSignaler::PickSingleFile, &COperator::PickSingleFile, AskForFourTexts>::Make(
            "PickSingleFile",
            SIGNAL(PickSingleFile(sv_wrapper, sv_wrapper, sv_wrapper, sv_wrapper)),
            SLOT(PickSingleFile(sv_wrapper, sv_wrapper, sv_wrapper, sv_wrapper)),
            "PickSingleFile 'first' unset '' 'fourth'", "'a file'", "empty"),
        CRow<8, &CQtSignaler::PickDirectory, &COperator::PickDirectory, AskForThreeTexts>::Make(
            "PickDirectory", SIGNAL(PickDirectory(sv_wrapper, sv_wrapper, sv_wrapper)),
            SLOT(PickDirectory(sv_wrapper, sv_wrapper, sv_wrapper)),
            "PickDirectory 'first' 'second' 'third'", "'a folder'", "empty"),
        CRow<9, &CQtSignaler::PickMultipleFiles, &COperator::PickMultipleFiles, AskForFourTexts>::
            Make("PickMultipleFiles",
                 SIGNAL(PickMultipleFiles(sv_wrapper, sv_wrapper, sv_wrapper, sv_wrapper)),
                 SLOT(PickMultipleFiles(sv_wrapper, sv_wrapper, sv_wrapper, sv_wrapper)),
                 "PickMultipleFiles 'first' unset '' 'fourth'", "['one','two']", "null"),
        CRow<10, &CQtSignaler::CloseUserInput,
             static_cast<void (COperator::*)(bool)>(&COperator::CloseUserInput),
             AskToClose>::Make("CloseUserInput", SIGNAL(CloseUserInput(bool)),
                               SLOT(CloseUserInput(bool)), "CloseUserInput true", "", ""),
        CloseWithoutArgument(),
        CRow<12, &CQtSignaler::UpdateResults, &COperator::UpdateResults, AskNothing>::Make(
            "UpdateResults", SIGNAL(UpdateResults()), SLOT(UpdateResults()), "UpdateResults", "",
            ""),
    };
}
} // namespace

std::vector<RequestRow> const& RequestRows()
{
    static std::vector<RequestRow> const rows = MakeRows();
    return rows;
}
