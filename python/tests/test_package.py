"""The package as a whole: its stub, its page, its installation."""

import ast
import doctest
import inspect
import os
import subprocess
import sys

import pytest

import zpbase
from conftest import BINARY, INSTALLED, SOURCE, TABLE


def test_the_stub_names_what_there_is():
    tree = ast.parse((SOURCE / "python" / "package" / "__init__.pyi").read_text())
    told = {node.name: node for node in tree.body if isinstance(node, (ast.ClassDef, ast.FunctionDef))}
    assert set(told) == set(zpbase.__all__)
    for name, node in told.items():
        thing = getattr(zpbase, name)
        assert inspect.getdoc(thing), name
        if isinstance(node, ast.ClassDef):
            members = {each.name for each in node.body if isinstance(each, ast.FunctionDef)} - {"__array__"}
            own = {each for each in vars(thing) if not each.startswith("_")} - {"get", "keys", "items", "values", "pop", "popitem", "setdefault", "update"}  # fmt: skip
            assert members <= set(dir(thing)) and own <= members, name


def test_objects_without_init_are_refused():
    for kind in (each for each in map(vars(zpbase).get, zpbase.__all__) if isinstance(each, type)):
        with pytest.raises(TypeError, match="without __init__"):
            repr(kind.__new__(kind))


def test_the_page_tells_what_happens(tmp_path, monkeypatch, zp):
    zp("store", "import", tmp_path / "job", TABLE)
    (tmp_path / "plant.wmf").write_bytes((SOURCE / "tests" / "metafiles" / "ink_plant.wmf").read_bytes())
    monkeypatch.chdir(tmp_path)
    result = doctest.testfile(str(SOURCE / "docs" / "python.md"), module_relative=False, encoding="utf-8")
    assert result.failed == 0 and result.attempted > 20


@pytest.mark.skipif(INSTALLED is not None, reason="there is no build to install from")
def test_an_installed_package_is_found(tmp_path):
    subprocess.run(["cmake", "--install", BINARY, "--component", "python", "--prefix", tmp_path], check=True, capture_output=True)
    package = tmp_path / os.environ["ZP_PYTHON_DIR"]
    assert {path.suffix for path in (package / "zpbase").iterdir()} == {".py", ".pyi", ".typed", ".so"}
    environment = {**os.environ, "PYTHONPATH": str(package), "LD_LIBRARY_PATH": str(BINARY)}
    program = "import zpbase; print(zpbase.__file__, zpbase.Vector([1, 2]).sum())"
    run = subprocess.run([sys.executable, "-c", program], env=environment, cwd=tmp_path, capture_output=True, text=True, check=True)
    assert run.stdout.split() == [str(package / "zpbase" / "__init__.py"), "3.0"]
