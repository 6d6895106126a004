// Every failure that files alone can bring about, one row each. '@' is the folder of the
// landscape, which is also the current folder.

#include "CopyLandscape.h"
#include "ScopedCurrentPath.h"

#include <gtest/gtest.h>

namespace
{
struct CFailure
{
    char const* name;
    std::string source;
    std::string destination;
    std::string what;
};

std::string const longName(300, 'n');
std::string const longPath = [] {
    std::string path = "@";
    while (path.size() < 5000)
        path += "/folder/..";
    return path;
}();

CFailure const failures[] = {
    // The source.
    {"MissingSource", "@/missing", "@/new",
     "Unable to copy file 'Cannot copy from source: @/missing does not exist.' to ''."},
    {"MissingSourceForAFolder", "@/missing", "@/folder",
     "Unable to copy file 'Cannot copy from source: @/missing does not exist.' to ''."},
    {"MissingSourceForAnOldFile", "@/missing", "@/old",
     "Unable to copy file 'Cannot copy from source: @/missing does not exist.' to ''."},
    {"MissingSourceForItself", "@/missing", "@/missing",
     "Unable to copy file 'Cannot copy from source: @/missing does not exist.' to ''."},
    {"SourceInAMissingFolder", "@/missing/from", "@/new",
     "Unable to copy file 'Cannot copy from source: @/missing/from does not exist.' to ''."},
    {"SourceBelowAFile", "@/from/below", "@/new",
     "Unable to copy file 'Cannot copy from source: @/from/below does not exist.' to ''."},
    {"SourceFileWithATrailingSlash", "@/from/", "@/new",
     "Unable to copy file 'Cannot copy from source: @/from/ does not exist.' to ''."},
    {"EmptySource", "", "@/new",
     "Unable to copy file 'Cannot copy from source:  does not exist.' to ''."},
    {"DanglingLinkAsSource", "@/dangling", "@/new",
     "Unable to copy file 'Cannot copy from source: @/dangling does not exist.' to ''."},
    {"FolderAsSource", "@/folder", "@/new",
     "Unable to copy file 'Cannot copy from source: @/folder is a directory.' to ''."},
    {"FolderAsSourceAndDestination", "@/folder", "@/folder",
     "Unable to copy file 'Cannot copy from source: @/folder is a directory.' to ''."},
    {"FolderWithATrailingSlashAsSource", "@/folder/", "@/new",
     "Unable to copy file 'Cannot copy from source: @/folder/ is a directory.' to ''."},
    {"CurrentFolderAsSource", ".", "@/new",
     "Unable to copy file 'Cannot copy from source: . is a directory.' to ''."},
    {"LinkToAFolderAsSource", "@/to-folder", "@/new",
     "Unable to copy file 'Cannot copy from source: @/to-folder is a directory.' to ''."},
    {"PipeAsSource", "@/pipe", "@/new",
     "Unable to copy file 'Cannot copy from source: @/pipe is not a standard file type.' to ''."},
    {"SocketAsSource", "@/socket", "@/new",
     "Unable to copy file 'Cannot copy from source: @/socket is not a standard file type.' to ''."},
    {"DeviceAsSource", "/dev/null", "@/new",
     "Unable to copy file 'Cannot copy from source: /dev/null is not a standard file type.' to "
     "''."},
    {"LinkToAPipeAsSource", "@/to-pipe", "@/new",
     "Unable to copy file 'Cannot copy from source: @/to-pipe is not a standard file type.' to "
     "''."},
    // The destination.
    {"DestinationInAMissingFolder", "@/from", "@/missing/new",
     "Unable to copy file '' to 'Cannot copy to destination: @/missing/new does not exist.'."},
    {"DestinationInAMissingFolderTwoDeep", "@/from", "@/missing/too/new",
     "Unable to copy file '' to 'Cannot copy to destination: @/missing/too/new does not exist.'."},
    {"DestinationBelowAFile", "@/from", "@/old/new",
     "Unable to copy file '' to 'Cannot copy to destination: @/old/new does not exist.'."},
    {"DestinationBelowTheSource", "@/from", "@/from/new",
     "Unable to copy file '' to 'Cannot copy to destination: @/from/new does not exist.'."},
    {"DestinationBelowAPipe", "@/from", "@/pipe/new",
     "Unable to copy file '' to 'Cannot copy to destination: @/pipe/new does not exist.'."},
    {"DestinationBelowADanglingLink", "@/from", "@/dangling/new",
     "Unable to copy file '' to 'Cannot copy to destination: @/dangling/new does not exist.'."},
    {"NewNameWithATrailingSlash", "@/from", "@/new/",
     "Unable to copy file '' to 'Cannot copy to destination: @/new/ does not exist.'."},
    {"OldFileWithATrailingSlash", "@/from", "@/old/",
     "Unable to copy file '' to 'Cannot copy to destination: @/old/ does not exist.'."},
    {"BareNewName", "@/from", "new",
     "Unable to copy file '' to 'Cannot copy to destination: new does not exist.'."},
    {"BareNameOfADanglingLink", "@/from", "dangling",
     "Unable to copy file '' to 'Cannot copy to destination: dangling does not exist.'."},
    {"EmptyDestination", "@/from", "",
     "Unable to copy file '' to 'Cannot copy to destination:  does not exist.'."},
    {"PipeAsDestination", "@/from", "@/pipe",
     "Unable to copy file '' to 'Cannot copy to destination: @/pipe is not a regular file.'."},
    {"SocketAsDestination", "@/from", "@/socket",
     "Unable to copy file '' to 'Cannot copy to destination: @/socket is not a regular file.'."},
    {"DeviceAsDestination", "@/from", "/dev/null",
     "Unable to copy file '' to 'Cannot copy to destination: /dev/null is not a regular file.'."},
    {"LinkToAPipeAsDestination", "@/from", "@/to-pipe",
     "Unable to copy file '' to 'Cannot copy to destination: @/to-pipe is not a regular file.'."},
    // Both.
    {"MissingSourceAndFolder", "@/missing", "@/missing/new",
     "Unable to copy file 'Cannot copy from source: @/missing does not exist.' to "
     "'Cannot copy to destination: @/missing/new does not exist.'."},
    {"FolderToAPipe", "@/folder", "@/pipe",
     "Unable to copy file 'Cannot copy from source: @/folder is a directory.' to "
     "'Cannot copy to destination: @/pipe is not a regular file.'."},
    {"PipeToItself", "@/pipe", "@/pipe",
     "Unable to copy file 'Cannot copy from source: @/pipe is not a standard file type.' to "
     "'Cannot copy to destination: @/pipe is not a regular file.'."},
    {"NothingToNothing", "", "",
     "Unable to copy file 'Cannot copy from source:  does not exist.' to "
     "'Cannot copy to destination:  does not exist.'."},
    // No status of an end, which is then the first path and the only one.
    {"LinkLoopAsSource", "@/loop", "@/new",
     "Unable to copy file '@/loop' to .':\n   status = 40 (Too many levels of symbolic links)"},
    {"LinkLoopAsDestination", "@/from", "@/loop",
     "Unable to copy file '@/loop' to .':\n   status = 40 (Too many levels of symbolic links)"},
    {"LinkLoopInTheDestination", "@/from", "@/loop/new",
     "Unable to copy file '@/loop/new' to .':\n   status = 40 (Too many levels of symbolic links)"},
    {"LinkLoopsBelowEachOther", "@/loop/a", "@/loop/b",
     "Unable to copy file '@/loop/a' to .':\n   status = 40 (Too many levels of symbolic links)"},
    {"LinkLoopAfterABadSource", "@/folder", "@/loop",
     "Unable to copy file '@/loop' to .':\n   status = 40 (Too many levels of symbolic links)"},
    {"LinkLoopBeforeABadDestination", "@/loop", "@/pipe",
     "Unable to copy file '@/loop' to .':\n   status = 40 (Too many levels of symbolic links)"},
    {"LongNameAsSource", "@/" + longName, "@/new",
     "Unable to copy file '@/" + longName + "' to .':\n   status = 36 (File name too long)"},
    {"LongNameAsDestination", "@/from", "@/" + longName,
     "Unable to copy file '@/" + longName + "' to .':\n   status = 36 (File name too long)"},
    {"LongPathAsSource", longPath, "@/new",
     "Unable to copy file '" + longPath + "' to .':\n   status = 36 (File name too long)"},
    {"LongPathAsDestination", "@/from", longPath,
     "Unable to copy file '" + longPath + "' to .':\n   status = 36 (File name too long)"},
    // The copy itself.
    {"IntoTheFolderThatHoldsTheSource", "@/from", "@",
     "Unable to copy file '@/from' to .@':\n   status = 17 (File exists)"},
    {"IntoTheCurrentFolderThatHoldsTheSource", "from", ".",
     "Unable to copy file 'from' to ..':\n   status = 17 (File exists)"},
    {"IntoAFolderWithAFolderOfThatName", "@/from", "@/holder",
     "Unable to copy file '@/from' to .@/holder':\n   status = 22 (Invalid argument)"},
    {"IntoAFolderWithAPipeOfThatName", "@/from", "@/pipes",
     "Unable to copy file '@/from' to .@/pipes':\n   status = 22 (Invalid argument)"},
    {"ThroughALinkThatPointsIntoAMissingFolder", "@/from", "@/astray",
     "Unable to copy file '@/from' to .@/astray':\n   status = 2 (No such file or directory)"},
};

class TqCopyFileFailure : public testing::TestWithParam<CFailure>
{
protected:
    CCopyLandscape const m_Landscape;
    CScopedCurrentPath const m_CurrentPath{m_Landscape.Path()};
    std::string const m_Source = m_Landscape.Fill(GetParam().source);
    std::string const m_Destination = m_Landscape.Fill(GetParam().destination);
};
} // namespace

INSTANTIATE_TEST_SUITE_P(All, TqCopyFileFailure, testing::ValuesIn(failures),
                         [](auto const& row) { return row.param.name; });

TEST_P(TqCopyFileFailure, IsThrownWithItsMessage)
{
    EXPECT_EQ(Copy(m_Source, m_Destination, ECopyFailType::Throw),
              Threw(m_Landscape.Fill(GetParam().what)));
}

TEST_P(TqCopyFileFailure, IsReportedByAnEmptyResult)
{
    EXPECT_EQ(Copy(m_Source, m_Destination, ECopyFailType::Report), "returned nothing");
}

TEST_P(TqCopyFileFailure, IsReportedForEveryUnknownFailType)
{
    for (int const failType : {2, 3, -1, 257, 0x7fffffff})
        EXPECT_EQ(Copy(m_Source, m_Destination, static_cast<ECopyFailType>(failType)),
                  "returned nothing")
            << failType;
}

TEST_P(TqCopyFileFailure, TouchesNothing)
{
    auto const before = m_Landscape.Snapshot();
    Copy(m_Source, m_Destination, ECopyFailType::Throw);
    Copy(m_Source, m_Destination, ECopyFailType::Report);
    EXPECT_EQ(m_Landscape.Snapshot(), before);
}
