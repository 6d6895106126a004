#include "FloorServices.h"
#include "Operations.h"
#include "Samples.h"
#include "TestFolders.h"

#include <BaseUtilities/FolderResolution.h>
#include <BaseUtilities/TqCopyFile.h>
#include <BaseUtilities/oss_system.h>

#include <QFile>

#include <memory>

namespace fs = std::filesystem;

namespace
{
char const* const Area = "Platform";

void AddFolders(CCatalogue& catalogue)
{
    fs::path const base = "/home/operator/Documents/Quillon Test Suite";
    std::string const baseText = base.string();
    catalogue.Add(Area, "AppendToPath, views")
        .Library([=] { return AppendToPath(baseText, "Work Files"); })
        .Floor([=] { return Floor::AppendToPath(Floor::View(baseText), "Work Files"); })
        .Peer("std", [=] { return (fs::path(baseText) / "Work Files").string(); });
    catalogue.Add(Area, "AppendToPath, path")
        .Library([=] { return AppendToPath(base, "Work Files"); })
        .Floor([=] { return Floor::AppendToPath(base, "Work Files"); })
        .Peer("std", [=] { return (base / "Work Files").string(); });
    catalogue.Add(Area, "GetStandardDirName")
        .Library([] { return GetStandardDirName(QStandardPaths::GenericDataLocation); })
        .Floor([] { return Floor::GetStandardDirName(QStandardPaths::GenericDataLocation); });
    catalogue.Add(Area, "GetWorkFilesFolderPathName")
        .Library([] { return GetWorkFilesFolderPathName(); })
        .Floor([] { return Floor::GetWorkFilesFolderPathName(); });
    catalogue.Add(Area, "CheckEnvVar")
        .Allocates(1)
        .Library([] { return CheckEnvVar("HOME"); })
        .Floor([] { return Floor::CheckEnvVar("HOME"); })
        .Peer("Qt", [] { return qEnvironmentVariableIntValue("HOME") != 0; });
}

// The files stay until the last contender has let go of the folder.
struct CFiles
{
    CFiles(char const* parent, std::uintmax_t size) : m_Folder(parent) { WriteFile(m_From, size); }

    CFolder m_Folder;
    std::string m_From = m_Folder.File("source.bin");
    std::string m_To = m_Folder.File("destination.bin");
};

void AddCopy(CCatalogue& catalogue, char const* parent, char const* medium, std::uintmax_t size)
{
    // Made when first used, so that a run over other operations writes nothing.
    auto const files = [parent, size, made = std::make_shared<std::unique_ptr<CFiles>>()] {
        if (*made == nullptr)
            *made = std::make_unique<CFiles>(parent, size);
        return made->get();
    };
    COperation& operation =
        catalogue.Add(Area, "TqCopyFile over a file, " + SizeName(size) + " on " + medium);
    if (parent == DiskFolder)
        operation.OnDisk();
    operation.InKernel()
        .Weighs(size > 16UL * 1024 * 1024 ? EWeight::Heavy : EWeight::Light)
        .Library([=] {
            return TqCopyFile(files()->m_From, files()->m_To, ECopyFailType::Throw).has_value();
        })
        .Floor([=] { return Floor::CopyFile(files()->m_From, files()->m_To).has_value(); })
        .Peer("Qt",
              [=] {
                  // Qt copies to new files only.
                  QString const to = QString::fromStdString(files()->m_To);
                  QFile::remove(to);
                  return QFile::copy(QString::fromStdString(files()->m_From), to);
              })
        .Peer("cp", [=] {
            return RunProgram("cp", files()->m_From.c_str(), files()->m_To.c_str()) == 0;
        });
}

void AddProcesses(CCatalogue& catalogue)
{
    catalogue.Add(Area, "oss_system")
        .InKernel()
        .Library([] { return oss_system("true", "", "/"); })
        .Floor([] { return Floor::System("true", "", "/"); })
        .Peer("posix_spawn", [] { return RunProgram("/bin/true") == 0; });
    catalogue.Add(Area, "load time of the library")
        .InKernel()
        .Library([] { return RunProgram(LOAD_LIBRARY) == 0; })
        .Floor([] { return RunProgram(LOAD_FLOOR) == 0; })
        .Peer("Qt", [] { return RunProgram(LOAD_QT) == 0; });
}
} // namespace

void AddPlatform(CCatalogue& catalogue)
{
    AddFolders(catalogue);
    struct
    {
        char const* m_Folder;
        char const* m_Name;
    } const media[] = {{MemoryFolder, "tmpfs"}, {DiskFolder, "disk"}};
    for (auto const& medium : media) {
        for (std::uintmax_t const size : {4096UL, 1024UL * 1024, 256UL * 1024 * 1024})
            AddCopy(catalogue, medium.m_Folder, medium.m_Name, size);
    }
    AddProcesses(catalogue);
}
