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
    void aDueDateHasItsUrgency_data();
    void aDueDateHasItsUrgency();
    void aTaskAges_data();
    void aTaskAges();
    void aBlockNamesItsReason();
    void thePreferencesHideProjectAndStripe();
    void theSourceIsRecognised();
    void aReminderShowsItsPriority();
    void theDescriptionLeavesNothingOut();
    void theWalkGoesOverWhatIsThere();
    void aPartThatVanishesGivesItsTurnToTheNext();
    void aLengthOfTimeIsWorded_data();
    void aLengthOfTimeIsWorded();
};

void TestCardContent::aDueDateHasItsUrgency_data()
{
    QTest::addColumn<int>("day");
    QTest::addColumn<int>("hour");
    QTest::addColumn<bool>("isComplete");
    QTest::addColumn<DueState::Value>("state");
    QTest::addColumn<QString>("text");

    QTest::newRow("passed") << 18 << 12 << false << DueState::Overdue << "18/11/2026";
    QTest::newRow("passed today") << 19 << 8 << false << DueState::Overdue << "08:00";
    QTest::newRow("later today") << 19 << 17 << false << DueState::Soon << "17:00";
    QTest::newRow("last day in time") << 21 << 17 << false << DueState::Soon << "21/11/2026";
    QTest::newRow("last day too late") << 21 << 18 << false << DueState::Later << "21/11/2026";
    QTest::newRow("done, though late") << 18 << 12 << true << DueState::Completed << "18/11/2026";
}

void TestCardContent::aDueDateHasItsUrgency()
{
    QFETCH(int, day);
    QFETCH(int, hour);
    WorkItemFields task = fields();
    task.dueDate = at(day, hour);
    QFETCH(bool, isComplete);
    task.isComplete = isComplete;
    const CardContent card = cardOf(task);
    QTEST(card.dueState, "state");
    QTEST(card.dueText, "text");
}

void TestCardContent::aTaskAges_data()
{
    QTest::addColumn<double>("days");
    QTest::addColumn<bool>("isComplete");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isAging");

    QTest::newRow("new") << 0.5 << false << "Today" << false;
    QTest::newRow("at the limit") << 7.9 << false << "7 days" << false;
    QTest::newRow("past it") << 8.0 << false << "8 days" << true;
    QTest::newRow("done") << 30.0 << true << "30 days" << false;
}

void TestCardContent::aTaskAges()
{
    QFETCH(double, days);
    QFETCH(bool, isComplete);
    WorkItemFields task = fields();
    task.creationDate = rules().now - days * SecondsPerDay;
    task.isComplete = isComplete;
    const CardContent card = cardOf(task);
    QTEST(card.ageText, "text");
    QTEST(card.isAging, "isAging");
}

void TestCardContent::aBlockNamesItsReason()
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

void TestCardContent::thePreferencesHideProjectAndStripe()
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

void TestCardContent::theSourceIsRecognised()
{
    QCOMPARE(cardContent(OmniFocusTask(fields(u"abc"_s)), rules()).sourceText, u"OmniFocus Task"_s);
    QCOMPARE(cardContent(ReminderWorkItem(fields(u"reminder_1"_s), {}), rules()).sourceText,
             u"Reminder Task"_s);
    QCOMPARE(cardOf(fields()).sourceText, u"Plain Text Task"_s);
    QCOMPARE(cardOf(fields(u"task-1"_s)).sourceText, u"Unknown Source"_s);
}

void TestCardContent::aReminderShowsItsPriority()
{
    const auto icon = [](int priority) {
        return cardContent(ReminderWorkItem(fields(u"reminder_1"_s), {priority, {}, {}}), rules())
            .priorityIcon;
    };
    QCOMPARE(icon(0), QString());
    QCOMPARE(icon(1), u"exclamationmark.3"_s);
    QCOMPARE(icon(4), u"exclamationmark.3"_s);
    QCOMPARE(icon(5), u"exclamationmark.2"_s);
    QCOMPARE(icon(9), u"exclamationmark"_s);
    QCOMPARE(icon(10), QString());
}

void TestCardContent::theDescriptionLeavesNothingOut()
{
    WorkItemFields task = fields();
    task.isFlagged = true;
    task.note = u"Note"_s;
    task.tag = Tag{u"t"_s, u"Write"_s};
    task.dueDate = at(18, 12);
    task.creationDate = rules().now - 9 * SecondsPerDay - 3 * 3600;
    OmniFocusTask item(task);
    item.setRecurrenceInfo(true, RepeatFrequency::Weekly, 2, {});
    QCOMPARE(cardContent(item, rules()).accessibleDescription,
             u"OmniFocus Task. Flagged. Aging task. Task has a note. #Write. Recurring task every 2 weeks. "
             "Due 18/11/2026, 12:00. Task is overdue. Task was created 9 days and 3 hours ago"_s);
}

void TestCardContent::theWalkGoesOverWhatIsThere()
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

void TestCardContent::aPartThatVanishesGivesItsTurnToTheNext()
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

void TestCardContent::aLengthOfTimeIsWorded_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("words");

    QTest::newRow("nothing") << 0.4 << "0 seconds";
    QTest::newRow("before its beginning") << -90.0 << "0 seconds";
    QTest::newRow("one of each") << 61.0 << "1 minute and 1 second";
    QTest::newRow("two units at most") << 93784.0 << "1 day and 2 hours";
    QTest::newRow("a single unit") << 7200.0 << "2 hours";
}

void TestCardContent::aLengthOfTimeIsWorded()
{
    QFETCH(double, seconds);
    QTEST(formatTimeInterval(seconds), "words");
}

VANTREL_REGISTER_TEST(TestCardContent)

} // namespace vantrel::test

#include "test_card_content.moc"
