#include "foundations/BaseWorkItem.h"
#include "foundations/Color.h"
#include "foundations/Column.h"
#include "foundations/OmniFocusTask.h"
#include "foundations/PlainTextWorkItem.h"
#include "foundations/ReminderWorkItem.h"
#include "support/TestRegistry.h"

#include <QTest>

namespace vantrel::test {

using namespace Qt::StringLiterals;

/** The rules of tasks, columns, colours and ids. */
class TestRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsColors()
    {
        const Color white{255, 255, 255, 255};
        const Color black{0, 0, 0, 255};
        for (const auto &[text, color] : {std::pair(u"#FFF"_s, white),
                                          {u"fff"_s, white},
                                          {u"#1a8"_s, {0x11, 0xaa, 0x88, 255}},
                                          {u" #FF8000; "_s, {255, 128, 0, 255}},
                                          {u"80102030"_s, {16, 32, 48, 128}}, // alpha first
                                          {u""_s, black},
                                          {u"#FFFF"_s, black},
                                          {u"#FFFFF"_s, black},
                                          {u"FFFFFFFFF"_s, black},
                                          {u"zzzzzz"_s, black},
                                          {u"fzzzzz"_s, {0, 0, 15, 255}}, // as far as it is a number
                                          {u"###"_s, black}}) {
            QVERIFY2(colorFromHex(text) == color, qPrintable(text));
        }
    }

    void writesColors()
    {
        QCOMPARE(hexText({0, 171, 5, 17}), u"#00AB05"_s);
        QCOMPARE(hexText({300, -4, 255, 255}), u"#FF00FF"_s);
    }

    void readsUuidsInOneFormOnly()
    {
        const QString good = u"0123456F-89AB-CDEF-0123-456789ABCDEF"_s;
        for (const QString &text : {good, good.toLower()}) {
            QCOMPARE(ColumnId::fromText(text).value().text(), good);
        }
        for (const QString &text :
             QStringList{u'{' + good + u'}', good + u' ', good.chopped(1), QString(good).remove(u'-'),
                         QString(good).replace(u'F', u'G'), QString(good).replace(u'0', u'٠'), QString()}) {
            QVERIFY2(!ColumnId::fromText(text), qPrintable(text));
        }
    }

    void tellsTheSourceFromTheId()
    {
        QCOMPARE(sourceOf(u"plaintext-1"), TaskSource::PlainText);
        QCOMPARE(sourceOf(u"reminder_x"), TaskSource::Reminders);
        QCOMPARE(sourceOf(u"task-1"), TaskSource::Mock);
        QCOMPARE(sourceOf(u"h8_Plaintext-1"), TaskSource::OmniFocus);
        QCOMPARE(sourceOf(u"Reminder_x"), TaskSource::OmniFocus);
    }

    void generatesStableIds()
    {
        const auto idOf = [](ColumnType type, const QString &name) {
            return generateStableId(type, name, 3);
        };
        QCOMPARE(idOf(ColumnType::Queue, u"To Do"_s), u"default_queue"_s);
        QCOMPARE(idOf(ColumnType::Active, u"Doing"_s), u"default_active"_s);
        QCOMPARE(idOf(ColumnType::Completed, u"Done"_s), u"default_completed"_s);
        // The numbers are FNV-1a, 64 bit, as signed decimals.
        QCOMPARE(idOf(ColumnType::Completed, u"done"_s), u"completed_-2570997490807640431_3"_s);
        QCOMPARE(idOf(ColumnType::Active, u"Done"_s), u"active_250508826766915953_3"_s);
        QCOMPARE(idOf(ColumnType::Queue, u""_s), u"queue_-3750763034362895579_3"_s);
    }

    void ordersTheReasonsOfAStatus()
    {
        struct Row
        {
            const char *name;
            double due, defer;
            bool isBlocked, isComplete;
            Status status;
        };
        const Date now(1000.0);
        for (const Row &row : {Row{"nothing special", 1, -1, false, false, Status::Active},
                               Row{"overdue and blocked", -1, 1, true, false, Status::Overdue},
                               Row{"due this moment", 0, -1, false, false, Status::Active},
                               Row{"past its date and complete", -1, -1, false, true, Status::Completed},
                               Row{"blocked and complete", 1, 1, true, true, Status::Blocked},
                               Row{"complete and deferred", 1, 1, false, true, Status::Completed},
                               Row{"deferred", 1, 1, false, false, Status::Deferred},
                               Row{"deferred until this moment", 1, 0, false, false, Status::Active}}) {
            WorkItemFields fields;
            fields.dueDate = now + row.due;
            fields.deferDate = now + row.defer;
            fields.isBlocked = row.isBlocked;
            fields.isComplete = row.isComplete;
            QVERIFY2(OmniFocusTask(fields).status(now) == row.status, row.name);
        }
    }

    void measuresLeadTime()
    {
        const auto leadTime = [](std::optional<Date> defer, std::optional<Date> completion) {
            WorkItemFields fields;
            fields.creationDate = Date(100.0);
            fields.deferDate = defer;
            fields.completionDate = completion;
            return OmniFocusTask(fields).leadTime();
        };
        QCOMPARE(leadTime(Date(150.0), {}), std::nullopt);
        QCOMPARE(leadTime({}, Date(300.0)), 200.0);
        QCOMPARE(leadTime(Date(150.0), Date(300.0)), 150.0);
        QCOMPARE(leadTime(Date(50.0), Date(300.0)), 200.0);   // deferred before it was made
        QCOMPARE(leadTime(Date(400.0), Date(300.0)), -100.0); // completed before it could begin
    }

    void agesFromTheNextFullDay()
    {
        for (const auto &[days, isAging] :
             {std::pair(7.0, false), {7.9999, false}, {8.0, true}, {-1.0, false}}) {
            QCOMPARE(OmniFocusTask({}).isAging(Date(days * SecondsPerDay), 7), isAging);
        }
    }

    void tellsOfChangedPropertiesOnly()
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

    void comparesWhatAViewShowsOfABlock()
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

    void describesRepetition()
    {
        QCOMPARE(detailedDescription(RepeatFrequency::Daily, 1), u"Repeats every day"_s);
        QCOMPARE(detailedDescription(RepeatFrequency::Weekly, 3), u"Repeats every 3 weeks"_s);
        QCOMPARE(detailedDescription(RepeatFrequency::Monthly, 0), u"Repeats every 0 months"_s);
        QCOMPARE(detailedDescription(RepeatFrequency::Custom, 3), u"Repeats with custom pattern"_s);
    }

    void namesHashtagsOnce()
    {
        const QString müsli = u"mu\u0308sli"_s;
        struct Row
        {
            QString name;
            QStringList hashtags;
            QString line;
        };
        for (const Row &row :
             {Row{u"Call"_s, {}, u"Call"_s}, Row{u"Call"_s, {u"a"_s, u"b"_s}, u"Call #a #b"_s},
              Row{u"Call #a now"_s, {u"a"_s, u"b"_s}, u"Call #a now #b"_s},
              Row{u"Buy #"_s + müsli, {müsli, u"m"_s}, u"Buy #"_s + müsli + u" #m"},
              Row{u"#work2"_s, {u"work"_s}, u"#work2 #work"_s}}) {
            PlainTextRecord record;
            record.fields.name = row.name;
            record.hashtags = row.hashtags;
            PlainTextWorkItem item(record);
            QCOMPARE(item.formattedText(), u"- [ ] " + row.line);
            item.setComplete(true);
            QCOMPARE(item.formattedText(), u"- [x] " + row.line);
        }
    }

    void linksIntoTheSourceApplication()
    {
        WorkItemFields fields;
        fields.id = u"hG7.x"_s;
        QCOMPARE(OmniFocusTask(fields).appSpecificLink().toString(), u"omnifocus:///task/hG7.x"_s);
        QCOMPARE(ReminderWorkItem(fields, {}).appSpecificLink().toString(), u"x-apple-reminderkit://"_s);
        QVERIFY(BaseWorkItem(fields).appSpecificLink().isEmpty());
        QCOMPARE(BaseWorkItem(fields).sourceIdentifier(), u"generic"_s);
    }

    void identifiesReminders()
    {
        const Date now(1.5);
        QCOMPARE(ReminderWorkItem::idFor(u"ABC"_s, {}, {}, now), u"reminder_ABC"_s);
        const QString first = ReminderWorkItem::idFor({}, u"name"_s, u"list"_s, now);
        static const QRegularExpression digits(u"^reminder_[0-9]+$"_s);
        QVERIFY2(digits.match(first).hasMatch(), qPrintable(first));
        QVERIFY(first != ReminderWorkItem::idFor({}, u"name"_s, u"list"_s, now + 1.0));
    }
};

VANTREL_REGISTER_TEST(TestRecords)

} // namespace vantrel::test

#include "test_records.moc"
