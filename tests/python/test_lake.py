"""The lake of examples/lake, on worker processes of its own: what it finds, and what it survives."""

import os
import pathlib
import signal
import subprocess
import sys

import numpy
import pandas
import pytest

pytest.importorskip("distributed")

LAKE = pathlib.Path(__file__).resolve().parents[2] / "examples" / "lake"
sys.path.insert(0, str(LAKE))
# The workers look for it too.
os.environ["PYTHONPATH"] = os.pathsep.join([str(LAKE), os.environ.get("PYTHONPATH", "")])
import lake  # noqa: E402


@pytest.fixture(scope="module")
def folder(tmp_path_factory):
    made = tmp_path_factory.mktemp("lake")
    subprocess.run([sys.executable, LAKE / "make_lake.py", made, "1200"], check=True)
    return made


@pytest.fixture(scope="module")
def client():
    with lake.local_cluster(2) as cluster, lake.Client(cluster) as made:
        yield made


@pytest.fixture(scope="module")
def tables(client, folder):
    return lake.read_lake(client, lake.documents_below(folder), batch=50)


def test_every_document_ends_in_a_table(folder, tables):
    paths = set(lake.documents_below(folder))
    colors, verdicts, broken = tables
    assert len(paths) == 1200 and len(broken) == 12
    assert set(broken["path"]) == {path for path in paths if path.endswith("99.zol")}
    assert set(colors["path"]) == set(verdicts["path"]) == paths - set(broken["path"])
    assert len(colors) == 1188 * 4 and len(verdicts) == 1188 * 3
    assert set(broken["code"]) == {23, 10, 34, 36} and broken["message"].str.len().min() > 10
    assert set(colors["illuminant"]) == {"D50"} and set(verdicts["status"]) <= {
        "pass", "warning", "fail"}
    # The same without any cluster.
    alone = lake.read_batch(lake.documents_below(folder))
    for table, expected in zip(tables, alone):
        pandas.testing.assert_frame_equal(table, expected)


def test_the_near_duplicate_and_the_drifts_are_found(tables):
    colors, verdicts, _ = tables
    pairs = lake.near_duplicates(colors)
    assert len(pairs) == 1
    assert {pairs.loc[0, "first_color"], pairs.loc[0, "second_color"]} == {
        "Standard 00", "Copy of standard 00"}
    assert pairs.loc[0, "de76"] == pytest.approx(0.2 * 3 ** 0.5, abs=2e-3)
    found = lake.drifts(verdicts)
    drifting = found[found["is_drift"]]
    assert drifting["standard"].tolist() == [f"Standard {number}3" for number in range(4)]
    assert drifting["slope"].between(0.3, 1).all()


def test_close_pairs_are_those_of_comparing_all():
    points = numpy.random.default_rng(1).uniform(-3, 3, (400, 3))
    apart = numpy.sqrt(((points[:, None] - points[None]) ** 2).sum(axis=2)) <= 0.5
    expected = {(i, j) for i, j in zip(*numpy.nonzero(apart)) if i < j}
    found = [tuple(sorted(pair)) for left, right in lake.close_pairs(points, 0.5)
             for pair in zip(left, right)]
    assert len(found) == len(set(found)) and set(found) == expected and len(found) > 50


def test_a_worker_that_is_killed_costs_nothing_but_time(client, folder, tables):
    killed = []

    def kill(done):
        if done == 5:
            pid = next(iter(client.run(os.getpid).values()))
            os.kill(pid, signal.SIGKILL)
            killed.append(pid)

    again = lake.read_lake(client, lake.documents_below(folder), batch=20, on_batch=kill,
                           pause=0.002)
    assert killed
    client.wait_for_workers(2, timeout=60)
    assert killed[0] not in client.run(os.getpid).values()
    for table, expected in zip(again, tables):
        pandas.testing.assert_frame_equal(table, expected)
