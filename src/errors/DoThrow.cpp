#include <BaseUtilities/DoThrow.h>

template void DoThrow<TQRunTimeException, char const*>(TEST_STATUS, basic_sv_wrapper<char> const&,
                                                       char const* const&);
template void DoThrow<TQRunTimeException, char const*, char const*>(TEST_STATUS,
                                                                    basic_sv_wrapper<char> const&,
                                                                    char const* const&,
                                                                    char const* const&);
template void DoThrow<TQRunTimeException, char const*, std::filesystem::file_type>(
    TEST_STATUS, basic_sv_wrapper<char> const&, char const* const&,
    std::filesystem::file_type const&);
template void DoThrow<TQRunTimeException, std::string, std::string, int, char const*>(
    TEST_STATUS, basic_sv_wrapper<char> const&, std::string const&, std::string const&, int const&,
    char const* const&);
