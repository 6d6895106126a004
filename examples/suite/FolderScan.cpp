#include "FolderScan.h"

#include <algorithm>
#include <system_error>

namespace fs = std::filesystem;

namespace
{
char const* SpecialKind(fs::file_type type)
{
    switch (type) {
    case fs::file_type::fifo:
        return "a named pipe";
    case fs::file_type::socket:
        return "a socket";
    case fs::file_type::block:
    case fs::file_type::character:
        return "a device";
    default:
        return "of an unknown type";
    }
}

class CFolderScan
{
public:
    CFolderScan(fs::path const& folder, std::function<void(unsigned long)> const& onFolder)
        : m_Root(folder),
          m_OnFolder(onFolder)
    {
        VisitFolder(folder);
    }
    std::vector<CFoundEntry> Take() { return std::move(m_Found); }

private:
    void VisitFolder(fs::path const& folder);
    void Visit(fs::path const& path);
    void VisitLink(CFoundEntry entry);
    CFoundEntry Entry(fs::path const& path) const;
    void Skip(CFoundEntry entry, std::string const& reason);

    fs::path m_Root;
    std::function<void(unsigned long)> const& m_OnFolder;
    std::vector<CFoundEntry> m_Found;
};

void CFolderScan::VisitFolder(fs::path const& folder)
{
    m_OnFolder(m_Found.size());

    std::vector<fs::path> children;
    std::error_code error;
    for (fs::directory_iterator child(folder, error); !error && child != fs::directory_iterator();
         child.increment(error))
        children.push_back(child->path());

    if (error)
        Skip(Entry(folder), "the folder cannot be read: " + error.message());
    else if (children.empty())
        Skip(Entry(folder), "an empty folder");
    std::sort(children.begin(), children.end());
    for (fs::path const& child : children)
        Visit(child);
}

void CFolderScan::Visit(fs::path const& path)
{
    std::error_code error;
    fs::file_status const status = fs::symlink_status(path, error);
    switch (status.type()) {
    case fs::file_type::directory:
        VisitFolder(path);
        break;
    case fs::file_type::regular:
        m_Found.push_back(Entry(path));
        break;
    case fs::file_type::symlink:
        VisitLink(Entry(path));
        break;
    case fs::file_type::not_found:
        Skip(Entry(path), "vanished before it was looked at");
        break;
    case fs::file_type::none:
        Skip(Entry(path), "cannot be looked at: " + error.message());
        break;
    default:
        Skip(Entry(path), SpecialKind(status.type()));
    }
}

void CFolderScan::VisitLink(CFoundEntry entry)
{
    std::error_code error;
    std::string const target = fs::read_symlink(entry.m_Path, error).native();
    fs::file_status const status = fs::status(entry.m_Path, error);
    if (fs::is_regular_file(status)) {
        entry.m_LinkTarget = target;
        m_Found.push_back(std::move(entry));
    } else if (fs::is_directory(status)) {
        Skip(std::move(entry), "a link to the folder " + target);
    } else if (status.type() == fs::file_type::not_found) {
        Skip(std::move(entry), "a dangling link to " + target);
    } else if (status.type() == fs::file_type::none) {
        Skip(std::move(entry), "a link that cannot be followed: " + error.message());
    } else {
        Skip(std::move(entry), "a link to " + target + ", " + SpecialKind(status.type()));
    }
}

CFoundEntry CFolderScan::Entry(fs::path const& path) const
{
    CFoundEntry entry;
    entry.m_Path = path;
    entry.m_Name = path.lexically_relative(m_Root).native();
    return entry;
}

void CFolderScan::Skip(CFoundEntry entry, std::string const& reason)
{
    entry.m_SkipReason = reason;
    m_Found.push_back(std::move(entry));
}
} // namespace

std::vector<CFoundEntry> ScanFolder(fs::path const& folder,
                                    std::function<void(unsigned long)> const& onFolder)
{
    return CFolderScan(folder, onFolder).Take();
}
