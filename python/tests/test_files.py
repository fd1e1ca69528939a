"""Numeric text, settings, drawings."""

import os
import signal
import subprocess
import sys

import numpy
import pytest

import zpbase
from conftest import SOURCE

METAFILE = SOURCE / "tests" / "metafiles" / "ink_plant.wmf"


@pytest.mark.parametrize(
    "text, options, expected",
    [
        ("1 2\n3 4\n", {}, [[1, 2], [3, 4]]),
        ("T,p\r\n298.15,3.1698\r\n310,\r\n", {}, [[298.15, 3.1698], [310, numpy.nan]]),
        ("1,5;2\n", {"decimal_comma": True, "delimiter": "semicolon"}, [[1.5, 2]]),
        ("1.0D+02 -1e-3 # why\n", {"comment": "#"}, [[100, -0.001]]),
        ("9 9\n1 2\n", {"skip": 1}, [[1, 2]]),
        ("1,2\nend\n3\n", {"errors": "skip", "delimiter": ","}, [[1, 2], [3, numpy.nan]]),
        ("a 1\nb 2\n3 4\n", {"errors": "skip"}, [[3, 4]]),
    ],
)
def test_columns_of_text(tmp_path, text, options, expected):
    path = tmp_path / "result.txt"
    path.write_bytes(text.encode())
    array = zpbase.read_columns(path, **options)
    assert array.dtype == numpy.float64 and numpy.array_equal(array, expected, equal_nan=True)


@pytest.mark.parametrize(
    "text, options, expected",
    [
        ("made today\nT/°C\tp\n1\t2\n", {}, {"T/°C": [1], "p": [2]}),
        ("# T p\n1 NA\n", {}, {"T": [1], "p": [numpy.nan]}),
        ("#\tT\tp\n1\t-99\n", {"missing": ["-99"]}, {"T": [1], "p": [numpy.nan]}),
        ('"mpg" "cyl, of"\n"1" 21 6\n"2" 22.8 4\n', {}, {"": [1, 2], "mpg": [21, 22.8], "cyl, of": [6, 4]}),
        ("feed;T\nGrün;1,5\n;NA\n", {}, {"feed": ["Grün", ""], "T": [1.5, numpy.nan]}),
        ("T,on\n1,1999-01-02\n2\n3,1999-01-04\n4\n5,x\n", {"errors": "skip"},
         {"T": [1, 2, 3, 4, 5], "on": ["1999-01-02", "", "1999-01-04", "", "x"]}),  # fmt: skip
    ],
)
@pytest.mark.parametrize("encoding", ["utf-8", "cp1252"])
def test_columns_by_the_names_above_them(tmp_path, text, options, expected, encoding):
    path = tmp_path / "result.txt"
    path.write_bytes(text.encode(encoding))
    columns = zpbase.read_columns(path, names=True, **options)
    assert list(columns) == list(expected)
    for name, values in expected.items():
        numpy.testing.assert_array_equal(columns[name], numpy.array(values, dtype=columns[name].dtype))
        assert columns[name].dtype == (object if isinstance(values[0], str) else float)


def test_columns_by_names_of_ones_own(tmp_path):
    path = tmp_path / "result.txt"
    path.write_text("1 2\n3 4\n")
    columns = zpbase.read_columns(path, names=["a", "b"])
    assert columns["b"].tolist() == [2, 4] and columns["a"].base is columns["b"].base, "one array holds all"
    for wrong in (["a"], ["a", "a"]):
        with pytest.raises(ValueError):
            zpbase.read_columns(path, wrong)


def test_text_that_is_refused(tmp_path):
    path = tmp_path / "result.txt"
    interrupts = signal.getsignal(signal.SIGINT)
    for text, sentence in [("1 2\n3 x\n", "line 2, column 3"), ("1 2\n3\n", "1 to 2 values"), ("abc\n", "no line is numeric"),
                           ("", "is empty"), ("x a\n1 b\n2 c\n", "column 2 holds texts"), ("5 x\n1 2\n", "line 1, column 3"),
                           ("a,b\nx,1\n1,2\n", "line 2, column 1")]:  # fmt: skip
        path.write_text(text)
        with pytest.raises(ValueError, match=f"result.txt: .*{sentence}"):
            zpbase.read_columns(path)
    path.write_text("1 2\n")
    for options, kind in (({"errors": "ignore"}, ValueError), ({"skip": -1}, ValueError), ({"delimiter": "what"}, ValueError),
                          ({"missing": "NA"}, TypeError)):  # fmt: skip
        with pytest.raises(kind):
            zpbase.read_columns(path, **options)
    with pytest.raises(ValueError, match="no line in front"):
        zpbase.read_columns(path, True)
    with pytest.raises(FileNotFoundError):
        zpbase.read_columns(tmp_path / "missing")
    with pytest.raises(IsADirectoryError):
        zpbase.read_columns(tmp_path)
    assert signal.getsignal(signal.SIGINT) is interrupts


def test_interrupts_reach_python_while_threads_read(tmp_path):
    path = tmp_path / "result.txt"
    path.write_text("1 2\n" * 100)
    program = f"""import os, signal, sys, threading, time, zpbase
noted = []
signal.signal(signal.SIGINT, lambda *_: noted.append(threading.current_thread()))
sys.setswitchinterval(1e-5)
shapes = []
read = lambda: shapes.extend(zpbase.read_columns({str(path)!r}).shape for _ in range(100))
threads = [threading.Thread(target=read) for _ in range(6)]
for thread in threads:
    thread.start()
sent = 0
while any(thread.is_alive() for thread in threads) or sent < 2:
    os.kill(os.getpid(), signal.SIGINT)
    sent += 1
    while len(noted) < sent:
        time.sleep(1e-4)
print(set(shapes), len(shapes), noted == [threading.main_thread()] * sent)
signal.signal(signal.SIGINT, signal.default_int_handler)
try:
    os.kill(os.getpid(), signal.SIGINT)
except KeyboardInterrupt:
    print(zpbase.read_columns({str(path)!r}).shape)"""
    run = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, timeout=100)
    assert (run.stdout, run.stderr) == ("{(100, 2)} 600 True\n(100, 2)\n", ""), "NumPy is loaded by several threads at once, too"


def test_settings_of_a_profile_and_of_a_hive(tmp_path, zp):
    profile, hive, environment = tmp_path / "app.ini", tmp_path / "user.reg", dict(os.environ)
    with pytest.raises(FileNotFoundError):
        len(zpbase.settings(profile=profile))
    for store in (zpbase.settings(profile=profile), zpbase.settings(hive=hive, company="Zephlow")):
        store["Units", "Temperature"] = "Größe"
        assert store["UNITS", "temperature"] == "Größe"
        for missing in (("Units", "no"), "Units", ("\udcff", "x"), (1, 2)):
            assert missing not in store
        store["Units", "Count"] = 4294967295
        assert sorted(store) == [("Units", "Count"), ("Units", "Temperature")] and len(store) == 2
        del store["Units", "Temperature"]
        for wrong in (lambda: store["Units", "Temperature"], lambda: store.__delitem__(("Units", "Temperature"))):
            with pytest.raises(KeyError):
                wrong()
        for value, kind in (("水", ValueError), (2**32, ValueError), (1.5, TypeError), (True, TypeError)):
            with pytest.raises(kind):
                store["Units", "Count"] = value
        with pytest.raises(ValueError):
            store["", "Count"] = "x"
    assert store["Units", "Count"] == -1
    store["Units", "Block"] = b"\0\xff"
    assert store["Units", "Block"] == b"\0\xff" and dict(os.environ) == environment
    assert zp("settings", "get", "-r", hive, "-c", "Zephlow", "Units", "Block") == "00ff\n"
    with pytest.raises(ValueError, match="line end"):
        zpbase.settings(profile=profile)["Units", "Name"] = "two\nlines"
    with pytest.raises(NotADirectoryError):
        zpbase.settings(profile=profile / "app.ini")["Units", "Name"] = "x"
    with pytest.raises(FileNotFoundError, match="no such folder"):
        zpbase.settings(profile=tmp_path / "no" / "app.ini")["Units", "Name"] = "x"
    for each in (zpbase.settings(profile=profile), store):
        each.update({("Units", "a"): "1", ("Other", "b"): "2"})
        assert each.popitem()[0] not in each
        each.clear()
        assert not each
        each["Units", "a"] = "1"
    profile.with_name("app.ini.zp-new").mkdir()
    each = zpbase.settings(profile=profile)
    for change in (each.clear, each.popitem, lambda: each.update({("Units", "a"): "2"})):
        with pytest.raises(FileExistsError, match="app.ini: the change was not made"):
            change()
    assert dict(each) == {("Units", "a"): "1"}
    with pytest.raises(ValueError):
        zpbase.settings(profile=profile, hive=hive)
    hive.write_text("something else")
    with pytest.raises(ValueError, match="REGEDIT4"):
        len(store)


def test_a_metafile_becomes_a_drawing_or_the_target_stays(tmp_path, zp):
    target, other = tmp_path / "plant.dxf", tmp_path / "other.dxf"
    result = zpbase.metafile_to_dxf(METAFILE, target)
    zp("dxf", METAFILE, other)
    assert target.read_bytes() == other.read_bytes() and result["bytes"] == target.stat().st_size and result["whole"]
    other.write_text("no metafile")
    for source, kind in ((other, ValueError), (tmp_path / "missing", FileNotFoundError), (tmp_path, IsADirectoryError)):
        with pytest.raises(kind):
            zpbase.metafile_to_dxf(source, target)
    with pytest.raises(ValueError):
        zpbase.metafile_to_dxf(target, target)
    with pytest.raises(FileNotFoundError):
        zpbase.metafile_to_dxf(METAFILE, tmp_path / "no" / "plant.dxf")
    assert target.stat().st_size == result["bytes"]
