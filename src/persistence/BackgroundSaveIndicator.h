#pragma once

#include "foundations/Clock.h"

#include <QObject>

namespace vantrel {

/** Tells the user that placements are being saved. GUI thread; owned by Services. */
class BackgroundSaveIndicator : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isSaving READ isSaving NOTIFY isSavingChanged)
public:
    explicit BackgroundSaveIndicator(Clock &clock, QObject *parent = nullptr);

    /** Follows activeSaves() on the next turn of the event loop. */
    bool isSaving() const { return m_isSaving; }
    int activeSaves() const { return m_activeSaves; }

    void beginSave();
    /** Never counts below 0. */
    void endSave();

Q_SIGNALS:
    void isSavingChanged();

private:
    void updateStatus();
    void clearStatusAfterDelay();
    void setSaving(bool isSaving);

    Clock &m_clock;
    int m_activeSaves = 0;
    bool m_isSaving = false;
    /** Grows with each save: a delayed step of an older one finds that it has been cancelled. */
    quint64 m_generation = 0;
};

} // namespace vantrel
