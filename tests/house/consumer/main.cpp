#include <BaseUtilities/CSafeString.h>

#include <iostream>

int main()
{
    CSafeString text("text ");
    text += "of the library";
    std::cout << text.get() << '\n';
}
