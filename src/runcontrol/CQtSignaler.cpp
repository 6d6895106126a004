#include <BaseUtilities/CQtSignaler.h>

namespace
{
// Under the spellings of the meta-object, so that every one of them is found by name from the
// moment the library is loaded.
bool RegisterMetaTypes()
{
    qRegisterMetaType<EUIMode>("EUIMode");
    qRegisterMetaType<EUIEmphasis>("EUIEmphasis");
    qRegisterMetaType<ENumericBase>("ENumericBase");
    qRegisterMetaType<gui::EAbortPromptState>("gui::EAbortPromptState");
    qRegisterMetaType<sv_wrapper>("sv_wrapper");
    qRegisterMetaType<std::vector<CSafeString>>("std::vector<CSafeString>");
    qRegisterMetaType<std::optional<CSafeString>>("std::optional<CSafeString>");
    qRegisterMetaType<custom_unique_ptr<std::optional<std::vector<CSafeString>>>>(
        "custom_unique_ptr<std::optional<std::vector<CSafeString>>>");
    qRegisterMetaType<std::uint32_t>("std::uint32_t");
    qRegisterMetaType<std::uintptr_t>("std::uintptr_t");
    qRegisterMetaType<bool*>("bool*");
    qRegisterMetaType<std::int32_t*>("std::int32_t*");
    qRegisterMetaType<std::uintptr_t*>("std::uintptr_t*");
    qRegisterMetaType<std::vector<std::int32_t>**>("std::vector<std::int32_t>**");
    qRegisterMetaType<CQtSignaler>("CQtSignaler");
    qRegisterMetaType<CQtSignaler*>("CQtSignaler*");
    return true;
}

// NOLINTNEXTLINE(cert-err58-cpp): without memory, loading the library ends the process.
[[maybe_unused]] bool const metaTypesRegistered = RegisterMetaTypes();
} // namespace

CQtSignaler::CQtSignaler() = default;

CQtSignaler::~CQtSignaler() = default;

void CQtSignaler::RefreshInit()
{
    m_RefreshCompleted = false;
}

void CQtSignaler::SetRefreshCompleted()
{
    m_RefreshCompleted = true;
}

bool CQtSignaler::RefreshCompleted() const
{
    return m_RefreshCompleted;
}
