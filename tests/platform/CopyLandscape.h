#pragma once

#include "TemporaryFolder.h"

#include <BaseUtilities/TqCopyFile.h>

#include <filesystem>
#include <map>
#include <string>

/// A folder with one of everything that a copy can meet at either end:
///
///     from           a file "contents"         old      another, "what was there"
///     folder/inner   a file in a folder        twin     a hard link to "from"
///     holder/from    a folder in a folder      pipes/from    a pipe in a folder
///     pipe, socket   not files                 loop     a link to itself
///     to-from, to-folder, to-pipe              links to those
///     dangling       a link to "missing"       astray   a link to "missing/there"
class CCopyLandscape
{
public:
    CCopyLandscape();
    std::filesystem::path const& Path() const { return m_Folder.Path(); }
    std::string operator/(std::string const& name) const { return m_Folder / name; }
    /// `text` with the folder's path for every '@'.
    std::string Fill(std::string text) const;
    /// Every entry with its type, rights, size, time of change and contents.
    std::map<std::string, std::string> Snapshot() const;

private:
    CTemporaryFolder m_Folder;
};

/// What a copy did, as text: "returned PATH", "returned nothing", or "threw
/// TYPE STATUS: WHAT" of exactly the thrown type.
std::string Copy(std::string const& source, std::string const& destination, ECopyFailType failType);

/// Copy with ECopyFailType::Throw.
std::string Copy(std::string const& source, std::string const& destination);

/// How Copy puts the library's own exception with that text.
std::string Threw(std::string const& what);
