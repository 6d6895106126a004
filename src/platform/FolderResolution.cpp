#include <BaseUtilities/FolderResolution.h>

#include "PathText.h"

#include <QDir>
#include <QString>

#include <cinttypes>
#include <cstdlib>

namespace fs = std::filesystem;

namespace
{
// `base` is the caller's to give away, so that no copy of it is made here.
template <class Name>
CSafeString Join(fs::path&& base, Name const& name)
{
    return ToText(base /= name);
}
} // namespace

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
    return Join(ToPath(GetStandardDirName(QStandardPaths::ApplicationsLocation)), ToPath(name));
}

CSafeString AppendToPath(fs::path const& base, basic_sv_wrapper<char> const& name)
{
    return Join(fs::path(base), ToPath(name));
}

CSafeString AppendToPath(basic_sv_wrapper<char> const& base, basic_sv_wrapper<char> const& name)
{
    return Join(ToPath(base), ToPath(name));
}

CSafeString GetQuillonDocsPathName()
{
    return Join(ToPath(GetStandardDirName(QStandardPaths::DocumentsLocation)),
                "Quillon Test Suite");
}

CSafeString GetWorkFilesFolderPathName()
{
    return Join(ToPath(GetQuillonDocsPathName()), "Work Files");
}

CSafeString GetQuillonJsonFolderPathName()
{
    return Join(ToPath(GetQuillonDocsPathName()), "Downloaded Quillon Vendor File");
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
