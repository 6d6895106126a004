#include "FloorServices.h"

#include <QDir>
#include <QMetaType>
#include <QOperatingSystemVersion>

#include <cinttypes>
#include <cstdlib>
#include <mutex>

namespace fs = std::filesystem;

CFloorSignaler::CFloorSignaler() = default;
CFloorSignaler::~CFloorSignaler() = default;

namespace Floor
{
namespace
{
// What the library does when it is loaded: the system's version and the types of the signals.
[[maybe_unused]] QOperatingSystemVersion const systemVersion = QOperatingSystemVersion::current();

[[maybe_unused]] bool const registered = [] {
    qRegisterMetaType<EUIMode>("EUIMode");
    qRegisterMetaType<EUIEmphasis>("EUIEmphasis");
    qRegisterMetaType<ENumericBase>("ENumericBase");
    qRegisterMetaType<gui::EAbortPromptState>("gui::EAbortPromptState");
    qRegisterMetaType<View>("FloorView");
    qRegisterMetaType<std::vector<CText>>("std::vector<Floor::CText>");
    qRegisterMetaType<std::optional<CText>>("std::optional<Floor::CText>");
    qRegisterMetaType<Owner<std::optional<std::vector<CText>>>>(
        "Floor::Owner<std::optional<std::vector<Floor::CText>>>");
    qRegisterMetaType<std::uint32_t>("std::uint32_t");
    qRegisterMetaType<std::uintptr_t>("std::uintptr_t");
    qRegisterMetaType<bool*>("bool*");
    qRegisterMetaType<std::int32_t*>("std::int32_t*");
    qRegisterMetaType<std::uintptr_t*>("std::uintptr_t*");
    qRegisterMetaType<std::vector<std::int32_t>**>("std::vector<std::int32_t>**");
    qRegisterMetaType<CFloorSignaler*>("CFloorSignaler*");
    return true;
}();

alignas(64) std::mutex stateLock;
alignas(64) std::mutex requestLock;

fs::path ToPath(View const& text)
{
    return {std::string(text.data(), text.size())};
}

CText ToText(fs::path const& path)
{
    return {View(path.native())};
}

bool IsMissing(fs::file_status const& status)
{
    return status.type() == fs::file_type::not_found || status.type() == fs::file_type::none;
}
} // namespace

bool AbortRequested()
{
    std::lock_guard<std::mutex> const guard(requestLock);
    return abortRequested;
}

bool IsPaused()
{
    std::lock_guard<std::mutex> const guard(stateLock);
    return paused;
}

bool CheckEnvVar(View const& name)
{
    if (name.empty())
        return false;
    char const* const value = std::getenv(CText(name).get());
    return value != nullptr && *value != '\0' && std::strtoumax(value, nullptr, 0) != 0;
}

CText GetStandardDirName(QStandardPaths::StandardLocation location)
{
    QString const found = QStandardPaths::locate(location, ".", QStandardPaths::LocateDirectory);
    QByteArray const path = QDir::toNativeSeparators(QDir::cleanPath(found)).toUtf8();
    return {View(path.constData(), static_cast<std::size_t>(path.size()))};
}

CText AppendToPath(fs::path const& base, View const& name)
{
    fs::path joined(base);
    joined /= ToPath(name);
    return ToText(joined);
}

CText AppendToPath(View const& base, View const& name)
{
    fs::path joined = ToPath(base);
    joined /= ToPath(name);
    return ToText(joined);
}

CText GetWorkFilesFolderPathName()
{
    CText const documents = GetStandardDirName(QStandardPaths::DocumentsLocation);
    fs::path suite = ToPath(documents.get());
    suite /= "Quillon Test Suite";
    CText const suiteText = ToText(suite);
    fs::path work = ToPath(suiteText.get());
    work /= "Work Files";
    return ToText(work);
}

std::optional<CText> CopyFile(View const& source, View const& destination)
{
    fs::path const from = ToPath(source);
    fs::path const to = ToPath(destination);
    if (!fs::is_regular_file(fs::status(from)))
        return std::nullopt;
    if (!IsMissing(fs::status(to)) && fs::equivalent(to, from))
        return ToText(to);
    fs::file_status const status = fs::status(to);
    if (!fs::is_regular_file(status) && !IsMissing(status))
        return std::nullopt;
    if (IsMissing(status) && !fs::is_directory(to.parent_path()))
        return std::nullopt;
    fs::copy(from, to, fs::copy_options::overwrite_existing);
    if (!fs::is_regular_file(fs::status(to)))
        return std::nullopt;
    return ToText(to);
}

bool System(View const& command, View const& arguments, View const& workingFolder)
{
    CText const ownCommand(command);
    CText const ownArguments(arguments);
    CText const ownFolder(workingFolder);
    fs::path const saved = fs::current_path();
    fs::path const folder(std::string(ownFolder.get(), ownFolder.size()));
    if (fs::is_directory(fs::status(folder)))
        fs::current_path(folder);
    CText line(ownCommand);
    if (ownArguments.size() != 0) {
        line += ' ';
        line += ownArguments;
    }
    bool const succeeded = std::system(line.get()) == 0;
    fs::current_path(saved);
    return succeeded;
}
} // namespace Floor
