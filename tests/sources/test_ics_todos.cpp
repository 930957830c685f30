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
    void fieldsAreRead();
    void dueDatesAreRead_data();
    void dueDatesAreRead();
    void statesAreRead_data();
    void statesAreRead();
    void whatIsNoCalendarIsRefused_data();
    void whatIsNoCalendarIsRefused();
    void anEditTouchesItsOwnLinesOnly();
    void textsSurviveTheirForm_data();
    void textsSurviveTheirForm();
    void aSeriesGoesOnWithItsNextOccurrence_data();
    void aSeriesGoesOnWithItsNextOccurrence();
    void aSeriesThatCannotGoOnFaithfullyIsLeftAlone_data();
    void aSeriesThatCannotGoOnFaithfullyIsLeftAlone();
    void anOccurrenceSettledElsewhereIsPassedOver();
    void newTasksAreReadBack();
    void theCacheFormKeepsEverything();
};

void TestIcsTodos::fieldsAreRead()
{
    const Reminder reminder = only(calendar("SUMMARY:Buy milk\\, eggs\\; tea\nDESCRIPTION:First\\nsecond "
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
    QCOMPARE(IcsTodos::read("BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:e\nEND:VEVENT\nEND:VCALENDAR\n", {})->size(),
             0u);
}

void TestIcsTodos::dueDatesAreRead_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QString>("due");
    const QByteArray own = "BEGIN:VTIMEZONE\nTZID:Mars/Base\nBEGIN:STANDARD\nDTSTART:19700101T000000\n"
                           "TZOFFSETFROM:+0330\nTZOFFSETTO:+0330\nEND:STANDARD\nEND:VTIMEZONE\n";
    QTest::newRow("day") << calendar("DUE;VALUE=DATE:20260329") << u"2026-03-29"_s;
    QTest::newRow("UTC") << calendar("DUE:20261201T120000Z") << u"2026-12-01T12:00:00Z"_s;
    QTest::newRow("floating") << calendar("DUE:20261201T120000") << u"2026-12-01T11:00:00Z"_s;
    QTest::newRow("well-known zone") << calendar("DUE;TZID=America/New_York:20261201T120000")
                                     << u"2026-12-01T17:00:00Z"_s;
    QTest::newRow("zone of its own") << calendar("DUE;TZID=Mars/Base:20261201T120000", own)
                                     << u"2026-12-01T08:30:00Z"_s;
    QTest::newRow("unknown zone") << calendar("DUE;TZID=Nowhere:20261201T120000")
                                  << u"2026-12-01T11:00:00Z"_s;
    QTest::newRow("nonsense") << calendar("DUE:soon") << u"none"_s;
}

void TestIcsTodos::dueDatesAreRead()
{
    QFETCH(QByteArray, property);
    QTEST(dueText(only(property)), "due");
}

void TestIcsTodos::statesAreRead_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<int>("tasks");
    QTest::addColumn<bool>("isCompleted");
    QTest::newRow("none") << QByteArray("SUMMARY:x") << 1 << false;
    QTest::newRow("open") << QByteArray("STATUS:IN-PROCESS\nPERCENT-COMPLETE:100") << 1 << false;
    QTest::newRow("status") << QByteArray("STATUS:COMPLETED") << 1 << true;
    QTest::newRow("date") << QByteArray("COMPLETED:20261101T100000Z") << 1 << true;
    QTest::newRow("percent") << QByteArray("PERCENT-COMPLETE:100") << 1 << true;
    QTest::newRow("cancelled") << QByteArray("STATUS:CANCELLED") << 0 << false;
}

void TestIcsTodos::statesAreRead()
{
    QFETCH(QByteArray, properties);
    const auto reminders = IcsTodos::read(calendar(properties), {});
    QTEST(int(reminders->size()), "tasks");
    if (!reminders->empty()) {
        QTEST(reminders->front().isCompleted, "isCompleted");
        QCOMPARE(reminders->front().completionDate.has_value(), reminders->front().isCompleted);
    }
}

void TestIcsTodos::whatIsNoCalendarIsRefused_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("prose") << QByteArray("Dear diary: nothing happened.\n");
    QTest::newRow("binary") << QByteArray("\x00\xff\x01 BEGIN:VCALENDAR\n", 20);
    QTest::newRow("cut short") << calendar("SUMMARY:x").chopped(20);
    QTest::newRow("crossed") << QByteArray("BEGIN:VCALENDAR\nBEGIN:VTODO\nEND:VCALENDAR\nEND:VTODO\n");
    QTest::newRow("a card") << QByteArray("BEGIN:VCARD\nFN:Bob\nEND:VCARD\n");
}

void TestIcsTodos::whatIsNoCalendarIsRefused()
{
    QFETCH(QByteArray, text);
    QVERIFY(!IcsTodos::read(text, u"file"_s));
    QVERIFY(!IcsTodos::edit(text, {}, Reminder(), Reminder(), Now).refusal.isEmpty());
}

void TestIcsTodos::anEditTouchesItsOwnLinesOnly()
{
    const QByteArray text = calendar(
        "summary;LANGUAGE=en:Old\nX-ODD;X-P=\"a:b;c\":keep  me\nSEQUENCE:4\nCATEGORIES:a,b\n"
        "DUE;TZID=Europe/Berlin:20261201T120000\nATTENDEE;CN=\"Ann; Bob\":mailto:a@example.org\n"
        "DESCRIPTION:folded in an o\n dd place\nBEGIN:VALARM\nACTION:DISPLAY\nDESCRIPTION:Alarm\n"
        "SUMMARY:Alarm\nTRIGGER:-PT15M\nEND:VALARM\nRELATED-TO:parent\nSUMMARY-LIKE:no",
        "X-WR-CALNAME:List\nBEGIN:VTIMEZONE\nTZID:Europe/Berlin\nBEGIN:STANDARD\nDTSTART:19701025T030000\n"
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

void TestIcsTodos::textsSurviveTheirForm_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("readBack");
    const auto row = [](const char *name, const QString &text, const QString &readBack) {
        QTest::newRow(name) << text << readBack;
    };
    row("special", u"a,b;c\\d:\"e\"\nf"_s, u"a,b;c\\d:\"e\"\nf"_s);
    row("long", u"müsli 🥣 "_s.repeated(60) + u'x', u"müsli 🥣 "_s.repeated(60) + u'x');
    row("control characters", u"a\r\nb\x07"_s, u"a\nb"_s);
    row("looks like a line", u"x\nEND:VTODO"_s, u"x\nEND:VTODO"_s);
}

void TestIcsTodos::textsSurviveTheirForm()
{
    QFETCH(QString, text);
    const IcsEdit edit = edited(calendar("SUMMARY:Old"), [&text](Reminder &reminder) {
        reminder.title = text;
        reminder.notes = text;
    });
    QCOMPARE(edit.refusal, QString());
    QTEST(only(edit.text).title.value(), "readBack");
    QTEST(only(edit.text).notes.value(), "readBack");
    for (const QByteArray &line : edit.text.split('\n')) {
        QVERIFY(line.size() <= 76);
    }
}

void TestIcsTodos::aSeriesGoesOnWithItsNextOccurrence_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<QByteArrayList>("advanced");
    const auto row = [](const char *name, const char *properties, const QByteArrayList &advanced) {
        QTest::newRow(name) << QByteArray(properties) << advanced;
    };
    row("a day each week", "DUE;VALUE=DATE:20261127\nRRULE:FREQ=WEEKLY", {"DUE;VALUE=DATE:20261204"});
    row("across the change of clocks", "DUE;TZID=Europe/Berlin:20261024T090000\nRRULE:FREQ=DAILY;INTERVAL=2",
        {"DUE;TZID=Europe/Berlin:20261026T090000"});
    row("start and due", "DTSTART:20261130T230000Z\nDUE:20261201T010000Z\nRRULE:FREQ=MONTHLY;BYMONTHDAY=-1",
        {"DTSTART:20261231T230000Z", "DUE:20270101T010000Z"});
    row("a counted one", "DUE;VALUE=DATE:20261130\nRRULE:FREQ=DAILY;COUNT=5",
        {"DUE;VALUE=DATE:20261201", "RRULE:FREQ=DAILY;COUNT=4"});
    row("what is left out",
        "DUE;VALUE=DATE:20261130\nEXDATE;VALUE=DATE:20261201,20261202\n"
        "RRULE:FREQ=DAILY;COUNT=5",
        {"DUE;VALUE=DATE:20261203", "RRULE:FREQ=DAILY;COUNT=2"});
    row("the 31st", "DUE;VALUE=DATE:20260131\nRRULE:FREQ=MONTHLY", {"DUE;VALUE=DATE:20260331"});
    row("the 29th of February", "DUE;VALUE=DATE:20240229\nRRULE:FREQ=YEARLY", {"DUE;VALUE=DATE:20280229"});
    row("two days of every other week", "DUE;VALUE=DATE:20261123\nRRULE:FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,TH",
        {"DUE;VALUE=DATE:20261126"});
    row("until later", "DUE;VALUE=DATE:20261123\nRRULE:FREQ=DAILY;UNTIL=20261124",
        {"DUE;VALUE=DATE:20261124"});
}

void TestIcsTodos::aSeriesGoesOnWithItsNextOccurrence()
{
    QFETCH(QByteArray, properties);
    QFETCH(QByteArrayList, advanced);
    const QByteArray text =
        calendar("SUMMARY:Water\nX-KEEP:me\nSTATUS:IN-PROCESS\nPERCENT-COMPLETE:50\n" + properties);

    const IcsEdit edit = completed(text);

    QCOMPARE(edit.refusal, QString());
    for (const QByteArray &line : advanced) {
        QVERIFY2(edit.text.contains(QByteArray(line + "\r\n")), edit.text.constData());
    }
    QVERIFY(edit.text.contains("STATUS:NEEDS-ACTION\r\n") && edit.text.contains("X-KEEP:me\r\n"));
    const Reminder copy = only(edit.completedText);
    QCOMPARE(copy.identifier, edit.completedUid);
    QVERIFY(copy.isCompleted && !copy.recurrence && copy.completionDate == Now);
    QCOMPARE(dueText(copy), dueText(only(text)));
    QVERIFY(edit.completedText.contains("X-KEEP:me\r\n"));
}

void TestIcsTodos::aSeriesThatCannotGoOnFaithfullyIsLeftAlone_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<bool>("isLast");
    const auto row = [](const char *name, const char *properties, bool isLast = false) {
        QTest::newRow(name) << QByteArray(properties) << isLast;
    };
    row("the last one", "DUE;VALUE=DATE:20261130\nRRULE:FREQ=DAILY;COUNT=1", true);
    row("the last one until", "DUE;VALUE=DATE:20261130\nRRULE:FREQ=DAILY;UNTIL=20261130", true);
    row("no date", "RRULE:FREQ=DAILY");
    row("two rules", "DUE;VALUE=DATE:20261130\nRRULE:FREQ=DAILY\nRRULE:FREQ=WEEKLY");
    row("further dates", "DUE;VALUE=DATE:20261130\nRRULE:FREQ=DAILY\nRDATE;VALUE=DATE:20261201");
    row("seconds of a day that never comes",
        "DUE:20261130T120000Z\nRRULE:FREQ=SECONDLY;BYMONTH=2;BYMONTHDAY=30");
    row("hours of a day that never comes",
        "DUE;VALUE=DATE:20261130\nRRULE:FREQ=HOURLY;INTERVAL=32767;BYDAY=SU");
    row("nonsense", "DUE;VALUE=DATE:20261130\nRRULE:FREQ=SOMETIMES");
    row("start and due of two kinds", "DTSTART;VALUE=DATE:20261129\nDUE:20261130T120000Z\nRRULE:FREQ=DAILY");
    row("begins beside its rule", "DUE;VALUE=DATE:20261124\nRRULE:FREQ=WEEKLY;BYDAY=MO;COUNT=4");
}

void TestIcsTodos::aSeriesThatCannotGoOnFaithfullyIsLeftAlone()
{
    QFETCH(QByteArray, properties);
    QFETCH(bool, isLast);
    const IcsEdit edit = completed(calendar(properties));
    QCOMPARE(edit.refusal.isEmpty(), isLast);
    QVERIFY(edit.completedText.isEmpty());
    if (isLast) {
        QVERIFY(only(edit.text).isCompleted);
    }
}

void TestIcsTodos::anOccurrenceSettledElsewhereIsPassedOver()
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

void TestIcsTodos::newTasksAreReadBack()
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

void TestIcsTodos::theCacheFormKeepsEverything()
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

VANTREL_REGISTER_TEST(TestIcsTodos)

} // namespace vantrel::test

#include "test_ics_todos.moc"
