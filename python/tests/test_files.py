"""Numeric text, settings, drawings."""

import os
import signal

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
    ],
)
def test_columns_of_text(tmp_path, text, options, expected):
    path = tmp_path / "result.txt"
    path.write_bytes(text.encode())
    array = zpbase.read_columns(path, **options)
    assert array.dtype == numpy.float64 and numpy.array_equal(array, expected, equal_nan=True)


def test_columns_by_name(tmp_path):
    path = tmp_path / "result.txt"
    path.write_bytes("made today\nT/°C\tp\n1\t2\n3\t4\n".encode("cp1252"))
    columns = zpbase.read_columns(path, True)
    assert list(columns) == ["T/°C", "p"] and columns["p"].tolist() == [2, 4]
    assert columns["p"].base is columns["T/°C"].base, "one array holds all"
    assert zpbase.read_columns(path, names=["a", "b"])["a"].tolist() == [1, 3]
    for wrong in (["a"], ["a", "a"]):
        with pytest.raises(ValueError):
            zpbase.read_columns(path, wrong)


def test_text_that_is_refused(tmp_path):
    path = tmp_path / "result.txt"
    for text, sentence in [("1 2\n3 x\n", "line 2, column 3"), ("1 2\n3\n", "1 to 2 values"), ("abc\n", "result.txt"), ("", "")]:
        path.write_text(text)
        with pytest.raises(ValueError, match=sentence):
            zpbase.read_columns(path)
    path.write_text("1 2\n")
    for options in ({"errors": "ignore"}, {"skip": -1}, {"delimiter": "what"}):
        with pytest.raises(ValueError):
            zpbase.read_columns(path, **options)
    with pytest.raises(ValueError, match="no line in front"):
        zpbase.read_columns(path, True)
    with pytest.raises(FileNotFoundError):
        zpbase.read_columns(tmp_path / "missing")
    with pytest.raises(IsADirectoryError):
        zpbase.read_columns(tmp_path)
    assert signal.getsignal(signal.SIGINT) is signal.default_int_handler


def test_settings_of_a_profile_and_of_a_hive(tmp_path, zp):
    profile, hive, environment = tmp_path / "app.ini", tmp_path / "user.reg", dict(os.environ)
    with pytest.raises(FileNotFoundError):
        len(zpbase.settings(profile=profile))
    for store in (zpbase.settings(profile=profile), zpbase.settings(hive=hive, company="Zephlow")):
        store["Units", "Temperature"] = "Größe"
        assert store["UNITS", "temperature"] == "Größe" and ("Units", "no") not in store and "Units" not in store
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
