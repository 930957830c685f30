#include "feedback/ToastManager.h"

#include <array>

namespace vantrel {

namespace {

constexpr double DismissalAnnouncementDelay = 0.1;

struct StyleTexts
{
    QStringView symbol;
    QStringView spokenPrefix;
    QStringView labelPrefix;
};

constexpr std::array<StyleTexts, 4> Styles{{
    {u"info.circle", u"Info: ", u"Information notification: "},
    {u"checkmark.circle", u"Success: ", u"Success notification: "},
    {u"exclamationmark.triangle", u"Warning: ", u"Warning notification: "},
    {u"xmark.circle", u"Alert: ", u"Error notification: "},
}};

const StyleTexts &textsOf(ToastManager::ToastStyle style)
{
    return Styles.at(static_cast<std::size_t>(style));
}

} // namespace

ToastManager::ToastManager(Announcer &announcer, Clock &clock, QObject *parent)
    : QObject(parent), m_announcer(announcer), m_clock(clock)
{
}

void ToastManager::show(const QString &message, ToastStyle style, const Options &options)
{
    m_message = message;
    m_style = style;
    m_isShowing = true;
    const int generation = ++m_generation;
    Q_EMIT changed();

    if (options.announceToVoiceOver) {
        m_announcer.announce(textsOf(style).spokenPrefix + message, options.accessibilityPriority);
    }
    if (options.isPermanent) {
        return;
    }
    const bool saysDismissal = options.announceToVoiceOver && options.announceDismissal;
    m_clock.after(options.duration, this, [this, generation, saysDismissal] {
        if (generation != m_generation || !m_isShowing) {
            return;
        }
        hide();
        if (saysDismissal) {
            m_announcer.announceAfter(DismissalAnnouncementDelay, tr("Notification dismissed"));
        }
    });
}

void ToastManager::dismiss()
{
    if (m_isShowing) {
        hide();
        m_announcer.announce(tr("Notification dismissed"));
    }
}

QString ToastManager::symbol(ToastStyle style)
{
    return textsOf(style).symbol.toString();
}

QString ToastManager::labelPrefix(ToastStyle style)
{
    return textsOf(style).labelPrefix.toString();
}

void ToastManager::hide()
{
    m_isShowing = false;
    Q_EMIT changed();
}

} // namespace vantrel
