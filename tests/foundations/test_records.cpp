#include "foundations/BaseWorkItem.h"
#include "foundations/Color.h"
#include "foundations/Column.h"
#include "foundations/OmniFocusTask.h"
#include "foundations/PlainTextWorkItem.h"
#include "foundations/ReminderWorkItem.h"
#include "foundations/TaskTransferable.h"
#include "support/TestRegistry.h"

#include <QSet>
#include <QTest>

namespace vantrel::test {

using namespace Qt::StringLiterals;

/** The rules of tasks, columns, colours and ids. */
class TestRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsColors_data();
    void readsColors();
    void writesColors();
    void readsUuidsInOneFormOnly_data();
    void readsUuidsInOneFormOnly();
    void tellsTheSourceFromTheId_data();
    void tellsTheSourceFromTheId();
    void makesDefaultColumns();
    void generatesStableIds_data();
    void generatesStableIds();
    void knowsRawValuesOnly();
    void ordersTheReasonsOfAStatus_data();
    void ordersTheReasonsOfAStatus();
    void measuresLeadTime_data();
    void measuresLeadTime();
    void agesFromTheNextFullDay_data();
    void agesFromTheNextFullDay();
    void tellsOfChangedPropertiesOnly();
    void comparesWhatAViewShowsOfABlock();
    void describesRepetition_data();
    void describesRepetition();
    void namesHashtagsOnce_data();
    void namesHashtagsOnce();
    void linksIntoTheSourceApplication();
    void identifiesReminders();
    void carriesADraggedCard();
};

void TestRecords::readsColors_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QList<int>>("channels");
    const QList<int> white{255, 255, 255, 255};
    const QList<int> black{0, 0, 0, 255};
    QTest::newRow("three digits") << u"#FFF"_s << white;
    QTest::newRow("lower case, no mark") << u"fff"_s << white;
    QTest::newRow("digits are doubled") << u"#1a8"_s << QList<int>{0x11, 0xaa, 0x88, 255};
    QTest::newRow("six digits") << u" #FF8000; "_s << QList<int>{255, 128, 0, 255};
    QTest::newRow("alpha first") << u"80102030"_s << QList<int>{16, 32, 48, 128};
    QTest::newRow("empty") << u""_s << black;
    QTest::newRow("four digits") << u"#FFFF"_s << black;
    QTest::newRow("five digits") << u"#FFFFF"_s << black;
    QTest::newRow("nine digits") << u"FFFFFFFFF"_s << black;
    QTest::newRow("not hexadecimal") << u"zzzzzz"_s << black;
    QTest::newRow("only its beginning hexadecimal") << u"fzzzzz"_s << QList<int>{0, 0, 15, 255};
    QTest::newRow("nothing but marks") << u"###"_s << black;
}

void TestRecords::readsColors()
{
    QFETCH(QString, text);
    QFETCH(QList<int>, channels);
    const Color color = colorFromHex(text);
    QCOMPARE((QList<int>{color.red, color.green, color.blue, color.alpha}), channels);
}

void TestRecords::writesColors()
{
    QCOMPARE(hexText({0, 171, 5, 17}), u"#00AB05"_s);
    QCOMPARE(hexText({300, -4, 255, 255}), u"#FF00FF"_s);
}

void TestRecords::readsUuidsInOneFormOnly_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isGood");
    QTest::newRow("upper case") << u"0123456F-89AB-CDEF-0123-456789ABCDEF"_s << true;
    QTest::newRow("lower case") << u"0123456f-89ab-cdef-0123-456789abcdef"_s << true;
    QTest::newRow("braces") << u"{0123456F-89AB-CDEF-0123-456789ABCDEF}"_s << false;
    QTest::newRow("a blank behind") << u"0123456F-89AB-CDEF-0123-456789ABCDEF "_s << false;
    QTest::newRow("a digit short") << u"0123456F-89AB-CDEF-0123-456789ABCDE"_s << false;
    QTest::newRow("no hyphens") << u"0123456F89ABCDEF0123456789ABCDEF"_s << false;
    QTest::newRow("another digit") << u"0123456G-89AB-CDEF-0123-456789ABCDEF"_s << false;
    QTest::newRow("digits of another script") << u"٠123456F-89AB-CDEF-0123-456789ABCDEF"_s << false;
    QTest::newRow("empty") << u""_s << false;
}

void TestRecords::readsUuidsInOneFormOnly()
{
    QFETCH(QString, text);
    const std::optional<ColumnId> id = ColumnId::fromText(text);
    QTEST(id.has_value(), "isGood");
    QVERIFY(!id || id->text() == text.toUpper());
}

void TestRecords::tellsTheSourceFromTheId_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<int>("source");
    QTest::newRow("plain text") << u"plaintext-1"_s << static_cast<int>(TaskSource::PlainText);
    QTest::newRow("reminder") << u"reminder_x"_s << static_cast<int>(TaskSource::Reminders);
    QTest::newRow("mock") << u"task-1"_s << static_cast<int>(TaskSource::Mock);
    QTest::newRow("OmniFocus") << u"h8_Plaintext-1"_s << static_cast<int>(TaskSource::OmniFocus);
    QTest::newRow("another case") << u"Reminder_x"_s << static_cast<int>(TaskSource::OmniFocus);
}

void TestRecords::tellsTheSourceFromTheId()
{
    QFETCH(QString, id);
    QTEST(static_cast<int>(sourceOf(id)), "source");
}

void TestRecords::makesDefaultColumns()
{
    const std::vector<Column> first = Column::defaultColumns();
    const std::vector<Column> second = Column::defaultColumns();
    QCOMPARE(first.size(), 3u);
    QSet<ColumnId> ids;
    for (std::size_t i = 0; i < first.size(); ++i) {
        ids << first[i].id << second[i].id;
        QCOMPARE(first[i].stableId, second[i].stableId);
        QCOMPARE(first[i].position, static_cast<int>(i));
        QCOMPARE(first[i].wipLimitType, WIPLimitType::Swimlane);
    }
    QCOMPARE(ids.size(), 6);
    QCOMPARE(first[1].wipLimit, std::optional(5));
    QVERIFY(first[2].isCompleted() && !first[1].isCompleted());
}

void TestRecords::generatesStableIds_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("stableId");
    QTest::newRow("queue") << 0 << u"To Do"_s << u"default_queue"_s;
    QTest::newRow("active") << 1 << u"Doing"_s << u"default_active"_s;
    QTest::newRow("completed") << 2 << u"Done"_s << u"default_completed"_s;
    // The numbers are FNV-1a, 64 bit, as signed decimals.
    QTest::newRow("another case") << 2 << u"done"_s << u"completed_-2570997490807640431_3"_s;
    QTest::newRow("a default name of another type") << 1 << u"Done"_s << u"active_250508826766915953_3"_s;
    QTest::newRow("empty") << 0 << u""_s << u"queue_-3750763034362895579_3"_s;
}

void TestRecords::generatesStableIds()
{
    QFETCH(int, type);
    QFETCH(QString, name);
    QTEST(generateStableId(static_cast<ColumnType>(type), name, 3), "stableId");
}

void TestRecords::knowsRawValuesOnly()
{
    for (const EisenhowerPriority priority : AllEisenhowerPriorities) {
        QVERIFY(eisenhowerPriorityFromRawValue(rawValue(priority)) == priority);
        QVERIFY(!eisenhowerPriorityFromRawValue(displayName(priority)));
    }
    QVERIFY(!columnTypeFromRawValue(u"queue") && columnTypeFromRawValue(u"Queue"));
    QVERIFY(!wipLimitTypeFromRawValue(u"") && wipLimitTypeFromRawValue(u"Column"));
}

void TestRecords::ordersTheReasonsOfAStatus_data()
{
    QTest::addColumn<double>("due");
    QTest::addColumn<double>("defer");
    QTest::addColumn<bool>("isBlocked");
    QTest::addColumn<bool>("isComplete");
    QTest::addColumn<int>("status");
    const auto row = [](const char *name, double due, double defer, bool blocked, bool complete,
                        Status status) {
        QTest::newRow(name) << due << defer << blocked << complete << static_cast<int>(status);
    };
    row("nothing special", 1, -1, false, false, Status::Active);
    row("overdue and blocked", -1, 1, true, false, Status::Overdue);
    row("due this moment", 0, -1, false, false, Status::Active);
    row("past its date and complete", -1, -1, false, true, Status::Completed);
    row("blocked and complete", 1, 1, true, true, Status::Blocked);
    row("complete and deferred", 1, 1, false, true, Status::Completed);
    row("deferred", 1, 1, false, false, Status::Deferred);
    row("deferred until this moment", 1, 0, false, false, Status::Active);
}

void TestRecords::ordersTheReasonsOfAStatus()
{
    QFETCH(double, due);
    QFETCH(double, defer);
    QFETCH(bool, isBlocked);
    QFETCH(bool, isComplete);
    const Date now(1000.0);
    WorkItemFields fields;
    fields.dueDate = now + due;
    fields.deferDate = now + defer;
    fields.isBlocked = isBlocked;
    fields.isComplete = isComplete;
    QTEST(static_cast<int>(OmniFocusTask(fields).status(now)), "status");
}

void TestRecords::measuresLeadTime_data()
{
    QTest::addColumn<std::optional<Date>>("defer");
    QTest::addColumn<std::optional<Date>>("completion");
    QTest::addColumn<std::optional<double>>("leadTime");
    using Moment = std::optional<Date>;
    using Seconds = std::optional<double>;
    QTest::newRow("open") << Moment(Date(150.0)) << Moment() << Seconds();
    QTest::newRow("from its creation") << Moment() << Moment(Date(300.0)) << Seconds(200.0);
    QTest::newRow("from its defer date") << Moment(Date(150.0)) << Moment(Date(300.0)) << Seconds(150.0);
    QTest::newRow("deferred before it was made")
        << Moment(Date(50.0)) << Moment(Date(300.0)) << Seconds(200.0);
    QTest::newRow("completed before it could begin")
        << Moment(Date(400.0)) << Moment(Date(300.0)) << Seconds(-100.0);
}

void TestRecords::measuresLeadTime()
{
    QFETCH(std::optional<Date>, defer);
    QFETCH(std::optional<Date>, completion);
    WorkItemFields fields;
    fields.creationDate = Date(100.0);
    fields.deferDate = defer;
    fields.completionDate = completion;
    QTEST(OmniFocusTask(fields).leadTime(), "leadTime");
}

void TestRecords::agesFromTheNextFullDay_data()
{
    QTest::addColumn<double>("days");
    QTest::addColumn<bool>("isAging");
    QTest::newRow("7 days") << 7.0 << false;
    QTest::newRow("almost 8 days") << 7.9999 << false;
    QTest::newRow("8 days") << 8.0 << true;
    QTest::newRow("made tomorrow") << -1.0 << false;
}

void TestRecords::agesFromTheNextFullDay()
{
    QFETCH(double, days);
    QTEST(OmniFocusTask({}).isAging(Date(days * SecondsPerDay), 7), "isAging");
}

void TestRecords::tellsOfChangedPropertiesOnly()
{
    WorkItemFields fields;
    fields.id = u"a"_s;
    fields.name = u"one"_s;
    OmniFocusTask item(fields);
    QList<WorkItem::Property> changes;
    QObject::connect(&item, &WorkItem::changed, &item,
                     [&changes](WorkItem::Property property) { changes.append(property); });
    item.update(fields);
    fields.id = u"b"_s;
    fields.name = u"two"_s;
    fields.isFlagged = true;
    item.update(fields);
    item.setNote(std::nullopt);
    item.setNote(u""_s);
    QCOMPARE(changes,
             (QList{WorkItem::Property::Name, WorkItem::Property::IsFlagged, WorkItem::Property::Note}));
    QCOMPARE(item.id(), u"a"_s);
}

void TestRecords::comparesWhatAViewShowsOfABlock()
{
    WorkItemFields fields;
    fields.id = u"a"_s;
    WorkItemFields renamed = fields;
    renamed.name = u"other"_s;
    WorkItemFields blocked = fields;
    blocked.isBlocked = true;
    WorkItemFields explained = blocked;
    explained.blockReason = u""_s;
    const OmniFocusTask item(fields);
    QVERIFY(item.isEquivalentTo(OmniFocusTask(renamed)));
    QVERIFY(!item.isEquivalentTo(OmniFocusTask(blocked)));
    QVERIFY(!OmniFocusTask(blocked).isEquivalentTo(OmniFocusTask(explained)));
    QVERIFY(!item.isEquivalentTo(BaseWorkItem(fields)));
}

void TestRecords::describesRepetition_data()
{
    QTest::addColumn<int>("frequency");
    QTest::addColumn<int>("interval");
    QTest::addColumn<QString>("text");
    QTest::newRow("daily") << 0 << 1 << u"Repeats every day"_s;
    QTest::newRow("every 3 weeks") << 1 << 3 << u"Repeats every 3 weeks"_s;
    QTest::newRow("every 0 months") << 2 << 0 << u"Repeats every 0 months"_s;
    QTest::newRow("custom") << 4 << 3 << u"Repeats with custom pattern"_s;
}

void TestRecords::describesRepetition()
{
    QFETCH(int, frequency);
    QFETCH(int, interval);
    QTEST(detailedDescription(static_cast<RepeatFrequency>(frequency), interval), "text");
}

void TestRecords::namesHashtagsOnce_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("hashtags");
    QTest::addColumn<QString>("line");
    QTest::newRow("none") << u"Call"_s << QStringList{} << u"- [ ] Call"_s;
    QTest::newRow("not in the name") << u"Call"_s << QStringList{u"a"_s, u"b"_s} << u"- [ ] Call #a #b"_s;
    QTest::newRow("one in the name") << u"Call #a now"_s << QStringList{u"a"_s, u"b"_s}
                                     << u"- [ ] Call #a now #b"_s;
    QTest::newRow("with marks") << u"Buy #mu\u0308sli"_s << QStringList{u"mu\u0308sli"_s, u"m"_s}
                                << u"- [ ] Buy #mu\u0308sli #m"_s;
    QTest::newRow("part of a longer one") << u"#work2"_s << QStringList{u"work"_s} << u"- [ ] #work2 #work"_s;
}

void TestRecords::namesHashtagsOnce()
{
    QFETCH(QString, name);
    QFETCH(QStringList, hashtags);
    PlainTextRecord record;
    record.fields.name = name;
    record.hashtags = hashtags;
    PlainTextWorkItem item(record);
    QTEST(item.formattedText(), "line");
    item.setComplete(true);
    QVERIFY(item.formattedText().startsWith(u"- [x] "));
}

void TestRecords::linksIntoTheSourceApplication()
{
    WorkItemFields fields;
    fields.id = u"hG7.x"_s;
    QCOMPARE(OmniFocusTask(fields).appSpecificLink().toString(), u"omnifocus:///task/hG7.x"_s);
    QCOMPARE(ReminderWorkItem(fields, {}).appSpecificLink().toString(), u"x-apple-reminderkit://"_s);
    QVERIFY(BaseWorkItem(fields).appSpecificLink().isEmpty());
    QCOMPARE(BaseWorkItem(fields).sourceIdentifier(), u"generic"_s);
}

void TestRecords::identifiesReminders()
{
    const Date now(1.5);
    QCOMPARE(ReminderWorkItem::idFor(u"ABC"_s, {}, {}, now), u"reminder_ABC"_s);
    const QString first = ReminderWorkItem::idFor({}, u"name"_s, u"list"_s, now);
    static const QRegularExpression digits(u"^reminder_[0-9]+$"_s);
    QVERIFY2(digits.match(first).hasMatch(), qPrintable(first));
    QVERIFY(first != ReminderWorkItem::idFor({}, u"name"_s, u"list"_s, now + 1.0));
}

void TestRecords::carriesADraggedCard()
{
    const TaskTransferable card{u"ä\""_s, ColumnId::create(), std::nullopt};
    QCOMPARE(TaskTransferable::fromJson(card.toJson()), std::optional(card));
    QVERIFY(!TaskTransferable::fromJson("{}") && !TaskTransferable::fromJson("x"));
    const TaskTransferable text = TaskTransferable::fromText("id\xFF");
    QCOMPARE(text.id, u"id\uFFFD"_s);
    QVERIFY(!text.sourceColumnId && !text.sourceSwimLaneId);
}

VANTREL_REGISTER_TEST(TestRecords)

} // namespace vantrel::test

#include "test_records.moc"
