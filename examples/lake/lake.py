#!/usr/bin/env python3
"""One table of all colours in a folder tree of documents, made by many processes.

    lake.py FOLDER [--workers N] [--batch N] [--out FOLDER]

Worker processes of Dask read the documents in batches. What cannot be read ends in a table of its
own. A worker that dies costs time and nothing else: its batches are read again by another one.
"""

import argparse
import itertools
import os
import pathlib
import sys
import time

import numpy
import pandas
from distributed import Client, LocalCluster, as_completed

import zol

COLORS = ("path", "palette", "color_set", "color", "role", "illuminant", "observer", "source",
          "l", "a", "b", "hex")
VERDICTS = ("path", "record", "standard", "measurement", "measured", "tolerance", "formula",
            "value", "high", "status", "conditions", "reason")
BROKEN = ("path", "code", "line", "column", "where", "message")


# --- On the workers ------------------------------------------------------------------------------


def read_batch(paths, pause=0.0):
    """The three tables of some documents, each as columns: colours, verdicts, what is broken."""
    parts = ([], [], [])
    for path in paths:
        try:
            with zol.open(path) as document:
                # What a document says of its own colours, under its own conditions.
                measured = zol.color.measure(document)
                judged = zol.color.evaluate(document)
        except (OSError, zol.LoadError) as error:
            parts[2].append(broken_columns(path, error))
            continue
        for kept, table, names in ((parts[0], measured, COLORS), (parts[1], judged, VERDICTS)):
            if table.row_count:
                columns = {name: table[name] for name in names[1:]}
                kept.append({"path": [path] * table.row_count, **columns})
        if pause:
            time.sleep(pause)
    return tuple(joined(columns, names) for columns, names in
                 zip(parts, (COLORS, VERDICTS, BROKEN)))


def broken_columns(path, error):
    fault = error.faults[0] if getattr(error, "faults", None) else None
    place = fault.place if fault is not None else None
    return {"path": [path], "code": [getattr(error, "code", 0)],
            "line": [place.line if place else 0], "column": [place.column if place else 0],
            "where": [fault.path if fault is not None else ""], "message": [str(error)]}


def joined(parts, names):
    if not parts:
        return None
    return pandas.DataFrame({name: numpy.concatenate([part[name] for part in parts])
                             for name in names}, copy=False)


# --- The whole lake ------------------------------------------------------------------------------


def documents_below(folder):
    return sorted(str(path) for path in pathlib.Path(folder).rglob("*.zol*"))


def read_lake(client, paths, batch=200, on_batch=None, pause=0.0):
    """All three tables, in the order of the paths. `on_batch` is told how many batches are done."""
    batches = [paths[i:i + batch] for i in range(0, len(paths), batch)]
    futures = client.map(read_batch, batches, pause=pause, pure=False)
    place = {future.key: number for number, future in enumerate(futures)}
    results = [None] * len(batches)
    running = as_completed(futures)
    del futures
    for done, future in enumerate(running, 1):
        results[place[future.key]] = future.result()
        future.release()  # the worker need not keep it any longer
        if on_batch is not None:
            on_batch(done)
    tables = []
    for number, names in enumerate((COLORS, VERDICTS, BROKEN)):
        parts = [result[number] for result in results if result[number] is not None]
        tables.append(pandas.concat(parts, ignore_index=True) if parts
                      else pandas.DataFrame(columns=list(names)))
    return tables


# --- Near duplicates -----------------------------------------------------------------------------


def near_duplicates(colors, within=0.5):
    """Pairs of colours with different names that lie within so much of each other in CIELAB (DE*ab)
    under one light and observer, by rows of the table; and their CIEDE2000. Measurements are left
    out, which lie close to each other as they should.

    The space is cut into cubes of that size, so that a colour is compared with those of its own
    cube and of 13 of its 26 neighbours, the others being compared with it.
    """
    found = []
    known = colors[colors["role"] != "measurement"].dropna(subset=["l"]).reset_index()
    # A colour that stands in many documents is one, by its name and numbers.
    known = known.drop_duplicates(["color", "illuminant", "observer", "l", "a", "b"])
    for _, group in known.groupby(["illuminant", "observer"], sort=True):
        lab = group[["l", "a", "b"]].to_numpy(float)
        names = pandas.factorize(group["color"])[0]
        rows = group["index"].to_numpy()
        for left, right in close_pairs(lab, within):
            apart = names[left] != names[right]
            left, right = left[apart], right[apart]
            found.append(pandas.DataFrame({
                "first": rows[left], "second": rows[right],
                "de76": zol.color.difference(lab[left], lab[right], "76"),
                "de2000": zol.color.difference(lab[left], lab[right])}))
    if not found:
        return pandas.DataFrame(columns=["first", "second", "de76", "de2000"])
    pairs = pandas.concat(found).sort_values(["de76", "first", "second"], ignore_index=True)
    for end in ("first", "second"):
        pairs[end + "_color"] = colors["color"].to_numpy()[pairs[end].to_numpy(int)]
        pairs[end + "_path"] = colors["path"].to_numpy()[pairs[end].to_numpy(int)]
    return pairs


def close_pairs(lab, within):
    """Index pairs of points that are at most so far apart, in some arrays."""
    cube = numpy.floor(lab / within).astype(numpy.int64)
    cube -= cube.min(axis=0) - 1
    size = cube.max(axis=0) + 2
    keys = (cube[:, 0] * size[1] + cube[:, 1]) * size[2] + cube[:, 2]
    order = numpy.argsort(keys, kind="stable")
    ordered = keys[order]
    # The cube itself, and the half of its neighbours that comes behind it.
    steps = [step for step in itertools.product((-1, 0, 1), repeat=3) if step >= (0, 0, 0)]
    for l, a, b in steps:
        other = keys + (l * size[1] + a) * size[2] + b
        begin = numpy.searchsorted(ordered, other, "left")
        count = numpy.searchsorted(ordered, other, "right") - begin
        left = numpy.repeat(numpy.arange(len(keys)), count)
        offset = numpy.arange(len(left)) - numpy.repeat(numpy.cumsum(count) - count, count)
        right = order[numpy.repeat(begin, count) + offset]
        near = numpy.sqrt(((lab[left] - lab[right]) ** 2).sum(axis=1)) <= within
        if (l, a, b) == (0, 0, 0):
            near &= left < right  # each pair once, and none with itself
        yield left[near], right[near]


# --- Drifts --------------------------------------------------------------------------------------


def drifts(verdicts, least=0.1, sigmas=4.0):
    """How the differences from each standard change over time: a straight line through them.

    A row for each standard and formula with three dates at least; `is_drift` where the line rises by
    `least` a year or more and by so many times its standard error.
    """
    known = verdicts.dropna(subset=["value", "measured"])
    moment = pandas.to_datetime(known["measured"], utc=True, errors="coerce")
    known = known.assign(years=(moment - pandas.Timestamp("2000-01-01", tz="UTC"))
                         / pandas.Timedelta(days=365.25)).dropna(subset=["years"])
    rows = []
    for (standard, formula), group in known.groupby(["standard", "formula"], sort=True):
        x, y = group["years"].to_numpy(float), group["value"].to_numpy(float)
        if len(numpy.unique(x)) < 3:
            continue
        centred = x - x.mean()
        slope = (centred * y).sum() / (centred ** 2).sum()
        rest = y - y.mean() - slope * centred
        error = numpy.sqrt((rest ** 2).sum() / (len(x) - 2) / (centred ** 2).sum())
        rows.append((standard, formula, len(x), numpy.ptp(x), y.mean(), slope, error,
                     bool(slope >= least and slope > sigmas * error)))
    return pandas.DataFrame(rows, columns=["standard", "formula", "count", "years", "mean",
                                           "slope", "slope_error", "is_drift"])


# --- The command ---------------------------------------------------------------------------------


def local_cluster(workers):
    """Processes of their own, each with one thread, that are started again if they die."""
    return LocalCluster(n_workers=workers, threads_per_worker=1, processes=True,
                        dashboard_address=None, host="127.0.0.1")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("folder")
    parser.add_argument("--workers", type=int, default=os.cpu_count())
    parser.add_argument("--batch", type=int, default=200, help="documents that a task reads")
    parser.add_argument("--out", help="folder to write the tables to, as CSV")
    options = parser.parse_args()
    paths = documents_below(options.folder)
    if not paths:
        sys.exit(f"{options.folder}: no documents")
    with local_cluster(options.workers) as cluster, Client(cluster) as client:
        start = time.perf_counter()
        colors, verdicts, broken = read_lake(client, paths, options.batch)
        took = time.perf_counter() - start
    print(f"{len(paths)} documents in {took:.1f} s: {len(paths) / took:.0f} a second with "
          f"{options.workers} workers")
    start = time.perf_counter()
    duplicates, drifting = near_duplicates(colors), drifts(verdicts)
    print(f"{len(colors)} colours, {len(verdicts)} verdicts, {len(broken)} broken documents; "
          f"{len(duplicates)} near duplicates, {int(drifting['is_drift'].sum())} drifts "
          f"in {time.perf_counter() - start:.1f} s")
    if options.out:
        out = pathlib.Path(options.out)
        out.mkdir(parents=True, exist_ok=True)
        for name, table in (("colors", colors), ("verdicts", verdicts), ("broken", broken),
                            ("duplicates", duplicates), ("drifts", drifting)):
            table.to_csv(out / f"{name}.csv", index=False)


if __name__ == "__main__":
    main()
