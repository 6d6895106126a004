#include "Allocations.h"

#include <BaseUtilities/CQtSignaler.h>

#include <gtest/gtest.h>

#include <QByteArrayList>
#include <QMetaMethod>

#include <cstring>
#include <map>
#include <new>
#include <string>
#include <type_traits>

namespace
{
using Files = custom_unique_ptr<std::optional<std::vector<CSafeString>>>;

char const filesSpelling[] = "custom_unique_ptr<std::optional<std::vector<CSafeString>>>";

struct MethodRow
{
    char const* name; // of the row
    char const* signature;
    char const* returns;
    QByteArrayList parameterNames;
};

QByteArrayList Unnamed(int count)
{
    return QByteArrayList(count, QByteArray(""));
}

std::vector<MethodRow> const& MethodRows()
{
    static std::vector<MethodRow> const rows{
        {"RefreshDone", "RefreshDone()", "void", {}},
        {"AbortTestSuite", "AbortTestSuite(bool)", "bool", Unnamed(1)},
        {"BooleanChoice",
         "BooleanChoice(EUIMode,std::uint32_t,sv_wrapper,bool*,sv_wrapper,sv_wrapper,"
         "gui::EAbortPromptState,sv_wrapper)",
         "void",
         {"uiType", "timeout", "text", "returnValue", "truePromptText", "falsePromptText",
          "showAbortTestSuitePrompt", "abortTestSuitePromptText"}},
        {"GetInteger",
         "GetInteger(EUIMode,std::uint32_t,sv_wrapper,sv_wrapper,std::uintptr_t*,ENumericBase,bool,"
         "std::uintptr_t,std::uintptr_t,sv_wrapper,sv_wrapper,gui::EAbortPromptState,sv_wrapper)",
         "void",
         {"mode", "timeout", "text", "additionalText", "returnValue", "base", "setInitialValue",
          "max", "min", "acceptPromptText", "rejectPromptText", "showAbortTestSuitePrompt",
          "abortTestSuitePromptText"}},
        {"SelectItem",
         "SelectItem(EUIMode,std::uint32_t,sv_wrapper,std::vector<CSafeString>,std::int32_t*,"
         "sv_wrapper,sv_wrapper,gui::EAbortPromptState,sv_wrapper)",
         "void",
         {"mode", "timeout", "text", "items", "returnValue", "acceptPromptText", "rejectPromptText",
          "showAbortTestSuitePrompt", "abortTestSuitePromptText"}},
        {"SelectMultipleItems",
         "SelectMultipleItems(EUIMode,std::uint32_t,sv_wrapper,std::vector<CSafeString>,"
         "std::vector<std::int32_t>**,sv_wrapper,sv_wrapper,gui::EAbortPromptState,sv_wrapper)",
         "void",
         {"mode", "timeout", "text", "items", "returnValues", "acceptPromptText",
          "rejectPromptText", "showAbortTestSuitePrompt", "abortTestSuitePromptText"}},
        {"ShowInfo",
         "ShowInfo(EUIMode,std::uint32_t,sv_wrapper,bool,sv_wrapper,EUIEmphasis,"
         "gui::EAbortPromptState,sv_wrapper)",
         "void",
         {"mode", "timeout", "text", "canClose", "closePromptText", "emphasis",
          "showAbortTestSuitePrompt", "abortTestSuitePromptText"}},
        {"PickSingleFile", "PickSingleFile(sv_wrapper,sv_wrapper,sv_wrapper,sv_wrapper)",
         "std::optional<CSafeString>", Unnamed(4)},
        {"PickDirectory", "PickDirectory(sv_wrapper,sv_wrapper,sv_wrapper)",
         "std::optional<CSafeString>", Unnamed(3)},
        {"PickMultipleFiles", "PickMultipleFiles(sv_wrapper,sv_wrapper,sv_wrapper,sv_wrapper)",
         filesSpelling, Unnamed(4)},
        {"CloseUserInput", "CloseUserInput(bool)", "void", Unnamed(1)},
        {"CloseUserInputWithoutArgument", "CloseUserInput()", "void", {}},
        {"UpdateResults", "UpdateResults()", "void", {}},
    };
    return rows;
}

QMetaObject const& MetaObject()
{
    return CQtSignaler::staticMetaObject;
}

QMetaMethod Method(int index)
{
    return MetaObject().method(MetaObject().methodOffset() + index);
}

// The row's index is its place in the table.
class CQtSignalerMethod : public testing::TestWithParam<int>
{
protected:
    MethodRow const& Row() const { return MethodRows()[static_cast<std::size_t>(GetParam())]; }
    QMetaMethod Method() const { return ::Method(GetParam()); }
};

std::string MethodRowName(testing::TestParamInfo<int> const& info)
{
    return MethodRows()[static_cast<std::size_t>(info.param)].name;
}

INSTANTIATE_TEST_SUITE_P(Table, CQtSignalerMethod,
                         testing::Range(0, static_cast<int>(MethodRows().size())), MethodRowName);

// Taken while the program is loaded: before any connection, and before any test asks for a type.
std::map<std::string, QMetaType> TypesByName()
{
    std::map<std::string, QMetaType> types;
    for (int index = 0; index < MetaObject().methodCount() - MetaObject().methodOffset(); ++index) {
        QByteArrayList names = Method(index).parameterTypes();
        names.append(Method(index).typeName());
        for (QByteArray const& name : names)
            types[name.toStdString()] = QMetaType::fromName(name);
    }
    for (char const* const name : {"CQtSignaler", "CQtSignaler*", "basic_sv_wrapper<char>", "int*",
                                   "unsigned long*", "std::vector<int>**"})
        types[name] = QMetaType::fromName(name);
    return types;
}

std::map<std::string, QMetaType> const typesAtLoad = TypesByName();
} // namespace

TEST_P(CQtSignalerMethod, HasItsSignature)
{
    EXPECT_STREQ(Method().methodSignature().constData(), Row().signature);
    EXPECT_EQ(MetaObject().indexOfSignal(Row().signature) - MetaObject().methodOffset(),
              GetParam());
}

TEST_P(CQtSignalerMethod, HasANormalisedSignature)
{
    QByteArray const signature = Method().methodSignature();
    EXPECT_EQ(QMetaObject::normalizedSignature(signature), signature);
}

TEST_P(CQtSignalerMethod, ReturnsItsType)
{
    EXPECT_STREQ(Method().typeName(), Row().returns);
}

TEST_P(CQtSignalerMethod, RecordsItsParameterNames)
{
    EXPECT_EQ(Method().parameterNames(), Row().parameterNames);
}

TEST_P(CQtSignalerMethod, IsAPublicSignalWithoutTagOrRevision)
{
    EXPECT_EQ(Method().methodType(), QMetaMethod::Signal);
    EXPECT_EQ(Method().access(), QMetaMethod::Public);
    EXPECT_STREQ(Method().tag(), "");
    EXPECT_EQ(Method().revision(), 0);
}

// The names are compared, too: under a wrong name registered first, two types count as equal.
TEST_P(CQtSignalerMethod, SpellsTypesThatResolveByNameAtLoad)
{
    auto const expectResolved = [](std::string const& spelling, QMetaType type) {
        SCOPED_TRACE(spelling);
        EXPECT_TRUE(typesAtLoad.at(spelling).isValid());
        EXPECT_EQ(typesAtLoad.at(spelling), type);
        EXPECT_STREQ(typesAtLoad.at(spelling).name(), type.name());
    };
    for (int index = 0; index < Method().parameterCount(); ++index)
        expectResolved(Method().parameterTypes()[index].toStdString(),
                       Method().parameterMetaType(index));
    expectResolved(Method().typeName(), Method().returnMetaType());
}

TEST(CQtSignalerMetaObject, NamesTheClassAndItsBase)
{
    EXPECT_STREQ(MetaObject().className(), "CQtSignaler");
    EXPECT_EQ(MetaObject().superClass(), &QObject::staticMetaObject);
}

TEST(CQtSignalerMetaObject, HoldsThirteenMethods)
{
    EXPECT_EQ(MetaObject().methodCount() - MetaObject().methodOffset(), 13);
}

TEST(CQtSignalerMetaObject, HoldsNothingBesideSignals)
{
    EXPECT_EQ(MetaObject().propertyCount(), MetaObject().propertyOffset());
    EXPECT_EQ(MetaObject().enumeratorCount(), MetaObject().enumeratorOffset());
    EXPECT_EQ(MetaObject().classInfoCount(), MetaObject().classInfoOffset());
    EXPECT_EQ(MetaObject().constructorCount(), 0);
}

TEST(CQtSignalerMetaObject, ClonesOnlyTheArgumentlessCloseUserInput)
{
    for (int index = 0; index < 13; ++index) {
        SCOPED_TRACE(index);
        EXPECT_EQ((Method(index).attributes() & QMetaMethod::Cloned) != 0, index == 11);
    }
}

TEST(CQtSignalerMetaObject, BelongsToTheObjects)
{
    CQtSignaler signaler;
    EXPECT_EQ(signaler.metaObject(), &MetaObject());
    EXPECT_EQ(signaler.qt_metacast("CQtSignaler"), &signaler);
    EXPECT_EQ(signaler.qt_metacast("QObject"), &signaler);
    EXPECT_EQ(signaler.qt_metacast("CSafeString"), nullptr);
    EXPECT_EQ(qobject_cast<CQtSignaler*>(static_cast<QObject*>(&signaler)), &signaler);
}

TEST(CQtSignalerMetaObject, HandsOnMethodIndicesBeyondItsOwn)
{
    CQtSignaler signaler;
    void* arguments[] = {nullptr, nullptr};
    int const beyond = MetaObject().methodCount() + 4;
    EXPECT_EQ(signaler.qt_metacall(QMetaObject::InvokeMetaMethod, beyond, arguments), 4);
}

// Which abilities each type has in the meta-type system, and which it must not have.
namespace
{
struct TypeRow
{
    char const* name; // of the row
    QMetaType type;
    int size;
    bool isEqualityComparable;
    bool isOrdered;
    bool isCopied;
    bool isStreamed;
    bool isDestroyed;
    QMetaType::TypeFlags flags; // those set of the ones below
};

QMetaType::TypeFlags const comparedFlags = QMetaType::IsEnumeration | QMetaType::PointerToQObject
                                           | QMetaType::IsPointer
                                           | QMetaType::IsUnsignedEnumeration;

void PrintTo(TypeRow const& row, std::ostream* stream)
{
    *stream << row.name;
}

template <class T>
TypeRow Value(char const* name, bool isOrdered, bool isCopied, bool isDestroyed)
{
    return {
        name, QMetaType::fromType<T>(), sizeof(T), true, isOrdered, isCopied, false, isDestroyed,
        {}};
}

template <class T>
TypeRow Enumeration(char const* name)
{
    return {name,  QMetaType::fromType<T>(), 4, true, true, true, true,
            false, QMetaType::IsEnumeration};
}

template <class T>
TypeRow Pointer(char const* name, QMetaType::TypeFlags flags = {})
{
    return {name,  QMetaType::fromType<T>(),    8, true, true, true, false,
            false, flags | QMetaType::IsPointer};
}

TypeRow Signaler()
{
    return {"Signaler",
            QMetaType::fromType<CQtSignaler>(),
            sizeof(CQtSignaler),
            false,
            false,
            false,
            false,
            true,
            {}};
}

std::vector<TypeRow> TypeRows()
{
    return {
        Enumeration<EUIMode>("EUIMode"),
        Enumeration<EUIEmphasis>("EUIEmphasis"),
        Enumeration<ENumericBase>("ENumericBase"),
        Enumeration<gui::EAbortPromptState>("EAbortPromptState"),
        Value<sv_wrapper>("View", true, true, false),
        Value<std::vector<CSafeString>>("Texts", false, true, true),
        Value<std::optional<CSafeString>>("OptionalText", false, true, true),
        Value<Files>("Files", true, false, true),
        Pointer<bool*>("BoolPointer"),
        Pointer<int*>("IntPointer"),
        Pointer<unsigned long*>("UnsignedLongPointer"),
        Pointer<std::vector<int>**>("PointerToVectorPointer"),
        Pointer<CQtSignaler*>("SignalerPointer", QMetaType::PointerToQObject),
        Signaler(),
    };
}

class CQtSignalerType : public testing::TestWithParam<TypeRow>
{
};

INSTANTIATE_TEST_SUITE_P(Table, CQtSignalerType, testing::ValuesIn(TypeRows()),
                         [](auto const& row) { return std::string(row.param.name); });
} // namespace

TEST_P(CQtSignalerType, HasItsSizeAndKind)
{
    EXPECT_EQ(GetParam().type.sizeOf(), GetParam().size);
    EXPECT_EQ(GetParam().type.flags() & comparedFlags, GetParam().flags);
}

TEST_P(CQtSignalerType, IsComparedAsListed)
{
    EXPECT_EQ(GetParam().type.isEqualityComparable(), GetParam().isEqualityComparable);
    EXPECT_EQ(GetParam().type.isOrdered(), GetParam().isOrdered);
}

TEST_P(CQtSignalerType, IsConstructedAsListed)
{
    QtPrivate::QMetaTypeInterface const& type = *GetParam().type.iface();
    EXPECT_NE(type.defaultCtr, nullptr);
    EXPECT_EQ(type.copyCtr != nullptr, GetParam().isCopied);
    EXPECT_EQ(type.moveCtr != nullptr, std::string(GetParam().name) != "Signaler");
    EXPECT_EQ(type.dtor != nullptr, GetParam().isDestroyed);
}

TEST_P(CQtSignalerType, IsStreamedAsListed)
{
    EXPECT_EQ(GetParam().type.hasRegisteredDataStreamOperators(), GetParam().isStreamed);
}

// One value beside another under the meta-type of T.
namespace
{
template <class T>
bool Equal(T const& left, T const& right)
{
    return QMetaType::fromType<T>().equals(&left, &right);
}

// No value: the type has no order.
template <class T>
std::optional<bool> Before(T const& left, T const& right)
{
    QPartialOrdering const order = QMetaType::fromType<T>().compare(&left, &right);
    if (order == QPartialOrdering::Unordered)
        return std::nullopt;
    return order == QPartialOrdering::Less;
}

template <class T>
void ExpectComparedAsInt()
{
    T const low = static_cast<T>(-5), high = static_cast<T>(3);
    EXPECT_TRUE(Equal(low, low));
    EXPECT_FALSE(Equal(low, high));
    EXPECT_EQ(Before(low, high), true);
    EXPECT_EQ(Before(high, low), false);
    EXPECT_EQ(Before(low, low), false);
}
} // namespace

TEST(CQtSignalerTypes, ComparesEnumerationsAsInt)
{
    ExpectComparedAsInt<EUIMode>();
    ExpectComparedAsInt<EUIEmphasis>();
    ExpectComparedAsInt<ENumericBase>();
    ExpectComparedAsInt<gui::EAbortPromptState>();
}

TEST(CQtSignalerTypes, ComparesViewsByTheirText)
{
    std::string const copy = "abc";
    EXPECT_TRUE(Equal<sv_wrapper>("abc", copy));
    EXPECT_FALSE(Equal<sv_wrapper>("abc", "abd"));
    EXPECT_TRUE(Equal<sv_wrapper>("", sv_wrapper()));
    EXPECT_EQ(Before<sv_wrapper>("abc", "abd"), true);
    EXPECT_EQ(Before<sv_wrapper>("b", "abd"), false);
    EXPECT_EQ(Before<sv_wrapper>("a\x7f", "a\x80"), true);
}

TEST(CQtSignalerTypes, DefaultConstructsAnUnsetView)
{
    sv_wrapper view("text");
    QMetaType::fromType<sv_wrapper>().construct(&view);
    EXPECT_EQ(view.size(), 0u);
    EXPECT_EQ(view.data(), nullptr);
    EXPECT_FALSE(view.m_HasValue);
}

TEST(CQtSignalerTypes, ComparesTextsWithoutAnOrder)
{
    std::vector<CSafeString> const texts{"a", "b"};
    EXPECT_TRUE(Equal(texts, {"a", "b"}));
    EXPECT_FALSE(Equal(texts, {"a", "c"}));
    EXPECT_FALSE(Equal(texts, {"a"}));
    EXPECT_EQ(Before(texts, {"b"}), std::nullopt);
}

TEST(CQtSignalerTypes, ComparesOptionalTextsWithoutAnOrder)
{
    std::optional<CSafeString> const empty, full("a");
    EXPECT_TRUE(Equal(empty, empty));
    EXPECT_TRUE(Equal(full, std::optional<CSafeString>("a")));
    EXPECT_FALSE(Equal(full, std::optional<CSafeString>("b")));
    EXPECT_FALSE(Equal(full, empty));
    EXPECT_EQ(Before(empty, full), std::nullopt);
}

TEST(CQtSignalerTypes, ComparesFilesByTheHeldPointer)
{
    std::optional<std::vector<CSafeString>> objects[2];
    auto const keep = [](std::optional<std::vector<CSafeString>>*) {};
    Files const lower(&objects[0], keep), higher(&objects[1], keep), none;
    Files const sameAsLower(&objects[0], keep);
    EXPECT_TRUE(Equal(lower, sameAsLower));
    EXPECT_FALSE(Equal(lower, higher));
    EXPECT_EQ(Before(lower, higher), true);
    EXPECT_EQ(Before(higher, lower), false);
    EXPECT_EQ(Before(none, lower), true);
}

// Every object constructed by the meta-type, copied and moved, ends with its own text.
TEST(CQtSignalerTypes, CopiesAndMovesTexts)
{
    QMetaType const type = QMetaType::fromType<std::vector<CSafeString>>();
    std::vector<CSafeString> source{"a", "b"};
    auto* const copy = static_cast<std::vector<CSafeString>*>(type.create(&source));
    EXPECT_EQ(*copy, source);
    alignas(std::vector<CSafeString>) unsigned char place[sizeof source];
    type.iface()->moveCtr(type.iface(), place, copy);
    auto* const moved = reinterpret_cast<std::vector<CSafeString>*>(place);
    EXPECT_EQ(*moved, source);
    EXPECT_TRUE(copy->empty());
    type.destruct(moved);
    type.destroy(copy);
}

TEST(CQtSignalerTypes, CopiesAndMovesOptionalTexts)
{
    QMetaType const type = QMetaType::fromType<std::optional<CSafeString>>();
    std::optional<CSafeString> source("a");
    auto* const copy = static_cast<std::optional<CSafeString>*>(type.create(&source));
    EXPECT_EQ(*copy, source);
    alignas(std::optional<CSafeString>) unsigned char place[sizeof source];
    type.iface()->moveCtr(type.iface(), place, copy);
    auto* const moved = reinterpret_cast<std::optional<CSafeString>*>(place);
    EXPECT_EQ(*moved, source);
    type.destruct(moved);
    type.destroy(copy);
}

TEST(CQtSignalerTypes, DefaultConstructsEmptyResults)
{
    QMetaType const optionalText = QMetaType::fromType<std::optional<CSafeString>>();
    auto* const text = static_cast<std::optional<CSafeString>*>(optionalText.create());
    EXPECT_FALSE(text->has_value());
    optionalText.destroy(text);

    QMetaType const files = QMetaType::fromType<Files>();
    auto* const owner = static_cast<Files*>(files.create());
    EXPECT_EQ(*owner, nullptr);
    files.destroy(owner);

    QMetaType const listOfTexts = QMetaType::fromType<std::vector<CSafeString>>();
    auto* const texts = static_cast<std::vector<CSafeString>*>(listOfTexts.create());
    EXPECT_TRUE(texts->empty());
    listOfTexts.destroy(texts);
}

TEST(CQtSignalerTypes, MakesTheClassAQObjectTypeByNameAtLoad)
{
    EXPECT_EQ(typesAtLoad.at("CQtSignaler*"), QMetaType::fromType<CQtSignaler*>());
    EXPECT_EQ(typesAtLoad.at("CQtSignaler*").metaObject(), &MetaObject());
    EXPECT_TRUE(typesAtLoad.at("CQtSignaler").isValid());
    EXPECT_EQ(typesAtLoad.at("CQtSignaler"), MetaObject().metaType());
}

// The meta-object spells the types by other names than these.
TEST(CQtSignalerTypes, ResolveByTheirOwnNamesAtLoad)
{
    EXPECT_EQ(typesAtLoad.at("basic_sv_wrapper<char>"), QMetaType::fromType<sv_wrapper>());
    EXPECT_EQ(typesAtLoad.at("int*"), QMetaType::fromType<int*>());
    EXPECT_EQ(typesAtLoad.at("unsigned long*"), QMetaType::fromType<unsigned long*>());
    EXPECT_EQ(typesAtLoad.at("std::vector<int>**"), QMetaType::fromType<std::vector<int>**>());
}

// What callers write; the meta-object does not tell references from values.
TEST(CQtSignaler, HasTheMemberSignaturesOfItsSignals)
{
    using S = CQtSignaler;
    using View = basic_sv_wrapper<char> const&;
    using Texts = std::vector<CSafeString> const&;
    using Prompt = gui::EAbortPromptState;
    using Text = std::optional<CSafeString>;
    static_assert(std::is_same_v<decltype(&S::RefreshDone), void (S::*)()>);
    static_assert(std::is_same_v<decltype(&S::AbortTestSuite), bool (S::*)(bool)>);
    static_assert(
        std::is_same_v<decltype(&S::BooleanChoice),
                       void (S::*)(EUIMode, std::uint32_t, View, bool*, View, View, Prompt, View)>);
    static_assert(std::is_same_v<decltype(&S::GetInteger),
                                 void (S::*)(EUIMode, std::uint32_t, View, View, std::uintptr_t*,
                                             ENumericBase, bool, std::uintptr_t, std::uintptr_t,
                                             View, View, Prompt, View)>);
    static_assert(std::is_same_v<decltype(&S::SelectItem),
                                 void (S::*)(EUIMode, std::uint32_t, View, Texts, std::int32_t*,
                                             View, View, Prompt, View)>);
    static_assert(
        std::is_same_v<decltype(&S::SelectMultipleItems),
                       void (S::*)(EUIMode, std::uint32_t, View, Texts, std::vector<std::int32_t>**,
                                   View, View, Prompt, View)>);
    static_assert(
        std::is_same_v<decltype(&S::ShowInfo), void (S::*)(EUIMode, std::uint32_t, View, bool, View,
                                                           EUIEmphasis, Prompt, View)>);
    static_assert(
        std::is_same_v<decltype(&S::PickSingleFile), Text (S::*)(View, View, View, View)>);
    static_assert(std::is_same_v<decltype(&S::PickDirectory), Text (S::*)(View, View, View)>);
    static_assert(
        std::is_same_v<decltype(&S::PickMultipleFiles), Files (S::*)(View, View, View, View)>);
    static_assert(std::is_same_v<decltype(&S::CloseUserInput), void (S::*)(bool)>);
    static_assert(std::is_same_v<decltype(&S::UpdateResults), void (S::*)()>);
}

TEST(CQtSignaler, HasNoParentAtFirst)
{
    CQtSignaler const signaler;
    EXPECT_EQ(signaler.parent(), nullptr);
}

TEST(CQtSignaler, HasNotCompletedARefreshAtFirst)
{
    // Made where something else was: the flag's place is not 0 by chance.
    alignas(CQtSignaler) unsigned char place[sizeof(CQtSignaler)];
    std::memset(place, 1, sizeof place);
    auto* const signaler = new (place) CQtSignaler;
    EXPECT_FALSE(signaler->RefreshCompleted());
    signaler->~CQtSignaler();
}

TEST(CQtSignaler, RemembersACompletedRefreshUntilTheNextBegins)
{
    CQtSignaler signaler;
    signaler.SetRefreshCompleted();
    EXPECT_TRUE(signaler.RefreshCompleted());
    signaler.SetRefreshCompleted();
    EXPECT_TRUE(signaler.RefreshCompleted());
    signaler.RefreshInit();
    EXPECT_FALSE(signaler.RefreshCompleted());
}

TEST(CQtSignaler, KeepsTheRefreshFlagForEachObject)
{
    CQtSignaler completed, other;
    completed.SetRefreshCompleted();
    EXPECT_FALSE(other.RefreshCompleted());
}

TEST(CQtSignaler, KeepsTheRefreshFlagWhenSignalsAreEmitted)
{
    CQtSignaler signaler;
    signaler.SetRefreshCompleted();
    Q_EMIT signaler.RefreshDone();
    Q_EMIT signaler.UpdateResults();
    EXPECT_TRUE(signaler.RefreshCompleted());
}

TEST(CQtSignaler, IsDestroyedWholeThroughItsBase)
{
    QObject const first; // with which Qt makes what it keeps for the thread
    CAllocationCounter const during;
    QObject* const object = new CQtSignaler;
    new QObject(object);
    EXPECT_GT(during.Live(), 1);
    delete object;
    EXPECT_EQ(during.Live(), 0);
}
