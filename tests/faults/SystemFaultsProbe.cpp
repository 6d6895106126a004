// Performs one operation of the library between two marks that a system call tracer sees, and says
// what came of it: what script/check-faults runs with one call made to fail.
//
// Usage: SystemFaultsProbe OPERATION FOLDER
//
// FOLDER holds the file "from", the file "old", the folders "folder" and "there", and the home
// folder "home"; the operation names its files by it.

#include "../runcontrol/PseudoTerminal.h"

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/ConsoleKeyboard.h>
#include <BaseUtilities/FolderResolution.h>
#include <BaseUtilities/TQException.h>
#include <BaseUtilities/TqCopyFile.h>
#include <BaseUtilities/oss_system.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <functional>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace fs = std::filesystem;

namespace
{
std::string folder;

std::string Full(char const* name)
{
    return folder + "/" + name;
}

std::string Text(std::optional<CSafeString> const& result)
{
    return result ? std::string("returned ") + result->get() : "returned nothing";
}

std::string Text(CSafeString const& result)
{
    return std::string("returned ") + result.get();
}

std::string Text(bool result)
{
    return result ? "returned true" : "returned false";
}

std::string Copy(char const* destination, ECopyFailType failType)
{
    return Text(TqCopyFile(Full("from"), Full(destination), failType));
}

std::string Run(char const* workingFolder)
{
    return Text(oss_system(": >ran", "", workingFolder[0] == '\0' ? "" : Full(workingFolder)));
}

std::string QueryKey()
{
    std::optional<int> const key = oss_query_getch();
    return key ? "returned " + std::to_string(*key) : "returned nothing";
}

std::map<std::string, std::function<std::string()>> const operations = {
    {"copy-to-new", [] { return Copy("new", ECopyFailType::Throw); }},
    {"copy-over-old", [] { return Copy("old", ECopyFailType::Throw); }},
    {"copy-into-folder", [] { return Copy("folder", ECopyFailType::Throw); }},
    {"copy-reporting", [] { return Copy("old", ECopyFailType::Report); }},
    {"command-there", [] { return Run("there"); }},
    {"command-here", [] { return Run(""); }},
    {"documents", [] { return Text(GetQuillonDocsPathName()); }},
    {"applications", [] { return Text(GetAppInstallPathName("name")); }},
    {"data", [] { return Text(GetProgramDataParentFolder()); }},
    {"key", [] { return "returned " + std::to_string(oss_getch()); }},
    {"key-query", [] { return QueryKey(); }},
};

// How GoogleTest's programs put it, too; exactly the thrown type, as far as the interface promises.
std::string Outcome(std::function<std::string()> const& operation)
{
    try {
        return operation();
    } catch (TQRunTimeException const& error) {
        return "threw TQRunTimeException " + std::to_string(error.GetStatus()) + ": "
               + error.what();
    } catch (fs::filesystem_error const& error) {
        return "threw filesystem_error " + std::to_string(error.code().value());
    } catch (std::exception const& error) {
        return std::string("threw something else: ") + error.what();
    }
}

long OpenDescriptors()
{
    fs::directory_iterator const all("/proc/self/fd");
    return std::distance(begin(all), end(all));
}

std::string CurrentFolder()
{
    std::error_code error;
    return fs::current_path(error).native();
}

// A terminal at standard input with a key and Enter typed, for the operations that read keys.
class CKeys
{
public:
    CKeys() { m_Terminal.TypeAndWaitForEcho("k\n"); }
    std::string Attributes() const { return ::Text(m_Terminal.Attributes()); }

private:
    CPseudoTerminal m_Terminal;
    CStandardInput m_Input{m_Terminal.Slave()};
};
} // namespace

int main(int count, char** arguments)
{
    if (count != 3 || operations.count(arguments[1]) == 0) {
        std::cerr << "Usage: SystemFaultsProbe OPERATION FOLDER\n";
        return 64;
    }
    folder = arguments[2];
    fs::current_path(folder);
    std::unique_ptr<CKeys> keys;
    if (std::string(arguments[1]).rfind("key", 0) == 0)
        keys = std::make_unique<CKeys>();
    auto const& operation = operations.at(arguments[1]);
    long const descriptors = OpenDescriptors();
    std::string const before = keys ? keys->Attributes() : "";

    static_cast<void>(access("/mark/begin", F_OK));
    std::string const outcome = Outcome(operation);
    static_cast<void>(access("/mark/end", F_OK));

    std::cout << "outcome: " << outcome << '\n'
              << "folder: " << CurrentFolder() << '\n'
              << "descriptors: " << OpenDescriptors() - descriptors << '\n'
              << "terminal: " << (keys && keys->Attributes() != before ? "changed" : "same")
              << '\n';
}
