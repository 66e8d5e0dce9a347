"""Refreshes the charts of many workbooks on a Dask cluster, each workbook on one worker.

    python3 refresh_many.py report-*.xlsx                      # a local cluster, a worker per core
    python3 refresh_many.py --scheduler tcp://host:8786 *.xlsx  # a cluster whose workers see the files

Every worker needs the plotsmith module (scripts/install-python) and the workbooks at the same paths.
"""

from __future__ import annotations

import argparse
import sys

from dask.distributed import Client, LocalCluster

import plotsmith


def refresh(path: str) -> tuple[str, list[str], str]:
    """Refreshes and saves one workbook: its path, the charts' messages, and an error or ""."""
    try:
        with plotsmith.Workbook(path) as book:
            messages = book.refresh()
            book.save()
        return path, messages, ""
    except plotsmith.Error as e:
        return path, [], str(e)


def refresh_all(client: Client, paths: list[str]) -> list[tuple[str, list[str], str]]:
    """Each workbook on a worker of its own; the results in the order of the paths."""
    return client.gather(client.map(refresh, paths, pure=False))


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("books", nargs="+")
    parser.add_argument("--scheduler", help="address of a Dask scheduler; a local cluster without it")
    args = parser.parse_args()
    client = Client(args.scheduler) if args.scheduler else Client(LocalCluster(threads_per_worker=1))
    failed = 0
    for path, messages, error in refresh_all(client, args.books):
        print(f"{path}: failed: {error}" if error else f"{path}: refreshed")
        for line in messages:
            print(f"    {line}")
        failed += bool(error)
    print(f"{len(args.books) - failed} of {len(args.books)} workbooks refreshed" + (f", {failed} failed" if failed else ""))
    return 2 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
