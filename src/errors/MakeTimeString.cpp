#include <BaseUtilities/MakeTimeString.h>

#include <ctime>
#include <iomanip>
#include <sstream>

using std::chrono::system_clock;

CSafeString MakeTimeString(char const* format, system_clock::time_point const& when)
{
    auto const seconds =
        std::chrono::duration_cast<std::chrono::seconds>(when.time_since_epoch()).count();
    std::time_t const time = seconds;
    std::stringstream stream;
    stream << std::put_time(std::localtime(&time), format);
    return basic_sv_wrapper<char>(stream.str());
}

CSafeString MakeCurrentTimeString(char const* format)
{
    return MakeTimeString(format, system_clock::now());
}
