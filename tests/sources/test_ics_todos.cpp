#include "sources/reminders/vdir/IcsTodos.h"
#include "sources/reminders/vdir/ReminderCodec.h"
#include "support/TestRegistry.h"

#include <QTest>
#include <QTimeZone>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

const Date Now = Date::fromDateTime(QDateTime(QDate(2026, 11, 22), QTime(9, 30), Qt::UTC));

QByteArray calendar(const QByteArray &properties, const QByteArray &others = {})
{
    QByteArray text = "BEGIN:VCALENDAR\nVERSION:2.0\nPRODID:-//Another//EN\n" + others +
                      "BEGIN:VTODO\nUID:one\nDTSTAMP:20260101T000000Z\n" + properties +
                      "\nEND:VTODO\nEND:VCALENDAR\n";
    return text.replace("\n", "\r\n");
}

/** The first task of the text. */
Reminder only(const QByteArray &text)
{
    const auto reminders = IcsTodos::read(text, u"file"_s);
    return reminders && !reminders->empty() ? reminders->front() : Reminder();
}

IcsEdit edited(const QByteArray &text, const std::function<void(Reminder &)> &change)
{
    const Reminder before = only(text);
    Reminder wanted = before;
    change(wanted);
    return IcsTodos::edit(text, u"file"_s, before, wanted, Now);
}

IcsEdit completed(const QByteArray &text)
{
    return edited(text, [](Reminder &reminder) { reminder.isCompleted = true; });
}

/** The lines that stand in one of the texts only. */
QByteArrayList lines(const QByteArray &text, const QByteArray &butNotIn)
{
    const QByteArrayList others = butNotIn.split('\n');
    QByteArrayList left;
    for (const QByteArray &line : text.split('\n')) {
        if (!others.contains(line)) {
            left.append(line.trimmed());
        }
    }
    return left;
}

QString dueText(const Reminder &reminder)
{
    if (!reminder.dueDate) {
        return u"none"_s;
    }
    if (const QDate *day = std::get_if<QDate>(&*reminder.dueDate)) {
        return day->toString(Qt::ISODate);
    }
    return std::get<Date>(*reminder.dueDate).toDateTime().toUTC().toString(Qt::ISODate);
}

} // namespace

class TestIcsTodos : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fieldsAreRead()
    {
        const Reminder reminder =
            only(calendar("SUMMARY:Buy milk\\, eggs\\; tea\nDESCRIPTION:First\\nsecond "
                          "line that is fol\n ded\nPRIORITY:5\nCREATED:20261120T080000Z\n"
                          "RRULE:FREQ=WEEKLY;INTERVAL=2\nDUE;VALUE=DATE:20261130"));
        QCOMPARE(reminder.identifier, u"one"_s);
        QCOMPARE(reminder.title, std::optional(u"Buy milk, eggs; tea"_s));
        QCOMPARE(reminder.notes, std::optional(u"First\nsecond line that is folded"_s));
        QCOMPARE(reminder.priority, 5);
        QVERIFY(reminder.recurrence == ReminderRecurrence({RepeatFrequency::Weekly, 2}));
        QCOMPARE(reminder.creationDate->toDateTime().toUTC(),
                 QDateTime(QDate(2026, 11, 20), QTime(8, 0), Qt::UTC));
        QVERIFY(!reminder.isCompleted);

        const QByteArray nameless = "BEGIN:VCALENDAR\nBEGIN:VTODO\nSUMMARY:x\nEND:VTODO\nEND:VCALENDAR";
        QCOMPARE(only(nameless).identifier, u"file"_s);
        QCOMPARE(
            IcsTodos::read("BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:e\nEND:VEVENT\nEND:VCALENDAR\n", {})->size(),
            0u);
    }

    void dueDatesAreRead()
    {
        struct Row
        {
            const char *property;
            QString due;
        };
        const QByteArray own = "BEGIN:VTIMEZONE\nTZID:Mars/Base\nBEGIN:STANDARD\nDTSTART:19700101T000000\n"
                               "TZOFFSETFROM:+0330\nTZOFFSETTO:+0330\nEND:STANDARD\nEND:VTIMEZONE\n";
        for (const Row &row : {Row{"DUE;VALUE=DATE:20260329", u"2026-03-29"_s},
                               Row{"DUE:20261201T120000Z", u"2026-12-01T12:00:00Z"_s},
                               Row{"DUE:20261201T120000", u"2026-12-01T11:00:00Z"_s},
                               Row{"DUE;TZID=America/New_York:20261201T120000", u"2026-12-01T17:00:00Z"_s},
                               Row{"DUE;TZID=Mars/Base:20261201T120000", u"2026-12-01T08:30:00Z"_s},
                               Row{"DUE;TZID=Nowhere:20261201T120000", u"2026-12-01T11:00:00Z"_s},
                               Row{"DUE:soon", u"none"_s}}) {
            QVERIFY2(dueText(only(calendar(row.property, own))) == row.due, row.property);
        }
    }

    void statesAreRead()
    {
        for (const auto &[properties, isCompleted] : {std::pair("SUMMARY:x", false),
                                                      {"STATUS:IN-PROCESS\nPERCENT-COMPLETE:100", false},
                                                      {"STATUS:COMPLETED", true},
                                                      {"COMPLETED:20261101T100000Z", true},
                                                      {"PERCENT-COMPLETE:100", true}}) {
            const auto reminders = IcsTodos::read(calendar(properties), {});
            QCOMPARE(reminders->size(), 1u);
            QVERIFY2(reminders->front().isCompleted == isCompleted, properties);
            QCOMPARE(reminders->front().completionDate.has_value(), isCompleted);
        }
        QCOMPARE(IcsTodos::read(calendar("STATUS:CANCELLED"), {})->size(), 0u);
    }

    void whatIsNoCalendarIsRefused()
    {
        for (const QByteArray &text :
             {QByteArray(), QByteArray("Dear diary: nothing happened.\n"),
              QByteArray("\x00\xff\x01 BEGIN:VCALENDAR\n", 20), calendar("SUMMARY:x").chopped(20),
              QByteArray("BEGIN:VCALENDAR\nBEGIN:VTODO\nEND:VCALENDAR\nEND:VTODO\n"),
              QByteArray("BEGIN:VCARD\nFN:Bob\nEND:VCARD\n")}) {
            QVERIFY2(!IcsTodos::read(text, u"file"_s), text);
            QVERIFY2(!IcsTodos::edit(text, {}, Reminder(), Reminder(), Now).refusal.isEmpty(), text);
        }
    }

    void anEditTouchesItsOwnLinesOnly()
    {
        const QByteArray text = calendar(
            "summary;LANGUAGE=en:Old\nX-ODD;X-P=\"a:b;c\":keep  me\nSEQUENCE:4\nCATEGORIES:a,b\n"
            "DUE;TZID=Europe/Berlin:20261201T120000\nATTENDEE;CN=\"Ann; Bob\":mailto:a@example.org\n"
            "DESCRIPTION:folded in an o\n dd place\nBEGIN:VALARM\nACTION:DISPLAY\nDESCRIPTION:Alarm\n"
            "SUMMARY:Alarm\nTRIGGER:-PT15M\nEND:VALARM\nRELATED-TO:parent\nSUMMARY-LIKE:no",
            "X-WR-CALNAME:List\nBEGIN:VTIMEZONE\nTZID:Europe/"
            "Berlin\nBEGIN:STANDARD\nDTSTART:19701025T030000\n"
            "TZOFFSETFROM:+0200\nTZOFFSETTO:+0100\nEND:STANDARD\nEND:VTIMEZONE\n");

        const IcsEdit renamed = edited(text, [](Reminder &reminder) {
            reminder.title = u"New"_s;
            reminder.priority = 1;
        });
        QCOMPARE(renamed.refusal, QString());
        QCOMPARE(lines(text, renamed.text),
                 (QByteArrayList{"DTSTAMP:20260101T000000Z", "summary;LANGUAGE=en:Old", "SEQUENCE:4"}));
        QCOMPARE(lines(renamed.text, text),
                 (QByteArrayList{"DTSTAMP:20261122T093000Z", "summary;LANGUAGE=en:New", "SEQUENCE:5",
                                 "PRIORITY:1", "LAST-MODIFIED:20261122T093000Z"}));

        const IcsEdit done = completed(text);
        QCOMPARE(lines(done.text, text).mid(1),
                 (QByteArrayList{"SEQUENCE:5", "STATUS:COMPLETED", "COMPLETED:20261122T093000Z",
                                 "PERCENT-COMPLETE:100", "LAST-MODIFIED:20261122T093000Z"}));
        const IcsEdit reopened = edited(done.text, [](Reminder &reminder) { reminder.isCompleted = false; });
        QVERIFY(!only(reopened.text).isCompleted);
        QVERIFY(!reopened.text.contains("COMPLETED:") && !reopened.text.contains("PERCENT"));
    }

    void anEditLeavesOtherFieldsAsTheyAreWritten()
    {
        for (const char *line : {"SUMMARY:Milk\\Reggs", "SEQUENCE:2147483647", "SEQUENCE;"}) {
            const QByteArray text = calendar(line);
            const IcsEdit edit = edited(text, [](Reminder &reminder) { reminder.priority = 1; });
            QCOMPARE(edit.refusal, QString());
            QCOMPARE(lines(text, edit.text), QByteArrayList{"DTSTAMP:20260101T000000Z"});
        }
    }

    void textsSurviveTheirForm()
    {
        const QString longText = u"müsli 🥣 "_s.repeated(60) + u'x';
        for (const auto &[text, readBack] : {std::pair(u"a,b;c\\d:\"e\"\nf"_s, u"a,b;c\\d:\"e\"\nf"_s),
                                             {longText, longText},
                                             {u"a\r\nb\x07"_s, u"a\nb"_s},
                                             {u"x\nEND:VTODO"_s, u"x\nEND:VTODO"_s}}) {
            const IcsEdit edit = edited(calendar("SUMMARY:Old"), [&text = text](Reminder &reminder) {
                reminder.title = text;
                reminder.notes = text;
            });
            QCOMPARE(edit.refusal, QString());
            QCOMPARE(only(edit.text).title.value(), readBack);
            QCOMPARE(only(edit.text).notes.value(), readBack);
            for (const QByteArray &line : edit.text.split('\n')) {
                QVERIFY(line.size() <= 76);
            }
        }
    }

    void aSeriesGoesOnWithItsNextOccurrence()
    {
        struct Row
        {
            QByteArray properties;
            QByteArrayList advanced;
        };
        for (const Row &row :
             {Row{"DUE;VALUE=DATE:20261127\nRRULE:FREQ=WEEKLY", {"DUE;VALUE=DATE:20261204"}},
              // Across the change of clocks.
              Row{"DUE;TZID=Europe/Berlin:20261024T090000\nRRULE:FREQ=DAILY;INTERVAL=2",
                  {"DUE;TZID=Europe/Berlin:20261026T090000"}},
              Row{"DTSTART:20261130T230000Z\nDUE:20261201T010000Z\nRRULE:FREQ=MONTHLY;BYMONTHDAY=-1",
                  {"DTSTART:20261231T230000Z", "DUE:20270101T010000Z"}},
              Row{"DUE;VALUE=DATE:20261130\nRRULE:FREQ=DAILY;COUNT=5",
                  {"DUE;VALUE=DATE:20261201", "RRULE:FREQ=DAILY;COUNT=4"}},
              Row{"DUE;VALUE=DATE:20261130\nEXDATE;VALUE=DATE:20261201,20261202\nRRULE:FREQ=DAILY;COUNT=5",
                  {"DUE;VALUE=DATE:20261203", "RRULE:FREQ=DAILY;COUNT=2"}},
              Row{"DUE;VALUE=DATE:20260131\nRRULE:FREQ=MONTHLY", {"DUE;VALUE=DATE:20260331"}},
              Row{"DUE;VALUE=DATE:20240229\nRRULE:FREQ=YEARLY", {"DUE;VALUE=DATE:20280229"}},
              Row{"DUE;VALUE=DATE:20261123\nRRULE:FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,TH",
                  {"DUE;VALUE=DATE:20261126"}},
              Row{"DUE;VALUE=DATE:20261123\nRRULE:FREQ=DAILY;UNTIL=20261124", {"DUE;VALUE=DATE:20261124"}}}) {
            const QByteArray text = calendar(
                "SUMMARY:Water\nX-KEEP:me\nSTATUS:IN-PROCESS\nPERCENT-COMPLETE:50\n" + row.properties);

            const IcsEdit edit = completed(text);

            QCOMPARE(edit.refusal, QString());
            for (const QByteArray &line : row.advanced) {
                QVERIFY2(edit.text.contains(QByteArray(line + "\r\n")), edit.text.constData());
            }
            QVERIFY(edit.text.contains("STATUS:NEEDS-ACTION\r\n") && edit.text.contains("X-KEEP:me\r\n"));
            const Reminder copy = only(edit.completedText);
            QCOMPARE(copy.identifier, edit.completedUid);
            QVERIFY(copy.isCompleted && !copy.recurrence && copy.completionDate == Now);
            QCOMPARE(dueText(copy), dueText(only(text)));
            QVERIFY(edit.completedText.contains("X-KEEP:me\r\n"));
        }
    }

    void aSeriesThatCannotGoOnFaithfullyIsLeftAlone()
    {
        for (const char *properties :
             {"RRULE:FREQ=DAILY", "DUE;VALUE=DATE:20261130\nRRULE:FREQ=DAILY\nRRULE:FREQ=WEEKLY",
              "DUE;VALUE=DATE:20261130\nRRULE:FREQ=DAILY\nRDATE;VALUE=DATE:20261201",
              "DUE:20261130T120000Z\nRRULE:FREQ=SECONDLY;BYMONTH=2;BYMONTHDAY=30",
              "DUE;VALUE=DATE:20261130\nRRULE:FREQ=HOURLY;INTERVAL=32767;BYDAY=SU",
              "DUE;VALUE=DATE:20261130\nRRULE:FREQ=SOMETIMES",
              "DTSTART;VALUE=DATE:20261129\nDUE:20261130T120000Z\nRRULE:FREQ=DAILY",
              "DUE;VALUE=DATE:20261124\nRRULE:FREQ=WEEKLY;BYDAY=MO;COUNT=4"}) {
            const IcsEdit edit = completed(calendar(properties));
            QVERIFY2(!edit.refusal.isEmpty() && edit.completedText.isEmpty(), properties);
        }
        for (const char *lastOne : {"DUE;VALUE=DATE:20261130\nRRULE:FREQ=DAILY;COUNT=1",
                                    "DUE;VALUE=DATE:20261130\nRRULE:FREQ=DAILY;UNTIL=20261130"}) {
            const IcsEdit edit = completed(calendar(lastOne));
            QVERIFY2(edit.refusal.isEmpty() && edit.completedText.isEmpty(), lastOne);
            QVERIFY2(only(edit.text).isCompleted, lastOne);
        }
    }

    void anOccurrenceSettledElsewhereIsPassedOver()
    {
        QByteArray text = calendar("SUMMARY:Water\nDTSTART;VALUE=DATE:20261101\nDUE;VALUE=DATE:20261102\n"
                                   "RRULE:FREQ=DAILY");
        text.replace("END:VTODO\r\n", "END:VTODO\r\nBEGIN:VTODO\r\nUID:one\r\nDTSTAMP:20261101T100000Z\r\n"
                                      "RECURRENCE-ID;VALUE=DATE:20261101\r\nSUMMARY:Water\r\n"
                                      "STATUS:COMPLETED\r\nCOMPLETED:20261101T100000Z\r\nEND:VTODO\r\n");
        const auto reminders = IcsTodos::read(text, {});
        QCOMPARE(reminders->size(), 2u);
        QCOMPARE(dueText(reminders->front()), u"2026-11-03"_s);
        QCOMPARE(reminders->back().identifier, u"one/20261101"_s);
        QVERIFY(reminders->back().isCompleted);

        const IcsEdit edit = completed(text);
        QCOMPARE(edit.refusal, QString());
        QCOMPARE(dueText(only(edit.completedText)), u"2026-11-03"_s);
        QCOMPARE(dueText(only(edit.text)), u"2026-11-04"_s);
        QVERIFY(edit.text.contains("RECURRENCE-ID;VALUE=DATE:20261101"));
    }

    void newTasksAreReadBack()
    {
        Reminder reminder;
        reminder.title = u"New"_s;
        reminder.notes = u"a\nb"_s;
        reminder.priority = 9;
        for (const ReminderDueDate &due : {ReminderDueDate(QDate(2026, 12, 24)), ReminderDueDate(Now)}) {
            reminder.dueDate = due;
            const Reminder made = only(IcsTodos::make(reminder, u"uid"_s, Now));
            QCOMPARE(made.identifier, u"uid"_s);
            QVERIFY(made.title == reminder.title && made.notes == reminder.notes && made.dueDate == due);
            QCOMPARE(made.priority, 9);
            QVERIFY(made.creationDate == Now && !made.isCompleted);
        }
    }

    void theCacheFormKeepsEverything()
    {
        std::vector<Reminder> reminders(3);
        reminders[0].identifier = u"ä"_s;
        reminders[0].title = u""_s;
        reminders[0].notes = u"note 🥣"_s;
        reminders[0].dueDate = QDate(2026, 1, 2);
        reminders[0].recurrence = {RepeatFrequency::Yearly, 3};
        reminders[1].dueDate = Date(0.25);
        reminders[1].creationDate = Date(1.0);
        reminders[1].completionDate = Date(2.0);
        reminders[1].isCompleted = true;
        reminders[1].priority = 7;
        const QByteArray bytes = encodeReminders(reminders);
        QVERIFY(decodeReminders(bytes) == std::optional(reminders));
        for (qsizetype length = 1; length < bytes.size(); ++length) {
            const auto cut = decodeReminders(QByteArrayView(bytes).first(length));
            QVERIFY(!cut || cut->size() < reminders.size());
        }
    }
};

VANTREL_REGISTER_TEST(TestIcsTodos)

} // namespace vantrel::test

#include "test_ics_todos.moc"
