"""Plotsmith: charts kept as live views of the tables of spreadsheet workbooks.

Open a workbook, give a table new rows, and its charts are drawn again from them::

    import plotsmith

    with plotsmith.Workbook("sales.xlsx") as book:
        book.update_table("Quarterly sales", dataframe)   # or a list of rows
        book.save()

Every operation that changes the workbook answers the messages the charts gave while it ran (a
chart that could not be drawn says why). What the command line refuses with exit status 2 (a table
the workbook doesn't have, rows that don't fit the table, a workbook that can't be read or written)
raises :class:`Error`. Nothing is written to disk until :meth:`Workbook.save`.
"""

from __future__ import annotations

import os
from typing import Any, Iterable, Mapping, Optional, Sequence, Union

from ._plotsmith import Chart, Error, Session, Table

__all__ = ["Workbook", "Table", "Chart", "Error"]

PathLike = Union[str, "os.PathLike[str]"]


class Workbook:
    """A workbook opened with Plotsmith's engine, its charts and tables loaded.

    :param path: the ``.xlsx`` or ``.xlsm`` file.
    :param host_version: the application version the engine plays; ``"11"`` takes the older road.
    :param wait: wait for another writer of the file to finish instead of raising :class:`Error`.
    :param read_only: take no writer lock; for listing and exporting.
    """

    def __init__(self, path: PathLike, *, host_version: str = "16", wait: bool = False, read_only: bool = False) -> None:
        self._session: Optional[Session] = Session(os.fspath(path), host_version, wait, read_only)
        #: Messages of the last :meth:`add`.
        self.messages: list[str] = []

    def __enter__(self) -> "Workbook":
        return self

    def __exit__(self, *exc: object) -> None:
        self.close()

    def close(self) -> None:
        """Lets go of the workbook (and its writer lock) without saving."""
        self._session = None

    @property
    def path(self) -> str:
        """The file the workbook was opened from."""
        return self._live().path

    def tables(self) -> list[Table]:
        """The tables charts can be drawn from: ``id``, ``name``, ``sheet``, ``columns`` (in sheet
        order), ``labels`` and ``numbers`` (the label and number columns)."""
        return self._live().tables()

    def charts(self) -> list[Chart]:
        """The charts: ``id``, ``name``, ``type``, ``sheet``, ``table``, ``state``."""
        return self._live().charts()

    def refresh(self) -> list[str]:
        """Draws every chart again from its table. Answers the charts' messages."""
        return self._live().refresh()

    def refresh_table(self, table: str) -> list[str]:
        """Draws the charts of one table (its id or name, without regard to case) again."""
        return self._live().refresh_table(table)

    def rename_columns(self, table: str, renames: Mapping[str, str]) -> list[str]:
        """Carries renamed column headings into the chart definitions, all at once (``{"A": "B",
        "B": "A"}`` swaps). Rename the headings on the sheet too; the charts follow the names."""
        return self._live().rename_columns(table, list(renames.items()))

    def update_table(self, table: str, rows: Any, columns: Optional[Sequence[str]] = None) -> list[str]:
        """Replaces the table's rows and draws its charts again.

        :param rows: a pandas ``DataFrame`` (its column names name the table's columns), a list of
            mappings from column name to value, or a list of sequences in the order of ``columns``.
        :param columns: the table's columns in the order the sequences give them; by default the
            table's columns in sheet order.

        Values: numbers (``int``, ``float``, numpy numbers), text, ``bool``, ``datetime.date`` and
        ``datetime.datetime``; ``None`` and NaN are blank cells. The table grows or shrinks by whole
        sheet rows at its end; new rows take the formats of the row above.
        """
        names, values = _rows_of(rows, columns)
        if names is None:
            table_id = self._live().table_id(table)
            names = next(list(t.columns) for t in self.tables() if t.id == table_id)
        return self._live().update_table(table, list(names), values)

    def add(self, definition: str, sheet: str, new_sheet: bool = False) -> list[Chart]:
        """Places the charts of a definition (one ``<chart>``, or ``<charts>`` as :meth:`export`
        gives them) on a visible worksheet, or on a new one with ``new_sheet``, and draws them.
        Answers the charts placed; their messages are in :attr:`messages`."""
        placed, self.messages = self._live().add(definition, sheet, new_sheet)
        return placed

    def export(self, chart: Optional[str] = None) -> str:
        """The stored definition of one chart (by id or name), or of all inside ``<charts>``."""
        return self._live().export(chart or "")

    def changed(self) -> bool:
        """Whether saving would change what the file holds."""
        return self._live().changed()

    def save(self, path: Optional[PathLike] = None) -> None:
        """Writes the workbook atomically, to its own file or to ``path``."""
        self._live().save(os.fspath(path) if path is not None else "")

    def _live(self) -> Session:
        if self._session is None:
            raise Error("the workbook is closed")
        return self._session


def _rows_of(rows: Any, columns: Optional[Sequence[str]]) -> tuple[Optional[list[str]], Iterable[Sequence[Any]]]:
    """Column names and row values from a DataFrame, mappings or sequences."""
    if hasattr(rows, "columns") and hasattr(rows, "itertuples"):  # a pandas DataFrame
        names = [str(c) for c in rows.columns]
        return names, [list(r) for r in rows.itertuples(index=False, name=None)]
    rows = list(rows)
    if rows and isinstance(rows[0], Mapping):
        names = list(columns) if columns is not None else list(rows[0].keys())
        return names, [[r.get(n) for n in names] for r in rows]
    return (list(columns) if columns is not None else None), [list(r) for r in rows]
