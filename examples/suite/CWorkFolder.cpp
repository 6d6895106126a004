#include "CWorkFolder.h"

#include "Verdicts.h"

#include <BaseUtilities/DoThrow.h>

#include <cerrno>
#include <cstdlib>
#include <string>

namespace fs = std::filesystem;

CWorkFolder::CWorkFolder(fs::path const& parent)
{
    std::string pattern = (parent / "torqel-file-fidelity-XXXXXX").native();
    if (mkdtemp(pattern.data()) == nullptr)
        DoThrow<TQRunTimeException>(TEST_STATUS_NO_WORK_FOLDER,
                                    "Unable to make a work folder in '%s' (%s).", parent.native(),
                                    std::generic_category().message(errno));
    m_Path = pattern;
}

CWorkFolder::~CWorkFolder()
{
    Remove();
}

std::error_code CWorkFolder::Remove()
{
    std::error_code error;
    if (!m_Path.empty())
        fs::remove_all(m_Path, error);
    if (!error)
        m_Path.clear();
    return error;
}
