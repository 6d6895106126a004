#include "CWorkFolder.h"

#include "Verdicts.h"

#include <BaseUtilities/DoThrow.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <tuple>

namespace fs = std::filesystem;

CWorkFolder::CWorkFolder(fs::path const& parent)
{
    MakeParents(parent);
    std::string pattern = (parent / "torqel-file-fidelity-XXXXXX").native();
    if (mkdtemp(pattern.data()) == nullptr) {
        int const error = errno;
        RemoveParents();
        DoThrow<TQRunTimeException>(TEST_STATUS_NO_WORK_FOLDER,
                                    "Unable to make a work folder in '%s' (%s).", parent.native(),
                                    std::generic_category().message(error));
    }
    m_Path = pattern;
}

CWorkFolder::~CWorkFolder()
{
    std::ignore = Remove();
}

std::error_code CWorkFolder::Remove()
{
    std::error_code error;
    if (!m_Path.empty())
        fs::remove_all(m_Path, error);
    if (!error) {
        m_Path.clear();
        RemoveParents();
    }
    return error;
}

// Again when the suite has added a file meanwhile.
void CWorkFolder::RemoveAtOnce(fs::path const& folder)
{
    std::error_code error;
    for (int attempt = 0; attempt < 100 && !folder.empty(); ++attempt) {
        fs::remove_all(folder, error);
        if (!error)
            return;
    }
}

void CWorkFolder::MakeParents(fs::path const& parent)
{
    std::error_code error;
    std::vector<fs::path> missing; // innermost first
    for (fs::path folder = parent; !folder.empty() && !fs::exists(folder, error);
         folder = folder.parent_path())
        missing.push_back(folder);
    for (auto folder = missing.rbegin(); folder != missing.rend(); ++folder)
        if (fs::create_directory(*folder, error))
            m_CreatedParents.push_back(*folder);
}

void CWorkFolder::RemoveParents()
{
    std::error_code ignored; // one that others use by now is not empty, and stays
    for (; !m_CreatedParents.empty(); m_CreatedParents.pop_back())
        fs::remove(m_CreatedParents.back(), ignored);
}
