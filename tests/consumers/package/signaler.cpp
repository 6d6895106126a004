// Uses a header whose subject is Qt's, so that Qt's include folders and library must have come
// along with the package.

#include <BaseUtilities/CQtSignaler.h>

int main()
{
    CQtSignaler signaler;
    int refreshed = 0;
    QObject::connect(&signaler, &CQtSignaler::RefreshDone, [&refreshed] { ++refreshed; });
    emit signaler.RefreshDone();
    return refreshed == 1 ? 0 : 1;
}
