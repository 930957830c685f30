#pragma once

#include "feedback/Announcer.h"
#include "feedback/DesktopAppearance.h"
#include "feedback/DesktopPorts.h"
#include "feedback/SoundManager.h"

#include <vector>

namespace vantrel::test {

/** Keeps what a screen reader would have been told. */
class RecordingAnnouncementSink final : public AnnouncementSink
{
public:
    struct Announcement
    {
        QString text;
        AnnouncementPriority priority;
    };

    void announce(const QString &text, AnnouncementPriority priority) override
    {
        announcements.push_back({text, priority});
    }

    std::vector<Announcement> announcements;
};

/** Keeps what would have been heard. */
class RecordingSoundPlayer final : public SoundPlayer
{
public:
    void prepare() override { isPrepared = true; }
    void play(Sound sound) override { played.push_back(sound); }

    bool isPrepared = false;
    std::vector<Sound> played;
};

/** A clipboard of the test's own, which can refuse. */
class FakeClipboard final : public Clipboard
{
public:
    bool setText(const QString &text) override
    {
        if (!refuses) {
            content = text;
        }
        return !refuses;
    }
    QString text() const override { return content; }

    QString content;
    bool refuses = false;
};

class FakeUrlOpener final : public UrlOpener
{
public:
    bool open(const QUrl &url) override
    {
        opened.push_back(url);
        return succeeds;
    }

    std::vector<QUrl> opened;
    bool succeeds = true;
};

class FakeScreen final : public Screen
{
public:
    std::optional<double> height() const override { return value; }

    std::optional<double> value = 1080.0;
};

class FakeAppearance final : public DesktopAppearance
{
public:
    ColorScheme colorScheme() const override { return m_scheme; }
    bool prefersReducedMotion() const override { return m_prefersReducedMotion; }

    void setColorScheme(ColorScheme scheme)
    {
        m_scheme = scheme;
        Q_EMIT changed();
    }
    void setPrefersReducedMotion(bool prefers)
    {
        m_prefersReducedMotion = prefers;
        Q_EMIT changed();
    }

private:
    ColorScheme m_scheme = ColorScheme::Light;
    bool m_prefersReducedMotion = false;
};

/** A desktop that no user sees: one fake for each port. */
struct FakeDesktop
{
    RecordingAnnouncementSink announcements;
    RecordingSoundPlayer sounds;
    FakeAppearance appearance;
    FakeClipboard clipboard;
    FakeUrlOpener urls;
    FakeScreen screen;
};

} // namespace vantrel::test
