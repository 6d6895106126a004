#include <BaseUtilities/DoThrow.h>
#include <BaseUtilities/TqCopyFile.h>

#include <iostream>

int main(int argc, char** argv)
try {
    if (argc != 3)
        DoThrow<TQAppException>(TEST_STATUS_ERROR, "Usage: %s SOURCE DESTINATION", argv[0]);
    CSafeString const copy = *TqCopyFile(argv[1], argv[2], ECopyFailType::Throw);
    std::cout << (copy + " is there.").get() << '\n';
} catch (TQException const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
