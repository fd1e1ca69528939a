"""Stores as mappings: values, changes, refusals, lifetimes."""

import gc
import io
import os
import pathlib
import shutil
import subprocess
import sys
import threading
import warnings

import numpy
import pandas
import pytest

import zpbase
from conftest import TABLE


def test_components_have_the_values_of_the_table(store, rows):
    known = {column.name: column for column in zpbase.columns()}
    with zpbase.open(store) as records:
        assert list(records) == sorted(rows) and len(records) == len(rows)
        for id, row in rows.items():
            component = records[id]
            assert (component.name, component.formula) == (row["name"], row["formula"])
            for name, cell in row.items():
                if name in known and known[name].kind == "number":
                    assert component.get(name) == (float(cell) if cell else None), (id, name)
        water = records[next(id for id, row in rows.items() if row["name"] == "Water")]
    critical = water.constants["tc_K"]
    assert (float(critical), critical.unit, critical.label) == (water["tc_K"], "K", "critical temperature")
    density = water.correlations["rho_liq"]
    row = next(row for row in rows.values() if row["name"] == "Water")
    cells = [row[f"rho_liq_{letter}"] for letter in "ABCDEFGHI" if row.get(f"rho_liq_{letter}")]
    assert density.equation == int(row["rho_liq_eq"]) and density.unit == "kmol/m3"
    assert density.coefficients.tolist()[: len(cells)] == [float(numpy.float32(cell)) for cell in cells]
    assert set(water) >= {"name", "tc_K", "rho_liq"} and "tc_K" in water
    assert all(key not in water and water.get(key) is None for key in ("no", 3.5, "\udcff"))
    assert water[12] == water["tc_K"], "a value has its data id for a key too"


@pytest.mark.parametrize("mode", ["r", "r+"])
def test_frame_is_what_pandas_reads_from_the_export(store, zp, tmp_path, mode):
    with zpbase.open(store, "r+") as records:
        records[100], records[101] = b"no component", zpbase.Component(name="Größe", cas="0-0-0", unifac_groups={"1": 2, "12R": 1})
    zp("store", "export", store, tmp_path / "all.csv", "--skip")
    expected = pandas.read_csv(tmp_path / "all.csv", index_col="id")
    with zpbase.open(store, mode) as records:
        frame = records.to_pandas()
    kinds = frame.dtypes.astype(str).to_dict()
    assert (kinds["tc_K"], kinds["rho_liq_A"], kinds["rho_liq_eq"], kinds["cas"]) == ("float32", "float32", "Int32", "object")
    pandas.testing.assert_frame_equal(frame, expected.astype(kinds), check_exact=True)
    assert frame["unifac_groups"][101] == "1:2 12R:1" and frame.attrs["units"]["pc_Pa"] == "Pa"


def test_what_is_stored_comes_back(tmp_path):
    water = zpbase.Component(name="Wässer", tc_K=647.096, rho_liq=zpbase.Correlation([5.459, 0.30542], equation=105))
    water["antoine"] = numpy.array([23.2, 3816.44, -46.13])
    water["unifac_groups"] = {"16": 1, "12R": 2}
    kept = {1: water, 2: zpbase.Vector([1.5, -2.0]), 3: zpbase.Matrix([[1, 2, 3], [4, 5, 6]]), 32767: b"\0raw"}
    kept[4] = zpbase.IntVector([1, -2])
    with zpbase.open(tmp_path / "new", "a") as store:
        store.update(kept)
        store[5] = memoryview(b"gone")
        assert store.pop(5) == b"gone" and 5 not in store
    with zpbase.open(tmp_path / "new") as store:
        assert dict(store) == kept and store.get(6, "none") == "none"
        again = store[1]
        assert store.read_bytes(32767) == b"\0raw" and store[2] is not store[2]
    assert again["tc_K"] == 647.096 and again["unifac_groups"] == {"16": 1, "12R": 2}
    assert again["rho_liq"].coefficients.tolist() == numpy.float32([5.459, 0.30542, 0, 0]).tolist()
    assert again == water and again["antoine"].equation is None
    again["tc_K"] = 0
    again["name"] = "  "
    assert "tc_K" not in again and again.name is None, "zero and a blank text are no values"


@pytest.mark.parametrize(
    "name, value, kind",
    [
        ("tc_K", float("nan"), ValueError),
        ("tc_K", 1e39, ValueError),
        ("tc_K", "hot", TypeError),
        ("name", 7, TypeError),
        ("name", "水", ValueError),
        ("colour", 1, KeyError),
        (12, 1.0, KeyError),
        ("rho_liq", [1.0, 2.0], ValueError),
        ("antoine", zpbase.Correlation([1.0], equation=1), ValueError),
        ("antoine", [1.0] * 8, ValueError),
        ("antoine", [[1.0]], ValueError),
        ("antoine", [float("inf")], ValueError),
        ("antoine", [1e-60], ValueError),
        ("antoine", "abc", TypeError),
        ("name", "\udcff", ValueError),
        ("\udcff", "x", KeyError),
        ("unifac_groups", {"1": "2"}, TypeError),
        ("unifac_groups", {"\udcff": 2}, ValueError),
        ("unifac_groups", {"x": 1}, ValueError),
        ("unifac_groups", {"1": -1}, ValueError),
    ],
)
def test_a_value_that_is_refused_changes_nothing(name, value, kind):
    component = zpbase.Component(name="A", tc_K=300.0, antoine=[1, 2, 3], unifac_groups={"1": 2})
    before = dict(component)
    with pytest.raises(kind):
        component[name] = value
    assert dict(component) == before


def test_refusals_leave_the_store_open_and_as_it_was(store):
    with zpbase.open(store, "r+") as records:
        for id, value, kind, sentence in [
            (-1, b"x", ValueError, "id is from 0"), (32768, b"x", ValueError, "id is from 0"), (2**70, b"x", ValueError, "id is"),
            (1, b"", ValueError, "0 bytes"), (1, bytes(65536), ValueError, "65536 bytes"), (1, "text", TypeError, "a record is"),
            ("1", b"x", TypeError, ""), (1, zpbase.Vector(32768), ValueError, "32768 elements"),
            (1, zpbase.Matrix(40000, 0), ValueError, "40000 rows"), (1, zpbase.IntVector(32768), ValueError, "32768 elements"),
        ]:  # fmt: skip
            with pytest.raises(kind, match=sentence):
                records[id] = value
        for id in (-1, 99, 2**70):
            assert id not in records
            for refused in (records.__getitem__, records.__delitem__, records.read_bytes):
                with pytest.raises(KeyError):
                    refused(id)
        assert records[1].name and "1" not in records
    with zpbase.open(store) as records:
        for refused in (lambda: records.update({1: b"x"}), records.clear, records.popitem):
            with pytest.raises(io.UnsupportedOperation, match="r\\+"):
                refused()
    with zpbase.open(store, "r+") as records:
        id, component = records.popitem()
        assert id not in records and records
        for emptied in (records, component):
            emptied.clear()
            assert not emptied and list(emptied) == []
            with pytest.raises(KeyError):
                emptied.popitem()
    assert len(zpbase.open(store)) == 0
    with pytest.raises(ValueError, match="mode"):
        zpbase.open(store, "w")


def test_an_exception_undoes_and_closing_keeps(store):
    before = store.read_bytes(), store.with_suffix(".SR").read_bytes()
    with pytest.raises(ZeroDivisionError), zpbase.open(store, "r+") as records:
        records[1] = b"other"
        del records[2]
        raise ZeroDivisionError
    assert (store.read_bytes(), store.with_suffix(".SR").read_bytes()) == before
    records = zpbase.open(store, "r+")
    records[1] = b"other"
    with pytest.warns(ResourceWarning, match="undone"):
        del records
        gc.collect()
    assert (store.read_bytes(), store.with_suffix(".SR").read_bytes()) == before
    records = zpbase.open(store, "r+")
    records[1] = b"other"
    records.close()
    records.close()
    assert zpbase.open(store)[1] == b"other"


def test_a_process_that_was_forked_off_leaves_the_store_alone(store):
    program = f"""import os, sys, zpbase
records = zpbase.open({str(store)!r}, "r+")
records[1] = b"first"
for use in (bool, records.close, lambda: records.pop(1)):
    if os.fork() == 0:
        try:
            sys.exit(use())
        except ValueError as problem:
            sys.exit("another process" not in str(problem) or 3)
    print(os.waitstatus_to_exitcode(os.wait()[1]), flush=True)
records[2] = b"second"
records.close()"""
    run = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True)
    assert (run.stdout, run.stderr) == ("0\n0\n3\n", "")
    with zpbase.open(store) as records:
        assert (records[1], records[2]) == (b"first", b"second")


def test_a_closed_store_says_so_and_what_it_gave_lives_on(store):
    records = zpbase.open(store)
    items, component = iter(records.items()), records[1]
    next(items)
    records.close()
    assert records.closed and component.name
    for use in (lambda: records[1], lambda: 1 in records, lambda: len(records), records.to_pandas, lambda: next(items),
                records.__enter__):  # fmt: skip
        with pytest.raises(ValueError, match="closed"):
            use()
    items = zpbase.open(store).items()
    gc.collect()
    assert dict(items)[1] == component, "a view keeps the store that it shows"
    coefficients = component.correlations["rho_liq"].coefficients
    expected = coefficients.copy()
    del component
    gc.collect()
    assert coefficients.tolist() == expected.tolist() and not coefficients.flags.writeable


def test_files_that_cannot_be_had(store, tmp_path):
    with pytest.raises(FileNotFoundError, match="no such record file"):
        zpbase.open(tmp_path / "other")
    with zpbase.open(store, "r+"), pytest.raises(BlockingIOError, match="in use"):
        zpbase.open(store, "r+")
    with pytest.raises(ValueError):
        zpbase.open("a\0b")
    with pytest.raises(ValueError, match="with the argument record$"):
        zpbase.open(TABLE)
    store.with_suffix(".SR").chmod(0)
    program = f"import os, zpbase; os.getuid() or os.setuid(65534)\ntry: zpbase.open({str(store)!r})\nexcept PermissionError: print('denied')"
    for folder in (tmp_path, *tmp_path.parents[:2]):
        folder.chmod(0o755)
    assert subprocess.run([sys.executable, "-c", program], capture_output=True, text=True).stdout == "denied\n"


@pytest.mark.parametrize("name", ["job", os.fsdecode(b"inv\xff")])
def test_damage_is_told(store, name):
    record = store.with_suffix(".SR").rename(store.with_name(name + ".SR"))
    store = store.rename(store.with_name(name + ".SI"))
    whole = record.read_bytes()
    first = whole.index(b"GPDataArray") + len("GPDataArray")
    record.write_bytes(whole[:first] + b"\xff\xff" + whole[first + 2 :])  # more items than the record can hold
    with zpbase.open(store) as records:
        with pytest.raises(ValueError, match="no sound GPDataArray"):
            records[1]
        assert records.read_bytes(1)[:2] == b"\xff\xff"
        with pytest.warns(UserWarning, match="record 1: is no sound"):
            assert 1 not in records.to_pandas().index
        with warnings.catch_warnings():
            warnings.simplefilter("error")
            with pytest.raises(UserWarning):
                records.to_pandas()
    record.write_bytes(whole[:-1])
    with zpbase.open(store) as records, pytest.raises(ValueError, match="file ends"):
        records[max(records)]
    store.write_bytes(store.read_bytes()[:-3])
    with pytest.warns(UserWarning, match=f"{name}.SI: .*block headers"):
        zpbase.open(store)
    with pytest.raises(ValueError):
        zpbase.open(store, "r+")


def test_threads_at_once(store, tmp_path):
    paths = [pathlib.Path(shutil.copytree(tmp_path, tmp_path.with_name(f"copy{i}"))) / store.name for i in range(3)]
    shared, frames = zpbase.open(store), []

    def work(path):
        for _ in range(5):
            frames.append(shared.to_pandas())
            with zpbase.open(path, "r+") as own:
                own[1] = own[1]
            frames.append(zpbase.open(path).to_pandas())

    threads = [threading.Thread(target=work, args=(path,)) for path in paths]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert len(frames) == 30 and all(frame.equals(frames[0]) for frame in frames)
