#include "viewmodels/ToastViewModel.h"

namespace vantrel {

ToastViewModel::ToastViewModel(ToastManager &toasts, QObject *parent) : QObject(parent), m_toasts(toasts)
{
    connect(&toasts, &ToastManager::changed, this, &ToastViewModel::changed);
}

} // namespace vantrel
