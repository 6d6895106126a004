#pragma once

#include "CopyOperation.h"
#include "FolderScan.h"
#include "ISuiteObserver.h"

#include <vector>

class CFileReader;

/// Checks one file after the other: that its name survives the conversions, and
/// that its copy holds the same bytes. Each copy is removed when it is compared.
///
/// Threads: one at a time.
class CFileCheck
{
public:
    /// Copies go to `copies`, an existing folder without entries of its own.
    CFileCheck(std::filesystem::path copies, CopyOperation copy);

    /// Skipped is what cannot be read, or changes or vanishes meanwhile. Throws
    /// what copying and reading the copy throw.
    CCaseOutcome Check(CFoundEntry const& entry);

private:
    CCaseOutcome CheckReadable(CFoundEntry const& entry, CFileReader& source);
    CCaseOutcome Compare(CFileReader& source, std::filesystem::path const& copy);

    std::filesystem::path m_Copies;
    CopyOperation m_Copy;
    std::vector<char> m_SourceBlock;
    std::vector<char> m_CopyBlock;
};

/// The name of the first conversion that does not give `name` back, or null.
char const* LossyConversion(std::string const& name);
