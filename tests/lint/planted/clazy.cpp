// Planted for script/lint, which trusts clazy only once it has found this.
//
// Must be reported: [-Wclazy-qstring-arg]

#include <QString>

QString Sentence(QString const& first, QString const& second)
{
    return QString("%1 and %2").arg(first).arg(second);
}
