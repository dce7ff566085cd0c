#!/usr/bin/env python3
"""End-to-end tests of dmtool.

Each case runs the built tool on real files and compares what it writes with
figures computed here, independently, from the same input: Python's csv
module reads the CSV, and its own rules give the expected storage,
measurement level, counts and statistics.

usage: dmtool_test.py --dmtool PATH --source DIR --work DIR CASE
"""

import argparse
import collections
import csv
import datetime
import math
import os
import re
import shutil
import statistics
import subprocess
import sys
import xml.etree.ElementTree as ET

DMTOOL = ""
SOURCE = ""
WORK = ""
EPOCH = datetime.date(1970, 1, 1)


class Failure(Exception):
    pass


def check(condition, message):
    if not condition:
        raise Failure(message)


def run(args, expect=0):
    """Runs dmtool; checks that it exited normally with `expect`."""
    proc = subprocess.run([DMTOOL] + args, capture_output=True)
    out = proc.stdout.decode("utf-8", "replace")
    err = proc.stderr.decode("utf-8", "replace")
    shown = "dmtool %s\n--- exit %d\n--- stdout\n%s\n--- stderr\n%s" % (
        " ".join(args), proc.returncode, out[:4000], err[:4000])
    check(proc.returncode >= 0, "dmtool died of signal %d\n%s" % (-proc.returncode, shown))
    if expect is not None:
        check(proc.returncode == expect, "expected exit %d\n%s" % (expect, shown))
    if proc.returncode != 0:
        check(err.strip() != "", "a failure must explain itself on stderr\n" + shown)
    return out, err


def seattle_csv():
    return os.path.join(SOURCE, "examples", "data", "seattle-weather.csv")


def work_file(name, content=None, mode="w"):
    path = os.path.join(WORK, name)
    if content is not None:
        with open(path, mode) as handle:
            handle.write(content)
    return path


# The expected dictionary, by rules written here -----------------------------

INTEGER = re.compile(r"^[+-]?[0-9]+$")
REAL = re.compile(r"^[+-]?([0-9]+\.?[0-9]*|\.[0-9]+)([eE][+-]?[0-9]+)?$")
TIME = re.compile(r"^([01][0-9]|2[0-3]):[0-5][0-9]:[0-5][0-9]$")


def as_date(text):
    if len(text) != 10 or text[4] != "-" or text[7] != "-":
        return None
    try:
        return (datetime.date.fromisoformat(text) - EPOCH).days
    except ValueError:
        return None


def as_time(text):
    if not TIME.match(text):
        return None
    h, m, s = (int(part) for part in text.split(":"))
    return h * 3600 + m * 60 + s


def as_timestamp(text):
    if len(text) != 19 or text[10] not in " T":
        return None
    days, seconds = as_date(text[:10]), as_time(text[11:])
    if days is None or seconds is None:
        return None
    return days * 86400 + seconds


def decimals_of(text):
    mantissa = re.split("[eE]", text)[0]
    return len(mantissa.split(".")[1]) if "." in mantissa else 0


def expected_column(cells, max_categories):
    """Storage, measure, values and decimals that the column should get."""
    present = [c for c in cells if c != ""]
    readers = [
        ("integer", lambda t: int(t) if INTEGER.match(t) else None),
        ("real", lambda t: float(t) if REAL.match(t) else None),
        ("date", as_date),
        ("timestamp", as_timestamp),
        ("time", as_time),
    ]
    column = {"valid": len(present), "missing": len(cells) - len(present), "decimals": 0}
    if not present:
        column.update(storage="string", measure="typeless", values=[])
        return column
    for storage, reader in readers:
        values = [reader(c) for c in present]
        if all(v is not None for v in values):
            column.update(storage=storage, values=values)
            if storage == "real":
                column["decimals"] = max(decimals_of(c) for c in present)
            distinct = len(set(values))
            column["measure"] = "flag" if distinct == 2 else "continuous"
            return column
    distinct = len(set(present))
    column.update(storage="string", values=present)
    if distinct == 2:
        column["measure"] = "flag"
    elif distinct > max_categories:
        column["measure"] = "typeless"
    else:
        column["measure"] = "nominal"
    return column


def read_csv(path):
    with open(path, newline="", encoding="utf-8") as handle:
        rows = list(csv.reader(handle))
    header, data = rows[0], rows[1:]
    return header, [[row[i] for row in data] for i in range(len(header))], len(data)


def close(actual, expected, what):
    check(math.isclose(float(actual), expected, rel_tol=1e-9, abs_tol=1e-9),
          "%s: document says %s, expected %r" % (what, actual, expected))


def check_document(xml_path, csv_path, max_categories=250):
    header, columns, records = read_csv(csv_path)
    root = ET.parse(xml_path).getroot()
    counts = root.find("RecordCounts")
    check(counts is not None, "no RecordCounts")
    close(counts.get("unweightedCount"), records, "unweighted record count")
    close(counts.get("weightedCount"), records, "weighted record count")

    fields = root.find("Fields").findall("Field")
    check([f.get("name") for f in fields] == header,
          "field names %r, expected %r" % ([f.get("name") for f in fields], header))
    summaries = {s.get("fieldName"): s
                 for s in root.find("DatasetSummaries").find("FieldSummaries")}
    check(list(summaries) == header, "field summaries for %r" % list(summaries))

    for field, cells in zip(fields, columns):
        name = field.get("name")
        want = expected_column(cells, max_categories)
        for attribute in ("storage", "measure"):
            check(field.get(attribute) == want[attribute],
                  "%s: %s %s, expected %s" % (name, attribute, field.get(attribute),
                                              want[attribute]))
        summary = summaries[name]
        close(summary.get("validCount"), want["valid"], name + " valid count")
        close(summary.get("missingCount"), want["missing"], name + " missing count")
        values = want["values"]
        if want["measure"] == "continuous":
            stats = field.find("ContinuousStatistics")
            check(stats is not None, name + ": no continuous statistics")
            close(stats.get("sumFreqWts"), len(values), name + " weight")
            close(stats.get("minimum"), min(values), name + " minimum")
            close(stats.get("maximum"), max(values), name + " maximum")
            close(stats.get("mean"), statistics.fmean(values), name + " mean")
            if len(values) > 1:
                close(stats.get("variance"), statistics.variance(values), name + " variance")
                ext = summary.find("ContinuousStatisticsExt")
                close(ext.get("stdDev"), statistics.stdev(values), name + " summary std.dev")
        elif want["measure"] in ("flag", "nominal"):
            stats = field.find("DiscreteStatistics")
            check(stats is not None, name + ": no categorical statistics")
            got = {c.get("category"): float(c.get("sumFreqWts")) for c in stats}
            if want["storage"] == "string":
                expected = collections.Counter(values)
            else:
                expected = collections.Counter(
                    str(v) if want["storage"] == "integer" else "%.15g" % v for v in values)
            check(got == {k: float(v) for k, v in expected.items()},
                  "%s: categories %r, expected %r" % (name, got, dict(expected)))
            listed = [v.get("value") for v in field.find("Values")]
            check(sorted(listed, key=lambda t: (float(t) if want["storage"] != "string"
                                                else t)) == listed and
                  set(listed) == set(expected),
                  "%s: category values %r" % (name, listed))
            if want["measure"] == "flag":
                flags = [v.get("flagValue") for v in field.find("Values")]
                check(flags == ["false", "true"], "%s: flag values %r" % (name, flags))
            ext = summary.find("DiscreteStatisticsExt")
            summary_counts = {c.get("value"): int(c.get("count"))
                              for c in ext.find("DistributionSummary")}
            check(summary_counts == dict(expected), name + ": summary categories differ")
        else:
            check(field.find("ContinuousStatistics") is None and
                  field.find("DiscreteStatistics") is None, name + ": typeless with statistics")
        if want["storage"] == "real":
            number = field.find("FieldFormat/NumberFormat")
            check(number is not None and int(number.get("decimalPlaces")) == want["decimals"],
                  "%s: decimals %s, expected %d" % (name, number.get("decimalPlaces"),
                                                   want["decimals"]))
    return header, columns


# Cases ------------------------------------------------------------------------

def profile(csv_path, name, *extra):
    xml_path = work_file(name)
    out, err = run(["profile", csv_path, "-o", xml_path] + list(extra))
    return xml_path, out


def case_profile_seattle():
    xml_path, table = profile(seattle_csv(), "seattle.xml")
    check_document(xml_path, seattle_csv())
    check(table.startswith("6 fields, 1461 records"), "profile's table: " + table[:200])


MIXED = (
    "id,score,flag,answer,when,clock,stamp,name,note,empty\n"
    "1,2,0,yes,2020-02-29,08:30:00,2020-01-01 00:00:00,alpha,\"has, comma\",\n"
    "2,2.5,1,no,2020-03-01,23:59:59,2020-01-01T12:00:00,beta,\"two\nlines\",\n"
    "3,,1,yes,,00:00:01,2021-06-15 06:30:15,gamma,\"quote \"\"inside\"\"\",\n"
    "4,-1.25,0,yes,1999-12-31,12:00:00,1970-01-01 00:00:00,delta,plain,\n"
    "5,1e3,1,no,2000-01-01,,2000-02-29 23:59:59,alpha,\u00fcn\u00efc\u00f6d\u00e9,\n"
)


def case_profile_mixed_columns():
    csv_path = work_file("mixed.csv")
    with open(csv_path, "w", encoding="utf-8", newline="") as handle:
        handle.write(MIXED)
    xml_path, _ = profile(csv_path, "mixed.xml", "--max-categories", "4", "--no-table")
    check_document(xml_path, csv_path, max_categories=4)
    # The table renders dates, times and timestamps back from days and seconds.
    out, _ = run(["show", xml_path])
    for text in ("1999-12-31", "2020-03-01", "00:00:01", "23:59:59", "1970-01-01 00:00:00",
                 "2021-06-15 06:30:15", "-1.25", "1000.00"):
        check(text in out, "show lacks %r:\n%s" % (text, out))


# Attributes that pooled profiles compute in another order, with the power of
# the values' magnitude their rounding error scales with.
POOLED_ROUNDING = {"mean": 1, "stdDev": 1, "variance": 2}


def same_document(one, other, where):
    """Checks that two element trees are equal, the rounded attributes up to
    1e-12 of themselves or of the magnitude of the element's extrema (a mean
    of values near +-1e18 that cancel is exact only to that magnitude)."""
    check(one.tag == other.tag, "%s: element %s, expected %s" % (where, other.tag, one.tag))
    here = "%s/%s[%s]" % (where, one.tag, one.get("name") or one.get("fieldName") or "")
    check(set(one.keys()) == set(other.keys()),
          "%s: attributes %r, expected %r" % (here, sorted(other.keys()), sorted(one.keys())))
    scale = max([abs(float(one.get(k))) for k in ("minimum", "maximum") if k in one.keys()],
                default=0.0)
    for key, value in one.items():
        if key in POOLED_ROUNDING:
            check(math.isclose(float(value), float(other.get(key)), rel_tol=1e-12,
                               abs_tol=1e-12 * scale ** POOLED_ROUNDING[key]),
                  "%s@%s: %s, expected %s" % (here, key, other.get(key), value))
        else:
            check(value == other.get(key),
                  "%s@%s: %r, expected %r" % (here, key, other.get(key), value))
    check((one.text or "").strip() == (other.text or "").strip(), here + ": text differs")
    check(len(one) == len(other), "%s: %d children, expected %d" % (here, len(other), len(one)))
    for a, b in zip(one, other):
        same_document(a, b, here)


def jobs_csv(rows):
    """A file whose columns change kind, values and categories between its
    beginning and its end, with quoted line breaks on many rows, so that the
    parts of a cut file disagree in every way the pooling must resolve."""
    lines = ["id,int_then_real,int_then_text,huge,quoted,cats,two_halves,late_dates,clock,sparse"]
    for i in range(rows):
        late = i >= rows * 2 // 3
        cells = [
            str(i + 1),
            "%d.5" % i if late and i % 3 == 0 else str(i % 97),
            "n/a" if i == rows - 5 else str(i),
            str(9223372036854775807 - i) if i == rows - 1 else
            str(-9223372036854775807 + i) if i == 1 else str(i * 1000003),
            '"line %d\nnext, ""quoted"""' % (i % 7) if i % 3 else "plain %d" % (i % 5),
            "cat%d" % (i % 6 + (6 if late else 0)),
            "a" if i < rows // 2 else "b",
            "" if not late else "2020-%02d-%02d" % (i % 12 + 1, i % 28 + 1),
            "%02d:%02d:%02d" % (i % 24, i % 60, (i * 7) % 60),
            "" if i % 4 else "%d" % (i % 11),
        ]
        lines.append(",".join(cells))
    return "\n".join(lines) + "\n"


def case_profile_jobs():
    csv_path = work_file("jobs.csv")
    with open(csv_path, "w", encoding="utf-8", newline="") as handle:
        handle.write(jobs_csv(3000))
    base, _ = profile(csv_path, "jobs-1.xml", "--max-categories", "10", "--no-table")
    one = ET.parse(base).getroot()
    for jobs in ("2", "3", "4", "7", "64"):
        xml_path, _ = profile(csv_path, "jobs-%s.xml" % jobs, "--max-categories", "10",
                              "--no-table", "--jobs", jobs)
        same_document(one, ET.parse(xml_path).getroot(), "--jobs " + jobs)
    # The union of the parts' categories overflows the cap only when pooled.
    fields = {f.get("name"): f for f in one.find("Fields").findall("Field")}
    check(fields["cats"].get("measure") == "typeless", "cats should overflow the cap of 10")
    check(fields["two_halves"].get("measure") == "flag", "two_halves should be a flag")

    # A fault in any part is reported as one pass reports it.
    broken = jobs_csv(3000).split("\n")
    broken[2500] = broken[2500].rsplit(",", 1)[0]
    for name, text in (("ragged.csv", "\n".join(broken)),
                       ("quote.csv", jobs_csv(3000).replace("plain 3", 'pl"ain 3', 1))):
        path = work_file(name, text)
        _, want = run(["profile", path, "-o", work_file(name + ".xml")], expect=1)
        for jobs in ("2", "5"):
            _, got = run(["profile", path, "-o", work_file(name + ".xml"), "--jobs", jobs],
                         expect=1)
            check(got == want, "--jobs %s says %r, one pass %r" % (jobs, got, want))


def row_of(table, name):
    for line in table.splitlines():
        if line.split(" ", 1)[0] == name:
            return line
    raise Failure("no row for %s in\n%s" % (name, table))


def check_in_order(line, pieces):
    at = 0
    for piece in pieces:
        found = line.find(piece, at)
        check(found >= 0, "expected %r after column %d in\n%s" % (piece, at, line))
        at = found + len(piece)


def case_show_seattle():
    xml_path, _ = profile(seattle_csv(), "seattle.xml", "--no-table")
    table, _ = run(["show", xml_path])
    header, columns, records = read_csv(seattle_csv())
    check(table.startswith("6 fields, %d records" % records), table[:100])
    for name, cells in zip(header, columns):
        line = row_of(table, name)
        want = expected_column(cells, 250)
        values = want["values"]
        if want["storage"] == "real":
            d = want["decimals"]
            pieces = ["%.*f" % (d, min(values)), "%.*f" % (d, max(values)),
                      "%.*f" % (d + 2, statistics.fmean(values)),
                      "%.*f" % (d + 2, statistics.stdev(values))]
        elif want["storage"] == "date":
            day = lambda n: (EPOCH + datetime.timedelta(days=math.floor(n))).isoformat()
            pieces = [day(min(values)), day(max(values)), day(statistics.fmean(values)),
                      "%.1f days" % statistics.stdev(values)]
        else:
            ranked = collections.Counter(values).most_common()
            pieces = ["%s: %d" % item for item in ranked[:3]]
            pieces.append("+%d more" % (len(ranked) - 3))
        check_in_order(line, [want["storage"], want["measure"], "input", str(want["valid"]),
                              str(want["missing"])] + pieces)


def case_check_accepts():
    xml_path, _ = profile(seattle_csv(), "seattle.xml", "--no-table")
    out, _ = run(["check", xml_path])
    lines = out.strip().splitlines()
    check(len(lines) == 1 and "accepted" in lines[0] and "6 fields" in lines[0] and
          "1461 records" in lines[0], "check printed %r" % out)


def broken_copy(xml_path, name, change):
    tree = ET.parse(xml_path)
    change(tree.getroot())
    path = work_file(name)
    tree.write(path, encoding="utf-8", xml_declaration=True)
    return path


def field(root, name):
    return next(f for f in root.find("Fields") if f.get("name") == name)


def case_check_names_broken_parts():
    xml_path, _ = profile(seattle_csv(), "seattle.xml", "--no-table")

    def bad_storage(root):
        field(root, "temp_min").set("storage", "bogus")

    def empty_statistics(root):
        stats = field(root, "wind").find("ContinuousStatistics")
        stats.set("sumFreqWts", "0")
        stats.set("sumCompWts", "0")

    def repeated_name(root):
        field(root, "temp_max").set("name", "precipitation")

    def wrong_format(root):
        fmt = field(root, "date").find("FieldFormat")
        fmt.remove(fmt[0])
        ET.SubElement(fmt, "NumberFormat", name="", width="5", decimalPlaces="0",
                      formatType="standard")

    def negative_summary_count(root):
        summaries = root.find("DatasetSummaries/FieldSummaries")
        summaries[5].set("validCount", "-5")

    def special_record_count(root):
        root.find("RecordCounts").set("unweightedCount", "INF")

    cases = [
        (bad_storage, ['field #4 "temp_min"', "storage", "bogus"]),
        (empty_statistics, ['field #5 "wind"', "continuous statistics"]),
        (repeated_name, ['field #3 "precipitation"', "same name"]),
        (wrong_format, ['field #1 "date"', "NumberFormat", "date"]),
        (negative_summary_count, ['field summary #6 "weather"']),
        (special_record_count, ["record counts", "unweightedCount"]),
    ]
    for change, expected in cases:
        path = broken_copy(xml_path, change.__name__ + ".xml", change)
        # The library itself must refuse the document, or the diagnosis would
        # be about nothing.
        run(["show", path], expect=1)
        out, err = run(["check", path], expect=1)
        for text in expected:
            check(text in err, "%s: check should say %r:\n%s" % (change.__name__, text, err))

    malformed = work_file("malformed.xml", "<DataModel><Fields>")
    _, err = run(["check", malformed], expect=1)
    check("not well-formed" in err, err)


def case_roundtrip():
    xml_path, _ = profile(seattle_csv(), "seattle.xml", "--no-table")
    out_path = work_file("again.xml")
    run(["roundtrip", xml_path, "-o", out_path])
    with open(xml_path, "rb") as a, open(out_path, "rb") as b:
        check(a.read() == b.read(), "export after load differs from the first export")
    stdout, _ = run(["roundtrip", xml_path])
    with open(xml_path, encoding="utf-8") as a:
        check(stdout == a.read(), "roundtrip to stdout differs")
    broken = broken_copy(xml_path, "broken.xml",
                         lambda root: field(root, "wind").set("measure", "sometimes"))
    run(["roundtrip", broken], expect=1)


def format_file(name, element):
    return work_file(name, ET.tostring(element, encoding="unicode"))


def case_render():
    csv_path = work_file("mixed.csv")
    with open(csv_path, "w", encoding="utf-8", newline="") as handle:
        handle.write(MIXED)
    seattle, _ = profile(seattle_csv(), "seattle.xml", "--no-table")
    mixed, _ = profile(csv_path, "mixed.xml", "--no-table")
    s_root, m_root = ET.parse(seattle).getroot(), ET.parse(mixed).getroot()
    date = format_file("date.xml", field(s_root, "date").find("FieldFormat")[0])
    number = format_file("number.xml", field(s_root, "wind").find("FieldFormat")[0])
    text = format_file("text.xml", field(s_root, "weather").find("FieldFormat")[0])
    clock = format_file("time.xml", field(m_root, "clock").find("FieldFormat")[0])
    stamp = format_file("stamp.xml", field(m_root, "stamp").find("FieldFormat")[0])

    day = (datetime.date(2012, 1, 1) - EPOCH).days
    cases = [
        ([date, str(day)], "2012-01-01"),
        ([date, "2016-02-29"], "2016-02-29"),
        ([date, "86400", "--units", "seconds"], "1970-01-02"),
        ([number, "3.14159"], "%.1f" % 3.14159),
        ([number, "-2"], "%.1f" % -2),
        ([number, "."], "."),
        ([text, "drizzle"], "drizzle"),
        ([clock, str(8 * 3600 + 30 * 60 + 5)], "08:30:05"),
        ([clock, "23:59:59"], "23:59:59"),
        ([stamp, "2020-01-01T12:00:00"], "2020-01-01 12:00:00"),
    ]
    for args, expected in cases:
        out, _ = run(["render"] + args)
        check(out == expected + "\n", "render %r gave %r, expected %r" % (args, out, expected))

    # The README's examples.
    formats = os.path.join(SOURCE, "examples", "formats")
    whole, cents = divmod(round(1234567.891 * 100), 100)
    days, rest = divmod(93784, 86400)
    readme = [
        (["number.xml", "1234567.891"], "{:,}".format(whole).replace(",", ".") + ",%02d" % cents),
        (["percent.xml", "12.345"], "%.1f%%" % 12.345),
        (["long-date.xml", "2012-01-01"], datetime.date(2012, 1, 1).strftime("%d %b %Y")),
        (["duration.xml", "93784"], "%d %02d:%02d:%02d" % (days, rest // 3600, rest // 60 % 60,
                                                           rest % 60)),
    ]
    for (name, value), expected in readme:
        out, _ = run(["render", os.path.join(formats, name), value])
        check(out == expected + "\n", "render %s %s gave %r, expected %r" % (name, value, out,
                                                                            expected))

    not_a_format = work_file("field.xml", '<Field name="x"/>')
    run(["render", not_a_format, "1"], expect=1)
    run(["render", number, "abc"], expect=2)
    run(["render", date, "1", "--units", "none"], expect=1)


def case_exit_codes():
    csv_path = seattle_csv()
    xml_path, _ = profile(csv_path, "seattle.xml", "--no-table")
    missing = os.path.join(WORK, "no-such-file")

    out, _ = run(["--help"])
    for command in ("profile", "show", "check", "roundtrip", "render"):
        check(command in out, "--help does not mention " + command)
        sub, _ = run([command, "--help"])
        check("Usage" in sub or "usage" in sub.lower(), command + " --help: " + sub[:200])

    usage_errors = [
        [],
        ["bogus"],
        ["profile"],
        ["profile", csv_path, "--max-categories", "0"],
        ["profile", csv_path, "--no-such-option"],
        ["show", xml_path, "extra"],
        ["render", xml_path],
        ["render", xml_path, "1", "--units", "weeks"],
    ]
    for args in usage_errors:
        run(args, expect=2)

    for args in (["profile", missing], ["show", missing], ["check", missing],
                 ["roundtrip", missing], ["render", missing, "1"]):
        _, err = run(args, expect=2)
        check("no-such-file" in err, "the message should name the file: " + err)
    run(["profile", csv_path, "-o", os.path.join(missing, "out.xml")], expect=2)

    malformed = work_file("malformed.xml", "<DataModel><Fields><Field name='a'>")
    for command in ("show", "check", "roundtrip"):
        run([command, malformed], expect=1)
    run(["render", malformed, "1"], expect=1)

    bad_csvs = [
        ("empty.csv", b"", "empty"),
        ("too-few.csv", b"a,b,c\n1,2,3\n4,5\n", "row 3"),
        ("too-many.csv", b"a,b\n1,2\n3,4\n5,6,7\n", "row 4"),
        ("not-utf8.csv", b"a,b\n1,caf\xe9\n", "UTF-8"),
        ("zero-byte.csv", b"a,b\n1,x\x00y\n", "row 2, column 2: the text holds the control character 0x00"),
        ("control.csv", b"a,b\x01\n1,2\n", "the header, column 2: the text holds the control character 0x01"),
        ("late-control.csv", b"a\n\"abcdefghij\tklmnopqrstu\x1fv\"\n",
         "row 2, column 1: the text holds the control character 0x1F"),
        ("bad-quote.csv", b'a,b\n1,"x"y\n', "row 2"),
        ("duplicate.csv", b"a,a\n1,2\n", "repeats"),
    ]
    for name, content, message in bad_csvs:
        path = work_file(name, content, "wb")
        _, err = run(["profile", path], expect=1)
        check(message in err, "%s: expected %r in %r" % (name, message, err))

    # TAB, line feed and carriage return are text a document carries.
    carried = work_file("carried-controls.csv",
                        b'a,b\n"abcdefghij\tklmnop\r\nqrstuvwxyz",1\n', "wb")
    run(["profile", carried, "-o", work_file("carried-controls.xml")])

    header_only = work_file("header-only.csv", b"a,b\n", "wb")
    out, _ = run(["profile", header_only, "-o", work_file("header-only.xml")])
    check(out.startswith("2 fields, 0 records"), out)


def case_shipped_document():
    shipped = os.path.join(SOURCE, "examples", "data", "seattle-weather.xml")
    fresh, _ = profile(seattle_csv(), "seattle.xml", "--no-table")
    with open(shipped, "rb") as a, open(fresh, "rb") as b:
        check(a.read() == b.read(),
              "examples/data/seattle-weather.xml is stale: regenerate it with "
              "`dmtool profile examples/data/seattle-weather.csv -o "
              "examples/data/seattle-weather.xml`")


def main():
    global DMTOOL, SOURCE, WORK
    parser = argparse.ArgumentParser()
    parser.add_argument("--dmtool", required=True)
    parser.add_argument("--source", required=True)
    parser.add_argument("--work", required=True)
    parser.add_argument("case")
    args = parser.parse_args()
    DMTOOL, SOURCE, WORK = args.dmtool, args.source, args.work
    shutil.rmtree(WORK, ignore_errors=True)
    os.makedirs(WORK)
    case = globals().get("case_" + args.case)
    if case is None:
        print("unknown case " + args.case, file=sys.stderr)
        return 2
    try:
        case()
    except Failure as failure:
        print("FAILED: %s" % failure, file=sys.stderr)
        return 1
    print("passed: " + args.case)
    return 0


if __name__ == "__main__":
    sys.exit(main())
