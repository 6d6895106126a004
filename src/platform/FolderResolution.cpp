#include <BaseUtilities/FolderResolution.h>

#include "PathText.h"

#include <QDir>
#include <QString>

#include <cinttypes>
#include <cstdlib>

namespace fs = std::filesystem;

bool CheckEnvVar(basic_sv_wrapper<char> const& name)
{
    if (name.empty())
        return false;
    char const* const value = std::getenv(CSafeString(name).get());
    if (value == nullptr || *value == '\0')
        return false;
    return std::strtoumax(value, nullptr, 0) != 0;
}

CSafeString GetStandardDirName(QStandardPaths::StandardLocation location)
{
    QString const found = QStandardPaths::locate(location, ".", QStandardPaths::LocateDirectory);
    QByteArray const path = QDir::toNativeSeparators(QDir::cleanPath(found)).toUtf8();
    return MakeLongPath(
        basic_sv_wrapper<char>(path.constData(), static_cast<std::size_t>(path.size())));
}

CSafeString GetAppInstallPathName(basic_sv_wrapper<char> const& name)
{
    return AppendToPath(GetStandardDirName(QStandardPaths::ApplicationsLocation), name);
}

CSafeString AppendToPath(fs::path const& base, basic_sv_wrapper<char> const& name)
{
    return ToText(base / ToPath(name));
}

CSafeString AppendToPath(basic_sv_wrapper<char> const& base, basic_sv_wrapper<char> const& name)
{
    return AppendToPath(ToPath(base), name);
}

CSafeString GetQuillonDocsPathName()
{
    return AppendToPath(GetStandardDirName(QStandardPaths::DocumentsLocation),
                        "Quillon Test Suite");
}

CSafeString GetWorkFilesFolderPathName()
{
    return AppendToPath(GetQuillonDocsPathName(), "Work Files");
}

CSafeString GetQuillonJsonFolderPathName()
{
    return AppendToPath(GetQuillonDocsPathName(), "Downloaded Quillon Vendor File");
}

CSafeString GetProgramDataParentFolder()
{
    return GetStandardDirName(QStandardPaths::GenericDataLocation);
}

CSafeString MakeLongPath(basic_sv_wrapper<char> const& path)
{
    return path;
}

CSafeString MakeLongPath(basic_sv_wrapper<wchar_t> path)
{
    return path;
}

CSafeString MakeShortPath(basic_sv_wrapper<char> const& path)
{
    return path;
}

CSafeString MakeShortPath(basic_sv_wrapper<wchar_t> path)
{
    return path;
}
