#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace vantrel {

/** Whose habits the program follows: its keys, and where its user grants permissions. */
enum class DesktopFamily { Linux, Mac };

/** The desktop's clipboard. A port. */
class Clipboard
{
public:
    Clipboard() = default;
    virtual ~Clipboard() = default;
    Q_DISABLE_COPY_MOVE(Clipboard)

    /** Replaces the content; false if the desktop did not take it. */
    virtual bool setText(const QString &text) = 0;
    virtual QString text() const = 0;
};

/** Opens a link in whatever program answers it. A port. */
class UrlOpener
{
public:
    UrlOpener() = default;
    virtual ~UrlOpener() = default;
    Q_DISABLE_COPY_MOVE(UrlOpener)

    virtual bool open(const QUrl &url) = 0;
};

/** What the program needs to know of the screen. A port. */
class Screen
{
public:
    Screen() = default;
    virtual ~Screen() = default;
    Q_DISABLE_COPY_MOVE(Screen)

    /** Height of the main screen in points; nothing where there is none. */
    virtual std::optional<double> height() const = 0;
};

} // namespace vantrel
