#include <FolderScan.h>

#include "CUnprivileged.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cstring>
#include <stdexcept>

namespace fs = std::filesystem;
using testing::ElementsAre;

namespace
{
void Ignore(unsigned long) {}

// "name: reason", "name -> target" or the name alone.
std::vector<std::string> Scan(fs::path const& folder)
{
    std::vector<std::string> texts;
    for (CFoundEntry const& entry : ScanFolder(folder, Ignore)) {
        EXPECT_EQ(entry.m_Path.lexically_relative(folder), entry.m_Name);
        if (!entry.m_SkipReason.empty())
            texts.push_back(entry.m_Name + ": " + entry.m_SkipReason);
        else if (!entry.m_LinkTarget.empty())
            texts.push_back(entry.m_Name + " -> " + entry.m_LinkTarget);
        else
            texts.push_back(entry.m_Name);
    }
    return texts;
}

class CSocket
{
public:
    explicit CSocket(std::string const& path) : m_Descriptor(socket(AF_UNIX, SOCK_STREAM, 0))
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        EXPECT_EQ(bind(m_Descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    CSocket(CSocket const&) = delete;
    CSocket& operator=(CSocket const&) = delete;
    ~CSocket() { close(m_Descriptor); }

private:
    int m_Descriptor;
};
} // namespace

TEST(FolderScan, FindsEveryFileBelowTheFolderInTheOrderOfTheNames)
{
    CTemporaryFolder const folder;
    fs::create_directories(folder.Path() / "b" / "deep");
    WriteFile(folder / "c", "");
    WriteFile(folder / "a", "");
    WriteFile(folder / "b/deep/file", "");

    EXPECT_THAT(Scan(folder.Path()), ElementsAre("a", "b/deep/file", "c"));
}

TEST(FolderScan, NamesEmptyFoldersAsSuch)
{
    CTemporaryFolder const folder;
    EXPECT_THAT(Scan(folder.Path()), ElementsAre(".: an empty folder"));

    fs::create_directory(folder.Path() / "empty");
    EXPECT_THAT(Scan(folder.Path()), ElementsAre("empty: an empty folder"));
}

TEST(FolderScan, FollowsLinksToFilesAlone)
{
    CTemporaryFolder const folder;
    WriteFile(folder / "file", "");
    fs::create_directory(folder.Path() / "folder");
    WriteFile(folder / "folder/inside", "");
    fs::create_symlink("file", folder.Path() / "l1");
    fs::create_symlink("folder", folder.Path() / "l2");
    fs::create_symlink("nowhere", folder.Path() / "l3");
    fs::create_symlink("l4", folder.Path() / "l4");
    fs::create_symlink("/dev/null", folder.Path() / "l5");

    EXPECT_THAT(Scan(folder.Path()),
                ElementsAre("file", "folder/inside", "l1 -> file",
                            "l2: a link to the folder folder", "l3: a dangling link to nowhere",
                            "l4: a link that cannot be followed: Too many levels of symbolic links",
                            "l5: a link to /dev/null, a device"));
}

TEST(FolderScan, SkipsWhatIsNoRegularFile)
{
    CTemporaryFolder const folder;
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), S_IRUSR), 0);
    CSocket const socket(folder / "socket");

    EXPECT_THAT(Scan(folder.Path()), ElementsAre("pipe: a named pipe", "socket: a socket"));
}

TEST(FolderScan, SkipsAFolderThatCannotBeRead)
{
    CTemporaryFolder const folder;
    fs::permissions(folder.Path(), fs::perms(0755));
    fs::create_directory(folder.Path() / "closed");
    fs::permissions(folder.Path() / "closed", fs::perms::none);
    WriteFile(folder / "open", "");
    CUnprivileged const unprivileged;

    EXPECT_THAT(Scan(folder.Path()),
                ElementsAre("closed: the folder cannot be read: Permission denied", "open"));
}

TEST(FolderScan, ReportsBeforeEachFolderHowManyWereFound)
{
    CTemporaryFolder const folder;
    fs::create_directories(folder.Path() / "b");
    fs::create_directories(folder.Path() / "c");
    WriteFile(folder / "a", "");
    WriteFile(folder / "b/file", "");
    WriteFile(folder / "c/file", "");

    std::vector<unsigned long> counts;
    ScanFolder(folder.Path(), [&](unsigned long count) { counts.push_back(count); });
    EXPECT_THAT(counts, ElementsAre(0, 1, 2));
}

TEST(FolderScan, EndsWithWhatTheCallerThrows)
{
    CTemporaryFolder const folder;
    EXPECT_THROW(
        ScanFolder(folder.Path(), [](unsigned long) { throw std::domain_error("enough"); }),
        std::domain_error);
}
