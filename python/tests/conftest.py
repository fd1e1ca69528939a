"""What the tests share: the program zp, of the build or of the installation that ZP_TEST_INSTALLED names, and a store of the
examples' components."""

import csv
import os
import pathlib
import subprocess

import pytest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
BINARY = pathlib.Path(os.environ.get("ZP_BINARY_DIR", ""))
INSTALLED = os.environ.get("ZP_TEST_INSTALLED")
PROGRAM = pathlib.Path(INSTALLED, "bin", "zp") if INSTALLED else BINARY / "tools" / "zp"
TABLE = SOURCE / "examples" / "components.csv"


@pytest.fixture
def zp():
    return lambda *arguments: subprocess.run(
        [PROGRAM, *arguments], check=True, capture_output=True, text=True
    ).stdout


@pytest.fixture
def store(tmp_path, zp):
    path = tmp_path / "job.SI"
    zp("store", "import", path, TABLE)
    return path


@pytest.fixture
def rows():
    """The table as csv reads it: a dict for each component, by its id."""
    with TABLE.open(encoding="utf-8", newline="") as file:
        lines = (line for line in file if not line.startswith("#"))
        return {int(row["id"]): row for row in csv.DictReader(lines)}
