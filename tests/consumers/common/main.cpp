// The program that every kind of consumer builds: its exit status is the result.

#include "UseLibrary.h"

int main()
{
    return UseLibrary();
}
