#include "foundations/BaseWorkItem.h"
#include "foundations/OmniFocusTask.h"
#include "foundations/ReminderWorkItem.h"
#include "support/TestRegistry.h"
#include "viewmodels/CardContent.h"
#include "viewmodels/KanbanCardKeyboardNavigation.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

/** Two days ahead until 17:00. */
struct TwoDaysAhead final : DateSettingsProvider
{
    int dueSoonDays() const override { return 2; }
    QString dueSoonTime() const override { return u"17:00:00"_s; }
};

const TwoDaysAhead Settings;
const TaskHelper Helper(Settings, QLocale(QLocale::English, QLocale::UnitedKingdom));

Date at(int day, int hour)
{
    return Date::fromDateTime(QDateTime(QDate(2026, 11, day), QTime(hour, 0)));
}

/** As seen on 19 November 2026 at 10:00. */
CardRules rules()
{
    return {Helper, at(19, 10)};
}

WorkItemFields fields(const QString &id = u"plaintext-1"_s)
{
    WorkItemFields fields;
    fields.id = id;
    fields.name = u"Task"_s;
    fields.creationDate = at(19, 9);
    return fields;
}

CardContent cardOf(const WorkItemFields &fields, const CardRules &given = rules())
{
    return cardContent(BaseWorkItem(fields), given);
}

} // namespace

/** What a card shows of its task. */
class TestCardContent : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDueDateHasItsUrgency()
    {
        struct Row
        {
            int day, hour;
            bool isComplete;
            CardTone::Value state;
            QString text;
        };
        for (const Row &row : {Row{18, 12, false, CardTone::Overdue, u"18/11/2026"_s},
                               Row{19, 8, false, CardTone::Overdue, u"08:00"_s},
                               Row{19, 17, false, CardTone::Soon, u"17:00"_s},
                               Row{21, 17, false, CardTone::Soon, u"21/11/2026"_s},
                               Row{21, 18, false, CardTone::Later, u"21/11/2026"_s},
                               Row{18, 12, true, CardTone::Done, u"18/11/2026"_s}}) {
            WorkItemFields task = fields();
            task.dueDate = at(row.day, row.hour);
            task.isComplete = row.isComplete;
            QCOMPARE(cardOf(task).dueTone, row.state);
            QCOMPARE(cardOf(task).dueText, row.text);
        }
    }

    void aTaskAges()
    {
        struct Row
        {
            double days;
            bool isComplete;
            QString text;
            bool isAging;
        };
        for (const Row &row : {Row{0.5, false, u"Today"_s, false}, Row{7.9, false, u"7 days"_s, false},
                               Row{8.0, false, u"8 days"_s, true}, Row{30.0, true, u"30 days"_s, false}}) {
            WorkItemFields task = fields();
            task.creationDate = rules().now - row.days * SecondsPerDay;
            task.isComplete = row.isComplete;
            QCOMPARE(cardOf(task).ageText, row.text);
            QCOMPARE(cardOf(task).isAging, row.isAging);
        }
    }

    void aBlockNamesItsReason()
    {
        WorkItemFields task = fields();
        task.blockReason = u"Waiting for response"_s;
        QCOMPARE(cardOf(task).blockedText, QString());

        task.isBlocked = true;
        QCOMPARE(cardOf(task).blockedText, u"Waiting for response"_s);
        QVERIFY(cardOf(task).accessibleDescription.contains(u"Blocked: Waiting for response"));

        task.blockReason = u""_s;
        QCOMPARE(cardOf(task).blockedText, u"Blocked"_s);
        QVERIFY(cardOf(task).accessibleDescription.contains(u"Blocked task"));
    }

    void thePreferencesHideProjectAndStripe()
    {
        WorkItemFields task = fields();
        task.project = Project{u"p"_s, u"Family"_s};
        task.isFlagged = true;
        CardRules hiding = rules();
        hiding.showProjectInfo = false;
        hiding.showFlaggedEffects = false;

        QCOMPARE(cardOf(task).project, u"Family"_s);
        QVERIFY(cardOf(task).hasFlagStripe);
        QCOMPARE(cardOf(task, hiding).project, QString());
        QVERIFY(!cardOf(task, hiding).hasFlagStripe);
        QVERIFY(cardOf(task, hiding).isFlagged);
    }

    void theSourceIsRecognised()
    {
        QCOMPARE(cardContent(OmniFocusTask(fields(u"abc"_s)), rules()).sourceText, u"OmniFocus Task"_s);
        QCOMPARE(cardContent(ReminderWorkItem(fields(u"reminder_1"_s), {}), rules()).sourceText,
                 u"Reminder Task"_s);
        QCOMPARE(cardOf(fields()).sourceText, u"Plain Text Task"_s);
        QCOMPARE(cardOf(fields(u"task-1"_s)).sourceText, u"Unknown Source"_s);
    }

    void aReminderShowsItsPriority()
    {
        for (const auto &[priority, marks] : {std::pair(0, u""_s),
                                              {1, u"exclamationmark.3"_s},
                                              {4, u"exclamationmark.3"_s},
                                              {5, u"exclamationmark.2"_s},
                                              {9, u"exclamationmark"_s},
                                              {10, u""_s}}) {
            const ReminderWorkItem item(fields(u"reminder_1"_s), {priority, {}, {}});
            QCOMPARE(cardContent(item, rules()).priorityIcon, marks);
        }
    }

    void onlyThePartsOfTheTaskAreThereInTheirOrder()
    {
        QCOMPARE(cardOf(fields()).parts.size(), 1); // what it comes from

        WorkItemFields task = fields();
        task.note = u"Ask Dana"_s;
        task.isFlagged = true;
        task.isBlocked = true;
        task.tag = Tag{u"t"_s, u"Home"_s};
        task.dueDate = at(18, 12);
        QStringList shown;
        for (const CardPartContent &part : cardOf(task).parts) {
            shown.append(part.symbol + u'|' + part.text);
        }
        QCOMPARE(shown,
                 (QStringList{u"doc.text|"_s, u"note|"_s, u"flag|"_s, u"exclamationmark.triangle|Blocked"_s,
                              u"|#Home"_s, u"calendar.badge.clock|18/11/2026"_s}));
        QCOMPARE(cardOf(task).parts.last().tone, CardTone::Overdue);
    }

    void theDescriptionLeavesNothingOut()
    {
        WorkItemFields task = fields();
        task.isFlagged = true;
        task.note = u"Note"_s;
        task.tag = Tag{u"t"_s, u"Write"_s};
        task.dueDate = at(18, 12);
        task.creationDate = rules().now - 9 * SecondsPerDay - 3 * 3600;
        OmniFocusTask item(task);
        item.setRecurrenceInfo(true, RepeatFrequency::Weekly, 2, {});
        QCOMPARE(
            cardContent(item, rules()).accessibleDescription,
            u"OmniFocus Task. Flagged. Aging task. Task has a note. #Write. Recurring task every 2 weeks. "
            "Due 18/11/2026, 12:00. Task is overdue. Task was created 9 days and 3 hours ago"_s);
    }

    void theWalkGoesOverWhatIsThere()
    {
        using namespace KanbanCardFocus;
        WorkItemFields task = fields();
        QCOMPARE(visibleComponents(cardOf(task)), (QList<Value>{Name, Icon, Age}));

        task.note = u"Note"_s;
        task.isBlocked = true;
        task.project = vantrel::Project{u"p"_s, u"Family"_s};
        task.tag = vantrel::Tag{u"t"_s, u"Write"_s};
        task.dueDate = at(18, 12);
        QCOMPARE(visibleComponents(cardOf(task)),
                 (QList<Value>{Name, NoteIcon, Icon, Blocked, KanbanCardFocus::Project, KanbanCardFocus::Tag,
                               DueDate, Age}));
    }

    void aPartThatVanishesGivesItsTurnToTheNext()
    {
        using namespace KanbanCardFocus;
        KanbanCardKeyboardNavigation card;
        card.initializeCachedComponents({Name, NoteIcon, Icon, Age});
        QVERIFY(card.handleComponentNavigation(false));
        QVERIFY(card.handleComponentNavigation(false));
        QCOMPARE(card.focusedComponent(), NoteIcon);

        card.updateCachedComponents({Name, Icon, Age});
        QCOMPARE(card.focusedComponent(), Icon);
        QVERIFY(card.handleComponentNavigation(true));
        QVERIFY(!card.handleComponentNavigation(true));
        QCOMPARE(card.focusedComponent(), Name);
    }

    void aLengthOfTimeIsWorded()
    {
        for (const auto &[seconds, words] : {std::pair(0.4, u"0 seconds"_s),
                                             {-90.0, u"0 seconds"_s},
                                             {61.0, u"1 minute and 1 second"_s},
                                             {93784.0, u"1 day and 2 hours"_s},
                                             {7200.0, u"2 hours"_s}}) {
            QCOMPARE(formatTimeInterval(seconds), words);
        }
    }
};

VANTREL_REGISTER_TEST(TestCardContent)

} // namespace vantrel::test

#include "test_card_content.moc"
