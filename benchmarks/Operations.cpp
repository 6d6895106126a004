#include "Operations.h"

CCatalogue::CCatalogue()
{
    AddStrings(*this);
    AddUtilities(*this);
    AddConversions(*this);
    AddMessages(*this);
    AddRunControl(*this);
    AddPlatform(*this);
}
