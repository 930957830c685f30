#include "foundations/AppConfig.h"

#include <QStandardPaths>

namespace vantrel {

QString userApplicationDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Vantrel");
}

} // namespace vantrel
