#include "CFileReader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace
{
[[noreturn]] void ThrowSystemError()
{
    throw std::system_error(errno, std::generic_category());
}

struct stat StatusOf(int descriptor)
{
    struct stat status = {};
    if (fstat(descriptor, &status) != 0)
        ThrowSystemError();
    return status;
}
} // namespace

bool CFileReader::CStamp::operator==(CStamp const& other) const
{
    return m_Size == other.m_Size && m_Changed.tv_sec == other.m_Changed.tv_sec
           && m_Changed.tv_nsec == other.m_Changed.tv_nsec;
}

CFileReader::CFileReader(std::filesystem::path const& file)
    : m_Descriptor(open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC))
{
    if (m_Descriptor < 0)
        ThrowSystemError();
}

CFileReader::~CFileReader()
{
    close(m_Descriptor);
}

bool CFileReader::IsRegular() const
{
    return S_ISREG(StatusOf(m_Descriptor).st_mode);
}

CFileReader::CStamp CFileReader::Stamp() const
{
    struct stat const status = StatusOf(m_Descriptor);
    return {static_cast<std::uintmax_t>(status.st_size), status.st_mtim};
}

void CFileReader::Read(std::vector<char>& block)
{
    std::size_t filled = 0;
    while (filled < block.size()) {
        ssize_t const count = pread(m_Descriptor, block.data() + filled, block.size() - filled,
                                    static_cast<off_t>(m_Position + filled));
        if (count == 0)
            break;
        if (count > 0)
            filled += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            ThrowSystemError();
    }
    block.resize(filled);
    m_Position += filled;
}
