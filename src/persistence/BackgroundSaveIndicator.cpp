#include "persistence/BackgroundSaveIndicator.h"

namespace vantrel {

namespace {
constexpr double ClearDelaySeconds = 0.5;
}

BackgroundSaveIndicator::BackgroundSaveIndicator(Clock &clock, QObject *parent)
    : QObject(parent), m_clock(clock)
{
}

void BackgroundSaveIndicator::beginSave()
{
    ++m_activeSaves;
    ++m_generation;
    updateStatus();
}

void BackgroundSaveIndicator::endSave()
{
    m_activeSaves = qMax(0, m_activeSaves - 1);
    updateStatus();
    if (m_activeSaves == 0) {
        clearStatusAfterDelay();
    }
}

void BackgroundSaveIndicator::updateStatus()
{
    m_clock.soon(this, [this] { setSaving(m_activeSaves > 0); });
}

void BackgroundSaveIndicator::clearStatusAfterDelay()
{
    m_clock.after(ClearDelaySeconds, this, [this, generation = m_generation] {
        if (generation == m_generation) {
            setSaving(false);
        }
    });
}

void BackgroundSaveIndicator::setSaving(bool isSaving)
{
    if (isSaving != m_isSaving) {
        m_isSaving = isSaving;
        Q_EMIT isSavingChanged();
    }
}

} // namespace vantrel
