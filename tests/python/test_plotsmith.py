"""The Python module over real workbooks: new rows from a DataFrame, lists and mappings, charts drawn
again, saved, and read back by the command line and by openpyxl; what it refuses."""

import os
import shutil
import subprocess
from pathlib import Path

import openpyxl
import pytest

import plotsmith

SOURCE = Path(os.environ["PLOTSMITH_SOURCE_DIR"])
BINARY = os.environ["PLOTSMITH_BINARY"]


@pytest.fixture
def book(tmp_path: Path) -> Path:
    path = tmp_path / "sales.xlsx"
    shutil.copy(SOURCE / "examples" / "sales.xlsx", path)
    return path


def series_sum(path: Path, sheet: str) -> float:
    """What the charts of a sheet draw, added up, as openpyxl reads the saved file."""
    wb = openpyxl.load_workbook(path)
    total = 0.0
    for chart in wb[sheet]._charts:
        for s in chart.series:
            cache = s.val.numRef.numCache
            total += sum(float(p.v) for p in cache.pt)
    return total


def test_new_rows_from_a_dataframe_are_drawn_and_saved(book: Path) -> None:
    pd = pytest.importorskip("pandas")
    with plotsmith.Workbook(book) as wb:
        assert [t.name for t in wb.tables()] == ["Quarterly sales", "Sales targets", "Data1"]
        sales = wb.tables()[0]
        assert sales.columns == ["Region", "Product", "Quarter", "Revenue", "Units"]
        placed = wb.add((SOURCE / "examples" / "column-revenue-by-region.xml").read_text(), "Column", new_sheet=True)
        assert [(c.name, c.type, c.sheet) for c in placed] == [("Revenue by region", "column", "Column")]

        frame = pd.DataFrame({
            "Units": [1, 2, None],
            "Region": ["North", "South", "North"],
            "Quarter": ["Q1", "Q1", "Q2"],
            "Product": ["Widgets", "Gadgets", "Widgets"],
            "Revenue": [100.0, 250.5, 40.0],
        })
        messages = wb.update_table("quarterly sales", frame)
        assert isinstance(messages, list)
        assert wb.changed()
        wb.save()

    listed = subprocess.run([BINARY, "list", str(book)], capture_output=True, text=True, check=True).stdout
    assert "VEX_TableRangeSales              =Sales!$A$1:$E$6" in listed
    assert 'VEX_Chart1  "Revenue by region"  column  on Column  from VEX_TableRangeSales (Sales)  available' in listed
    sheet = openpyxl.load_workbook(book)["Sales"]
    assert [c.value for c in sheet[5]] == ["South", "Gadgets", "Q1", 250.5, 2]
    assert sheet["E6"].value is None
    assert series_sum(book, "Column") == pytest.approx(390.5)


def test_rows_as_sequences_or_mappings_and_a_refresh(book: Path) -> None:
    with plotsmith.Workbook(book) as wb:
        wb.add((SOURCE / "examples" / "pie-share-by-segment.xml").read_text(), "Pie", new_sheet=True)
        wb.update_table("Data1", [["Retail", 60], ["Online", 40]])  # the table's columns in sheet order
        assert 'name="Share by segment"' in wb.export("share by segment")
        wb.update_table("Data1", [{"Share": 30, "Segment": "Retail"}, {"Share": 70, "Segment": "Online"}])
        wb.refresh()
        wb.save(book.with_name("copy.xlsx"))
    assert series_sum(book.with_name("copy.xlsx"), "Pie") == pytest.approx(100)
    assert openpyxl.load_workbook(book.with_name("copy.xlsx"))["Data1"]["A3"].value == "Online"


def test_what_it_refuses_raises_and_leaves_the_file(book: Path) -> None:
    before = book.read_bytes()
    with plotsmith.Workbook(book) as wb:
        with pytest.raises(plotsmith.Error, match="has no table 'Nowhere'"):
            wb.refresh_table("Nowhere")
        with pytest.raises(plotsmith.Error, match="the table's column 'Segment' is missing"):
            wb.update_table("Data1", [[1]], columns=["Share"])
        with pytest.raises(plotsmith.Error, match="table 'Data1' has no column 'Colour'"):
            wb.update_table("Data1", [{"Segment": "a", "Share": 1, "Colour": "red"}])
        with pytest.raises(plotsmith.Error, match="row 1 has 1 values for 2 columns"):
            wb.update_table("Data1", [[1]], columns=["Segment", "Share"])
    assert book.read_bytes() == before
    with pytest.raises(plotsmith.Error, match="missing.xlsx"):
        plotsmith.Workbook(book.with_name("missing.xlsx"))
