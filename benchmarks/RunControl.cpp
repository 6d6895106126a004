#include "FloorServices.h"
#include "Operations.h"

#include <BaseUtilities/CQtSignaler.h>
#include <BaseUtilities/TQUserAbort.h>

#include <QThread>

#include <atomic>
#include <memory>

namespace
{
char const* const Area = "Run control";

void AddAbort(CCatalogue& catalogue)
{
    static std::atomic<bool> const requested{false};
    for (int const threads : {1, 2}) {
        std::string const of = threads == 1 ? "" : ", two threads";
        catalogue.Add(Area, "abort poll" + of)
            .Allocates(0)
            .OnThreads(threads)
            .Library([] { return TQUserAbort::UserAbortRequested(); })
            .Floor([] { return Floor::AbortRequested(); })
            .Peer("std::atomic", [] { return requested.load(); });
    }
    catalogue.Add(Area, "pause poll")
        .Allocates(0)
        .Library([] { return TQUserAbort::IsPaused(); })
        .Floor([] { return Floor::IsPaused(); });
}

// How a signaler's signals are answered.
enum class EReceiver { None, Direct, Blocking };

// A signaler, and where it has one, its receiver in this thread or in one with an event loop.
template <class Signaler, class Text>
class CBridge
{
public:
    explicit CBridge(EReceiver receiver)
    {
        if (receiver == EReceiver::None)
            return;
        if (receiver == EReceiver::Blocking) {
            m_Receiver.moveToThread(&m_Thread);
            m_Thread.start();
        }
        Connect(receiver == EReceiver::Direct ? Qt::DirectConnection
                                              : Qt::BlockingQueuedConnection);
    }
    CBridge(CBridge const&) = delete;
    CBridge& operator=(CBridge const&) = delete;
    ~CBridge()
    {
        m_Thread.quit();
        m_Thread.wait();
    }

    Signaler m_Signaler;

private:
    using View = basic_sv_wrapper<char>;

    void Connect(Qt::ConnectionType type)
    {
        using Files = decltype(m_Signaler.PickMultipleFiles("", "", "", ""));
        QObject::connect(
            &m_Signaler, &Signaler::UpdateResults, &m_Receiver, [] {}, type);
        QObject::connect(
            &m_Signaler, &Signaler::AbortTestSuite, &m_Receiver, [](bool) { return true; }, type);
        QObject::connect(
            &m_Signaler, &Signaler::BooleanChoice, &m_Receiver,
            [](EUIMode, std::uint32_t, View const&, bool* answer) { *answer = true; }, type);
        QObject::connect(
            &m_Signaler, &Signaler::PickSingleFile, &m_Receiver,
            [] { return std::optional<Text>("a.txt"); }, type);
        QObject::connect(
            &m_Signaler, &Signaler::PickMultipleFiles, &m_Receiver,
            [] {
                using List = std::optional<std::vector<Text>>;
                return Files(new List(std::vector<Text>(2, Text("a.txt"))),
                             [](List* list) { delete list; });
            },
            type);
    }

    QThread m_Thread;
    QObject m_Receiver;
};

// The bridge is made when first used, so that no thread of it runs beside other operations.
template <class Signaler, class Text, class Emit>
auto Emitting(EReceiver receiver, Emit emits)
{
    using Bridge = CBridge<Signaler, Text>;
    return [receiver, emits, bridge = std::shared_ptr<Bridge>()]() mutable {
        if (bridge == nullptr)
            bridge = std::make_shared<Bridge>(receiver);
        return emits(bridge->m_Signaler);
    };
}

template <class Emit>
void AddSignal(CCatalogue& catalogue, std::string const& name, Emit emits)
{
    struct
    {
        char const* m_Name;
        EReceiver m_Receiver;
    } const cases[] = {{"no receiver", EReceiver::None},
                       {"direct", EReceiver::Direct},
                       {"blocking", EReceiver::Blocking}};
    for (auto const& each : cases) {
        COperation& operation = catalogue.Add(Area, name + ", " + each.m_Name);
        operation.Library(Emitting<CQtSignaler, CSafeString>(each.m_Receiver, emits))
            .Floor(Emitting<CFloorSignaler, Floor::CText>(each.m_Receiver, emits));
        if (each.m_Receiver == EReceiver::Blocking)
            operation.InKernel();
    }
}
} // namespace

void AddRunControl(CCatalogue& catalogue)
{
    AddAbort(catalogue);
    AddSignal(catalogue, "signal", [](auto& signaler) {
        signaler.UpdateResults();
        return true;
    });
    AddSignal(catalogue, "signal with bool result",
              [](auto& signaler) { return signaler.AbortTestSuite(true); });
    AddSignal(catalogue, "signal with answer by pointer", [](auto& signaler) {
        bool answer = false;
        signaler.BooleanChoice(EUIMode{}, 10, "Go on?", &answer, "Yes", "No",
                               gui::EAbortPromptState{}, "Abort");
        return answer;
    });
    AddSignal(catalogue, "signal with string result",
              [](auto& signaler) { return signaler.PickSingleFile("a", "b", "c", "d"); });
    AddSignal(catalogue, "signal with owned result",
              [](auto& signaler) { return signaler.PickMultipleFiles("a", "b", "c", "d"); });
}
