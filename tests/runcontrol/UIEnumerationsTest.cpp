#include "ApplicationEnumerations.h"

#include <BaseUtilities/CQtSignaler.h>
#include <BaseUtilities/UIHelperBase.h>

#include <gtest/gtest.h>

#include <QBuffer>
#include <QDataStream>
#include <QMetaMethod>

namespace
{
// The library's own meta-type: that of a parameter in the signaler's meta-object.
QMetaType LibrarysType(char const* spelling)
{
    QMetaObject const& object = CQtSignaler::staticMetaObject;
    for (int index = object.methodOffset(); index < object.methodCount(); ++index)
        for (int parameter = 0; parameter < object.method(index).parameterCount(); ++parameter)
            if (object.method(index).parameterTypes()[parameter] == spelling)
                return object.method(index).parameterMetaType(parameter);
    return QMetaType();
}

template <class T>
class UIEnumerations : public testing::Test
{
};

using All =
    testing::Types<EUIMode, EUIEmphasis, ENumericBase, gui::EAbortPromptState, EUserInputState>;
TYPED_TEST_SUITE(UIEnumerations, All, );

template <class T>
class UIEnumerationsOfSignals : public testing::Test
{
};

using OfSignals = testing::Types<EUIMode, EUIEmphasis, ENumericBase, gui::EAbortPromptState>;
TYPED_TEST_SUITE(UIEnumerationsOfSignals, OfSignals, );

int const values[] = {0, 1, -1, 16, 0x01020304, -2147483647 - 1, 2147483647};
} // namespace

TYPED_TEST(UIEnumerations, AreAsWideAsInt)
{
    static_assert(std::is_same_v<std::underlying_type_t<TypeParam>, int>);
    EXPECT_EQ(sizeof(TypeParam), 4u);
}

TYPED_TEST(UIEnumerations, AreStreamedAsInt)
{
    for (int const value : values) {
        SCOPED_TRACE(value);
        QByteArray asInt;
        QDataStream(&asInt, QIODevice::WriteOnly) << value;

        QByteArray bytes;
        QDataStream writer(&bytes, QIODevice::WriteOnly);
        TypeParam const written = static_cast<TypeParam>(value);
        ASSERT_TRUE(QMetaType::fromType<TypeParam>().save(writer, &written));
        EXPECT_EQ(bytes, asInt);

        QDataStream reader(bytes);
        TypeParam read = static_cast<TypeParam>(~value);
        ASSERT_TRUE(QMetaType::fromType<TypeParam>().load(reader, &read));
        EXPECT_EQ(read, written);
        EXPECT_TRUE(reader.atEnd());
    }
}

TYPED_TEST(UIEnumerationsOfSignals, AreTheLibrarysTypesWithTheirEnumerators)
{
    QMetaType const own = QMetaType::fromType<TypeParam>();
    EXPECT_TRUE(LibrarysType(own.name()).isValid());
    EXPECT_EQ(LibrarysType(own.name()), own);
}

TYPED_TEST(UIEnumerationsOfSignals, AreStreamedByTheLibrarysTypeAsByTheOwn)
{
    QMetaType const own = QMetaType::fromType<TypeParam>();
    QMetaType const librarys = LibrarysType(own.name());
    for (int const value : values) {
        SCOPED_TRACE(value);
        TypeParam const written = static_cast<TypeParam>(value);
        QByteArray bytes;
        QDataStream writer(&bytes, QIODevice::WriteOnly);
        ASSERT_TRUE(librarys.save(writer, &written));
        QDataStream reader(bytes);
        TypeParam read = static_cast<TypeParam>(~value);
        ASSERT_TRUE(own.load(reader, &read));
        EXPECT_EQ(read, written);
    }
}

TEST(ApplicationsEnumerations, KeepTheApplicationsEnumeratorsThroughASignal)
{
    CQtSignaler signaler;
    EUIMode mode{};
    EUIEmphasis emphasis{};
    gui::EAbortPromptState prompt{};
    QObject::connect(&signaler, &CQtSignaler::ShowInfo,
                     [&](EUIMode gotMode, std::uint32_t, sv_wrapper const&, bool, sv_wrapper const&,
                         EUIEmphasis gotEmphasis, gui::EAbortPromptState gotPrompt) {
                         mode = gotMode;
                         emphasis = gotEmphasis;
                         prompt = gotPrompt;
                     });
    Q_EMIT signaler.ShowInfo(EUIMode::Lowest, 0, "", true, "", EUIEmphasis::Alarm,
                             gui::EAbortPromptState::Disabled, "");
    EXPECT_EQ(mode, EUIMode::Lowest);
    EXPECT_EQ(emphasis, EUIEmphasis::Alarm);
    EXPECT_EQ(prompt, gui::EAbortPromptState::Disabled);
}
