#!/usr/bin/env python3
"""Works out the figures of many generated histories from their definitions, with Python's own calendar, and compares
them with what the analyzers say. Usage: check_figures.py ANALYSIS_OF_HISTORY"""

import json
import math
import random
import subprocess
import sys
from datetime import datetime, time, timedelta, timezone
from zoneinfo import ZoneInfo

UTC = timezone.utc
REFERENCE = datetime(2001, 1, 1, tzinfo=UTC)
MILLISECOND = timedelta(milliseconds=1)
LOOKBACK_DAYS = 20

# The first weekday (Monday is 0) and the names of the weekdays, Monday first.
LOCALES = {
    "en_US": (6, "Monday Tuesday Wednesday Thursday Friday Saturday Sunday"),
    "de_DE": (0, "Montag Dienstag Mittwoch Donnerstag Freitag Samstag Sonntag"),
    "ar_EG": (5, "الاثنين الثلاثاء الأربعاء الخميس الجمعة السبت الأحد"),
}

# Zone and local time of "now"; the window is the twenty days before.
MOMENTS = [
    ("UTC", datetime(2026, 6, 21, 10, 30)),
    ("UTC", datetime(2028, 3, 5, 23, 59, 59, 999000)),          # a leap day
    ("America/New_York", datetime(2024, 3, 10, 0, 0)),          # leap day, midnight, the day the clocks go forward
    ("America/New_York", datetime(2026, 3, 20, 2, 30)),         # an hour that 8 March did not have
    ("America/New_York", datetime(2026, 11, 21, 1, 30)),        # an hour that 1 November had twice
    ("America/Sao_Paulo", datetime(2018, 11, 24, 0, 15)),       # 4 November began at one o'clock
    ("Europe/Berlin", datetime(2026, 11, 3, 2, 30)),
    ("Europe/Berlin", datetime(2026, 10, 25, 12, 0)),
    ("Europe/Berlin", datetime(2026, 4, 18, 2, 30)),
    ("Europe/Dublin", datetime(2027, 1, 1, 0, 0, 0, 123000)),   # a new year; winter time is the exception there
    ("Africa/Casablanca", datetime(2026, 3, 25, 3, 0)),         # clocks change for Ramadan
    ("Asia/Kathmandu", datetime(2026, 6, 1, 0, 5)),             # a quarter of an hour off
    ("Asia/Tehran", datetime(2022, 9, 23, 0, 0)),               # changes at midnight
    ("Australia/Lord_Howe", datetime(2026, 4, 10, 1, 45)),      # half an hour of summer time
    ("Pacific/Apia", datetime(2012, 1, 5, 12, 0)),              # 30 December 2011 did not happen
    ("Pacific/Chatham", datetime(2026, 9, 27, 2, 45)),
]


class Calendar:
    def __init__(self, zone, locale):
        self.zone = ZoneInfo(zone)
        self.first_weekday, names = LOCALES[locale]
        self.names = names.split()

    def local(self, moment):
        return moment.astimezone(self.zone)

    def moment_at(self, wall):
        """When the clock on the wall shows that; a time that was skipped counts from the clock before."""
        return wall.replace(tzinfo=self.zone).astimezone(UTC)

    def unit(self, moment, period):
        """What two moments of one hour, day or week have in common."""
        local = self.local(moment)
        if period == "hourly":
            return local.date(), local.hour
        if period == "daily":
            return local.date()
        return local.date() - timedelta(days=(local.weekday() - self.first_weekday) % 7)

    def periods(self, now, period):
        wall = self.local(now).replace(tzinfo=None, fold=0) - timedelta(days=LOOKBACK_DAYS)
        if period == "hourly":
            moment = self.moment_at(wall)
            return [moment + timedelta(hours=i) for i in range((now - moment) // timedelta(hours=1) + 1)]
        step = timedelta(days=1 if period == "daily" else 7)
        moments = [self.moment_at(wall + i * step) for i in range(LOOKBACK_DAYS // step.days + 1)]
        return sorted({moment for moment in moments if moment <= now})


def moment_of(seconds):
    """A stored date, to the millisecond."""
    return REFERENCE + round(seconds * 1000) * MILLISECOND


def seconds_of(moment):
    since_1970 = (moment - datetime(1970, 1, 1, tzinfo=UTC)) // MILLISECOND
    return since_1970 / 1000 - 978307200.0


def slope_word(counts):
    n = float(len(counts))
    if n < 2:
        return 2
    xs = [float(i) for i in range(len(counts))]
    sum_xy = math.fsum(x * y for x, y in zip(xs, counts))
    slope = (n * sum_xy - sum(xs) * sum(counts)) / (n * sum(x * x for x in xs) - sum(xs) ** 2)
    return 0 if slope > 0.1 else 1 if slope < -0.1 else 2


def consistency(counts, average):
    if len(counts) < 2 or not average > 0:
        return 0.0
    squares = 0.0
    for count in counts:
        squares += (count - average) * (count - average)
    return min(100.0, max(0.0, (1 - math.sqrt(squares / len(counts)) / average) * 100))


def best_day(calendar, finished):
    counts = [0] * 7
    for moment in finished:
        counts[calendar.local(moment).weekday()] += 1
    if not any(counts):
        return None, None
    # Of days that are alike the first of the week.
    week = [(calendar.first_weekday + i) % 7 for i in range(7)]
    best = max(week, key=lambda day: counts[day])
    return calendar.names[best], counts[best]


def throughput(calendar, history, period):
    points = calendar.periods(moment_of(history["now"]), period)
    finished = [(moment_of(seconds), source) for seconds, source in history["tasks"] if seconds is not None]
    tally = {}
    for moment, source in finished:
        entry = tally.setdefault(calendar.unit(moment, period), [0, 0, 0])
        entry[0] += 1
        if source < 2:
            entry[1 + source] += 1
    triples = [tally.get(calendar.unit(point, period), [0, 0, 0]) for point in points]
    counts = [triple[0] for triple in triples]
    average = sum(counts) / len(counts)
    name, count = best_day(calendar, [moment for moment, _ in finished])
    return {"dates": [seconds_of(point) for point in points], "counts": triples, "average": average,
            "peak": max(counts), "total": sum(counts), "trend": slope_word(counts),
            "consistency": consistency(counts, average), "bestDay": name, "bestDayCount": count}


def ages(history):
    limits = [1, 3, 7, 14, 28, math.inf]
    factors = [1.0, 1.1, 1.3, 1.5, 1.7, 2.2]
    zones = ["fresh", "fresh", "aging", "aging", "stale", "ancient"]
    buckets = [[] for _ in limits]
    for index, age in enumerate(history["ages"]):
        days = math.trunc(age / 86400.0)
        buckets[next(i for i, limit in enumerate(limits) if days < limit)].append(str(index))
    total = len(history["ages"])
    result = []
    for bucket, factor, zone in zip(buckets, factors, zones) if total else []:
        share = len(bucket) / total
        result.append({"count": len(bucket), "percentage": share, "text": f"{round(share * 1000) / 10:g}%",
                       "factor": factor, "zone": zone, "tasks": bucket})
    return result


def history(generator, zone, locale, local_now):
    """Moments anywhere around the window, and at the edges of hours, days and weeks."""
    tz = ZoneInfo(zone)
    now = local_now.replace(tzinfo=tz).astimezone(UTC)
    moments = [now + timedelta(milliseconds=generator.randrange(-30 * 86400000, 3 * 86400000))
               for _ in range(generator.choice([0, 1, 60, 1500]))]
    if moments:
        for back in range(-1, 24):
            midnight = datetime.combine(local_now.date() - timedelta(days=back), time(), tz).astimezone(UTC)
            moments += [midnight, midnight - MILLISECOND]
    tasks = [[seconds_of(moment), generator.randrange(3)] for moment in moments]
    if generator.random() < 0.5:
        tasks.append([None, 2])
    ages_given = [generator.choice([generator.uniform(-2, 60), generator.choice([0, 1, 3, 7, 14, 27.9, 28])]) * 86400.0
                  for _ in range(generator.choice([0, 1, 7, 200]))]
    return {"zone": zone, "locale": locale, "now": seconds_of(now), "tasks": tasks, "ages": ages_given}


def differences(ours, theirs, path=""):
    if isinstance(ours, dict):
        for key in ours.keys() | theirs.keys():
            yield from differences(ours.get(key), theirs.get(key), f"{path}.{key}")
    elif isinstance(ours, list) and isinstance(theirs, list) and len(ours) == len(theirs):
        for index, pair in enumerate(zip(ours, theirs)):
            yield from differences(*pair, f"{path}[{index}]")
    elif ours != theirs:
        yield f"{path}: {ours!r}, the analyzers say {theirs!r}"


def main():
    generator = random.Random(20261103)
    histories = [history(generator, zone, locale, now)
                 for zone, now in MOMENTS for locale in LOCALES for _ in range(3)]
    lines = "".join(json.dumps(entry) + "\n" for entry in histories)
    answers = subprocess.run([sys.argv[1]], input=lines, capture_output=True, text=True, check=True).stdout.splitlines()
    if len(answers) != len(histories):
        sys.exit(f"{len(histories)} histories, {len(answers)} answers")
    wrong = 0
    for entry, answer in zip(histories, map(json.loads, answers)):
        calendar = Calendar(entry["zone"], entry["locale"])
        expected = {period: throughput(calendar, entry, period) for period in ("hourly", "daily", "weekly")}
        expected["ages"] = ages(entry)
        for difference in list(differences(expected, answer))[:3]:
            wrong += 1
            print(entry["zone"], entry["locale"], moment_of(entry["now"]), difference)
    print(f"{len(histories)} histories, {wrong} differences")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
