"""The recipe for many workbooks on a cluster, on a local cluster of two worker processes."""

import os
import shutil
import subprocess
from pathlib import Path

import pytest

SOURCE = Path(os.environ["PLOTSMITH_SOURCE_DIR"])
BINARY = os.environ["PLOTSMITH_BINARY"]


def test_workbooks_are_refreshed_on_two_workers(tmp_path: Path) -> None:
    distributed = pytest.importorskip("dask.distributed")
    import refresh_many

    paths = []
    for i in range(3):
        path = tmp_path / f"book{i}.xlsx"
        shutil.copy(SOURCE / "examples" / "sales.xlsx", path)
        subprocess.run([BINARY, "add", str(path), str(SOURCE / "examples" / "column-revenue-by-region.xml"),
                        "--sheet", "Sales"], check=True, capture_output=True)
        paths.append(str(path))
    broken = tmp_path / "broken.xlsx"
    broken.write_bytes(b"not a workbook")
    paths.append(str(broken))

    with distributed.LocalCluster(n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None) as cluster:
        with distributed.Client(cluster) as client:
            results = refresh_many.refresh_all(client, paths)
            workers = client.run(os.getpid)
    assert len(workers) == 2
    assert [r[0] for r in results] == paths
    assert [r[2] == "" for r in results] == [True, True, True, False]
    assert "broken.xlsx" in results[3][2]
    listed = subprocess.run([BINARY, "list", paths[0]], capture_output=True, text=True, check=True).stdout
    assert "available" in listed
