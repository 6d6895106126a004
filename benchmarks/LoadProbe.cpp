// Does nothing but load the library that it is linked with.

#if defined(PROBE_LIBRARY)
#include <BaseUtilities/LibraryVersion.h>
int main()
{
    return GetVersionMajor() == 5 ? 0 : 1;
}
#elif defined(PROBE_FLOOR)
#include "FloorServices.h"
int main()
{
    return Floor::AbortRequested() ? 1 : 0;
}
#else
#include <QtGlobal>
int main()
{
    return qVersion() != nullptr ? 0 : 1;
}
#endif
