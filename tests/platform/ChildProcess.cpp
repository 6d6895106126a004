#include "ChildProcess.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
void Check(bool succeeded, char const* call)
{
    if (!succeeded)
        throw std::system_error(errno, std::generic_category(), call);
}

std::string ReadAll(int descriptor)
{
    std::string all;
    char part[4096];
    for (ssize_t count; (count = read(descriptor, part, sizeof part)) > 0;)
        all.append(part, static_cast<std::size_t>(count));
    return all;
}

[[noreturn]] void Answer(int descriptor, std::function<std::string()> const& operation)
{
    std::string text;
    try {
        text = operation();
    } catch (std::exception const& error) {
        text = std::string("child failed: ") + error.what();
    }
    bool const written =
        write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    _exit(written ? EXIT_SUCCESS : EXIT_FAILURE); // no destructor of the parent's objects
}
} // namespace

std::string InChildProcess(std::function<std::string()> const& operation)
{
    int ends[2];
    Check(pipe2(ends, O_CLOEXEC) == 0, "pipe2");
    pid_t const child = fork();
    Check(child >= 0, "fork");
    if (child == 0)
        Answer(ends[1], operation);
    close(ends[1]);
    std::string const text = ReadAll(ends[0]);
    close(ends[0]);
    int status = 0;
    Check(waitpid(child, &status, 0) == child, "waitpid");
    return status == 0 ? text : "child ended with status " + std::to_string(status) + ": " + text;
}

void BecomeOrdinaryUser()
{
    if (geteuid() != 0)
        return;
    gid_t const group = 65534;
    uid_t const user = 65534;
    Check(setgroups(0, nullptr) == 0, "setgroups");
    Check(setresgid(group, group, group) == 0, "setresgid");
    Check(setresuid(user, user, user) == 0, "setresuid");
}

bool MountSmallFileSystem(std::filesystem::path const& folder, unsigned long size)
{
    int const ownNames = geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER;
    return unshare(ownNames) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
           && mount("tmpfs", folder.c_str(), "tmpfs", 0, ("size=" + std::to_string(size)).c_str())
                  == 0;
}
