#!/usr/bin/env python3
"""Prints the benchmark table from the JSON output of the bench/ programs.

    bench/report.py DIR

DIR holds one <subject>.json per benchmark program, each written with
--benchmark_repetitions=N --benchmark_format=json. Every row takes the median
of the repetitions of our path and of its anchor, both from the same run of
the same program, and divides them; a single absolute time is never compared.
Exits 0 whether or not every target is met; a missing benchmark shows as "-".
"""

import json
import os
import re
import sys

NS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


def load(directory):
    """{subject: {run name without option suffixes: median entry}}."""
    medians = {}
    for name in sorted(os.listdir(directory)):
        if not name.endswith(".json"):
            continue
        try:
            with open(os.path.join(directory, name)) as handle:
                data = json.load(handle)
        except (OSError, ValueError):
            continue
        runs = {}
        for entry in data.get("benchmarks", []):
            if entry.get("aggregate_name") != "median" or entry.get("error_occurred"):
                continue
            run = re.sub(r"/(min_time|iterations|repeats):[^/]*|/(real|manual)_time", "",
                         entry["run_name"])
            runs[run] = entry
        medians[name[:-len(".json")]] = runs
    return medians


class Table:
    def __init__(self, medians):
        self.medians = medians
        self.rows = []

    def entry(self, subject, run):
        return self.medians.get(subject, {}).get(run)

    def time_ns(self, subject, run, per=1):
        """Median wall time per iteration (divided by `per`) in ns."""
        entry = self.entry(subject, run)
        if entry is None:
            return None
        return entry["real_time"] * NS[entry["time_unit"]] / per

    def counter(self, subject, run, name, scale=1.0):
        entry = self.entry(subject, run)
        if entry is None or name not in entry:
            return None
        return entry[name] * scale

    def ratio_row(self, path, ours, anchor, limit, show=None):
        """Ours against the anchor; met when ours / anchor <= limit."""
        ratio = ours / anchor if ours is not None and anchor else None
        met = None if ratio is None else ratio <= limit
        self.rows.append((path, show(ours) if show else fmt_time(ours),
                          show(anchor) if show else fmt_time(anchor),
                          fmt_ratio(ratio), f"<= {limit:g}x", met))
        return ratio

    def absolute_row(self, path, ours, anchor, limit_ns):
        """Ours per operation against an absolute limit; the anchor is shown."""
        ratio = ours / anchor if ours is not None and anchor else None
        met = None if ours is None else ours <= limit_ns
        self.rows.append((path, fmt_time(ours), fmt_time(anchor), fmt_ratio(ratio),
                          f"< {limit_ns:g} ns", met))

    def info_row(self, path, ours, anchor, ratio, target, met=None):
        self.rows.append((path, ours, anchor, ratio, target, met))

    def print(self):
        header = ("path", "ours", "anchor", "ratio", "target", "met")
        cells = [header] + [
            (p, o or "-", a or "-", r or "-", t, "-" if m is None else ("yes" if m else "NO"))
            for p, o, a, r, t, m in self.rows
        ]
        widths = [max(len(row[i]) for row in cells) for i in range(len(header))]
        for index, row in enumerate(cells):
            print("  ".join(cell.ljust(widths[i]) if i == 0 else cell.rjust(widths[i])
                            for i, cell in enumerate(row)).rstrip())
            if index == 0:
                print("  ".join("-" * w for w in widths))
        missed = [row[0] for row in self.rows if row[5] is False]
        print()
        print(f"{len(self.rows)} rows; targets missed: {', '.join(missed) if missed else 'none'}")


def fmt_time(ns):
    if ns is None:
        return None
    for unit, scale in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if ns >= scale:
            return f"{ns / scale:.3g} {unit}"
    return f"{ns:.3g} ns"


def fmt_ratio(ratio):
    return None if ratio is None else f"{ratio:.2f}x"


def fmt_bytes(count):
    if count is None:
        return None
    for unit, scale in (("GB", 1e9), ("MB", 1e6), ("kB", 1e3)):
        if count >= scale:
            return f"{count / scale:.3g} {unit}"
    return f"{count:.0f} B"


def build(table):
    t = table

    t.ratio_row("number Format (standard) vs snprintf",
                t.time_ns("number_format", "BM_NumberFormatStandard"),
                t.time_ns("number_format", "BM_BareSnprintf"), 2.0)
    for kind in ("Date", "Time", "DateTime"):
        t.ratio_row(f"{kind.lower()} Format vs reused ICU formatter",
                    t.time_ns("date_format", f"BM_{kind}Format_Library"),
                    t.time_ns("date_format", f"BM_{kind}Format_ReusedIcu"), 1.2)

    per_value = lambda run: t.counter("stats", run, "per_value", 1e9)
    for categories in (10, 1000, 100000):
        t.absolute_row(f"categorical Update, {categories} numeric categories (vs unordered_map)",
                       per_value(f"BM_CatStatsIntUpdate/{categories}"),
                       per_value(f"BM_UnorderedMapIntegerCount/{categories}"), 25)
        t.absolute_row(f"categorical Update, {categories} string categories (vs unordered_map)",
                       per_value(f"BM_CatStatsStrUpdate/{categories}"),
                       per_value(f"BM_UnorderedMapTextCount/{categories}"), 50)
    t.absolute_row("continuous Update, weighted (vs summing loop)",
                   per_value("BM_ContStatsDblWeightedUpdate"), per_value("BM_PlainWeightedSum"), 10)
    t.absolute_row("continuous Update, unweighted (vs summing loop)",
                   per_value("BM_ContStatsDblUnweightedUpdate"),
                   per_value("BM_PlainWeightedSum"), 10)

    for fields in (1000, 10000, 100000):
        t.ratio_row(f"metadata load, {fields} rich fields vs Xerces parse+walk",
                    t.time_ns("metadata", f"Load/{fields}"),
                    t.time_ns("metadata", f"LoadFloor/{fields}"), 1.5)
    plain = {}
    for fields in (1000, 10000, 100000, 1000000):
        plain[fields] = t.ratio_row(f"metadata load, {fields} plain fields vs Xerces parse+walk",
                                    t.time_ns("metadata", f"LoadPlain/{fields}"),
                                    t.time_ns("metadata", f"LoadPlainFloor/{fields}"), 1.5)
    small, large = plain[1000], plain[1000000]
    t.info_row("metadata load ratio at 1,000,000 vs at 1,000 plain fields", fmt_ratio(large),
               fmt_ratio(small), None if small is None or large is None else f"{large / small:.2f}",
               "1M <= 1k", None if small is None or large is None else large <= small)
    for fields in (1000, 10000, 100000):
        t.ratio_row(f"ExportXMLDoc, {fields} fields vs Xerces DOM+serializer",
                    t.time_ns("metadata", f"Export/{fields}"),
                    t.time_ns("metadata", f"ExportFloor/{fields}"), 1.5)
    t.absolute_row("GetField by name, 1,000,000 fields (vs unordered_map)",
                   t.time_ns("metadata", "GetField/1000000"),
                   t.time_ns("metadata", "MapFind/1000000"), 200)
    for fields in (1000, 100000):
        kept = t.counter("metadata", f"LoadMemory/{fields}", "kept_bytes")
        doc = t.counter("metadata", f"LoadMemory/{fields}", "doc_bytes")
        t.info_row(f"memory kept by a loaded {fields}-field container vs document size",
                   fmt_bytes(kept), fmt_bytes(doc),
                   None if kept is None or not doc else f"{kept / doc:.2f}x", "reported")
        peak = t.counter("metadata", f"LoadMemory/{fields}", "peak_bytes")
        floor = t.counter("metadata", f"LoadFloorMemory/{fields}", "peak_bytes")
        t.info_row(f"peak memory of a {fields}-field load vs Xerces DOM alone", fmt_bytes(peak),
                   fmt_bytes(floor),
                   None if peak is None or not floor else f"{peak / floor:.2f}x", "reported")

    t.ratio_row("record cache append vs one fwrite",
                t.time_ns("cache", "Append/LocalTempFile"),
                t.time_ns("cache", "Append/FwriteAnchor"), 4.0)
    t.ratio_row("record cache read vs one fread", t.time_ns("cache", "Read/LocalTempFile"),
                t.time_ns("cache", "Read/FreadAnchor"), 12.0)

    for rows in (100000, 1000000):
        t.ratio_row(f"dmtool profile, {rows} rows x 20 columns vs bare libcsv parse",
                    t.time_ns("profile", f"Profile/{rows}/jobs:1"),
                    t.time_ns("profile", f"LibcsvParse/{rows}"), 3.0)
    one = t.time_ns("profile", "Profile/1000000/jobs:1")
    two = t.time_ns("profile", "Profile/1000000/jobs:2")
    t.info_row("dmtool profile --jobs 2 vs --jobs 1, 1,000,000 rows (speed-up)", fmt_time(two),
               fmt_time(one), None if one is None or not two else f"{one / two:.2f}x faster",
               "reported")
    small = t.counter("profile", "Profile/100000/jobs:1", "peak_rss_bytes")
    large = t.counter("profile", "Profile/1000000/jobs:1", "peak_rss_bytes")
    t.info_row("dmtool profile peak RSS, 1,000,000 rows vs 100,000 rows", fmt_bytes(large),
               fmt_bytes(small), None if small is None or not large else f"{large / small:.2f}x",
               "<= 1.2x", None if small is None or large is None else large <= 1.2 * small)
    two_peak = t.counter("profile", "Profile/1000000/jobs:2", "peak_rss_bytes")
    t.info_row("dmtool profile peak RSS, 1,000,000 rows, --jobs 2 vs --jobs 1",
               fmt_bytes(two_peak), fmt_bytes(large),
               None if large is None or not two_peak else f"{two_peak / large:.2f}x", "reported")


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__.strip())
    table = Table(load(sys.argv[1]))
    build(table)
    table.print()


if __name__ == "__main__":
    main()
