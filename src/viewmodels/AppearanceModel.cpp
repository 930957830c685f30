#include "viewmodels/AppearanceModel.h"

namespace vantrel {

AppearanceModel::AppearanceModel(const DesktopAppearance &appearance, QObject *parent)
    : QObject(parent), m_appearance(appearance)
{
    connect(&appearance, &DesktopAppearance::changed, this, &AppearanceModel::changed);
}

} // namespace vantrel
