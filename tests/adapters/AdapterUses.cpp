// The static analysers look at this source, and by way of it at the adapters, which the library
// itself does not use; tests call it.

#include "AdapterUses.h"

#include <BaseUtilities/adapters/GoogleTest.h>
#include <BaseUtilities/adapters/Qt.h>
#include <BaseUtilities/adapters/hash.h>
#include <BaseUtilities/adapters/ostream.h>
#ifdef WITH_FMT
#include <BaseUtilities/adapters/fmt.h>
#endif

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

std::vector<std::string> WrittenByEachAdapter(CSafeString const& text)
{
    std::ostringstream stream;
    stream << text;
    QString shown;
    QDebug(&shown).noquote().nospace() << text;
    std::vector<std::string> written = {stream.str(), testing::PrintToString(text),
                                        ToSafeString(shown).get(),
                                        ToSafeString(ToQString(text)).get()};
#ifdef WITH_FMT
    written.push_back(fmt::format("{}", text));
#endif
    return written;
}

bool HashesAreThoseOfACopy(CSafeString const& text)
{
    CSafeString const copy(text.get());
    std::hash<CSafeString> const hash;
    return hash(text) == hash(copy) && qHash(text) == qHash(copy);
}
