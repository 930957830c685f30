#pragma once

#include "foundations/TaskHelper.h"
#include "foundations/WorkItem.h"

#include <QList>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace vantrel {

/** The parts of a card that take the keyboard focus, and the names by which QML knows them. */
namespace KanbanCardFocus {
Q_NAMESPACE
QML_ELEMENT

enum Value { Name, NoteIcon, Icon, Blocked, Project, Tag, Recurring, DueDate, Age, None };
Q_ENUM_NS(Value)

} // namespace KanbanCardFocus

/** What a part of a card means; decides its colours. From Tag on, on a tinted ground. */
namespace CardTone {
Q_NAMESPACE
QML_ELEMENT

enum Value { Plain, Quiet, Flag, Alarm, Aging, Tag, Later, Soon, Overdue, Done };
Q_ENUM_NS(Value)

} // namespace CardTone

/** One part of the last rows of a card: a symbol, a text, or both. */
struct CardPartContent
{
    Q_GADGET
    QML_VALUE_TYPE(cardPartContent)
    Q_PROPERTY(vantrel::KanbanCardFocus::Value kind MEMBER kind CONSTANT)
    Q_PROPERTY(vantrel::CardTone::Value tone MEMBER tone CONSTANT)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QString text MEMBER text CONSTANT)
    Q_PROPERTY(QString tip MEMBER tip CONSTANT)

public:
    /** None for a part that the keyboard does not stop at. */
    KanbanCardFocus::Value kind = KanbanCardFocus::None;
    CardTone::Value tone = CardTone::Quiet;
    QString symbol;
    QString text;
    /** What the pointer is told when it rests here. */
    QString tip;

    friend bool operator==(const CardPartContent &, const CardPartContent &) = default;
};

/** What beside the task decides about its card. */
struct CardRules
{
    const TaskHelper &helper;
    Date now;
    /** Whole days after which an open task is aging. */
    int workAgeWarningDays = 7;
    bool showProjectInfo = true;
    bool showFlaggedEffects = true;
};

/** Everything a card shows of its task, in words and symbol names ready to draw. A value. */
struct CardContent
{
    Q_GADGET
    QML_VALUE_TYPE(cardContent)
    Q_PROPERTY(QString id MEMBER id CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString project MEMBER project CONSTANT)
    Q_PROPERTY(QVariantList parts READ partList CONSTANT)
    Q_PROPERTY(QString ageText MEMBER ageText CONSTANT)
    Q_PROPERTY(QString ageDescription MEMBER ageDescription CONSTANT)
    Q_PROPERTY(bool isAging MEMBER isAging CONSTANT)
    Q_PROPERTY(bool isBlocked MEMBER isBlocked CONSTANT)
    Q_PROPERTY(bool isComplete MEMBER isComplete CONSTANT)
    Q_PROPERTY(bool hasFlagStripe MEMBER hasFlagStripe CONSTANT)
    Q_PROPERTY(QString accessibleDescription MEMBER accessibleDescription CONSTANT)

public:
    QString id;
    QString title;
    /** Empty where the task has none, or projects are hidden. */
    QString project;
    /** With its "#". */
    QString tag;
    QString note;
    QString sourceIcon;
    QString sourceText;
    /** Of a reminder with a priority, else empty. */
    QString priorityIcon;
    QString priorityText;
    /** Of a task that repeats, else empty. */
    QString recurrenceIcon;
    QString recurrenceText;
    /** The reason, or that there is a block; empty while not blocked. */
    QString blockedText;
    QString dueText;
    QString dueDescription;
    CardTone::Value dueTone = CardTone::Plain;
    QString ageText;
    QString ageDescription;
    bool isAging = false;
    bool isBlocked = false;
    bool isComplete = false;
    bool isFlagged = false;
    bool hasFlagStripe = false;
    QString accessibleDescription;
    /** The symbols and chips below the title in their order; the age is not among them. */
    QList<CardPartContent> parts;

    QVariantList partList() const;

    friend bool operator==(const CardContent &, const CardContent &) = default;
};

CardContent cardContent(const WorkItem &task, const CardRules &rules);

/** The parts of the card that are there, in the order in which Tab walks them. */
QList<KanbanCardFocus::Value> visibleComponents(const CardContent &card);

/** What a screen reader calls the part. */
QString accessibilityName(KanbanCardFocus::Value component);

/** The two largest units of a length of time in words: "2 days and 3 hours". Negative counts as none. */
QString formatTimeInterval(double seconds);

} // namespace vantrel
