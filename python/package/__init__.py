"""The Zephlow base library for Python: record stores of components, settings, numeric text, drawings.

    >>> import zpbase
    >>> with zpbase.open("job.si") as store:            # doctest: +SKIP
    ...     water = store[7]
    ...     water["tc_K"]                               # K
    647.14
"""

from collections.abc import MutableMapping

from ._native import (
    Column,
    Component,
    Constant,
    Correlation,
    IntVector,
    Matrix,
    Record,
    Settings,
    Store,
    Vector,
    __version__,
    columns,
    metafile_to_dxf,
    open,
    read_columns,
    settings,
)

__all__ = [
    "Column",
    "Component",
    "Constant",
    "Correlation",
    "IntVector",
    "Matrix",
    "Record",
    "Settings",
    "Store",
    "Vector",
    "columns",
    "metafile_to_dxf",
    "open",
    "read_columns",
    "settings",
]

# What a mapping has beside the methods that the native classes bring. Views hold the mapping that they show.
for _kind in (Component, Settings, Store):
    for _name in ("get", "keys", "items", "values", "pop", "popitem", "setdefault", "update"):
        setattr(_kind, _name, getattr(MutableMapping, _name))
    MutableMapping.register(_kind)
del _kind, _name
