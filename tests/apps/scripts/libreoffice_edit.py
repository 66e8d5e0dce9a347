"""Edits a workbook by hand as a LibreOffice user would, through LibreOffice's own API, and saves it
as .xlsx: the chart on a sheet gets a new title and loses its legend.

usage: libreoffice_edit.py IN.xlsx OUT.xlsx SHEET TITLE PROFILE_DIR
"""
import os
import subprocess
import sys
import time

import uno
from com.sun.star.beans import PropertyValue


def prop(name, value):
    p = PropertyValue()
    p.Name, p.Value = name, value
    return p


def main():
    src, dst, sheet_name, title, profile = sys.argv[1:6]
    pipe = "plotsmith_test_%d" % os.getpid()
    office = subprocess.Popen(
        ["soffice", "-env:UserInstallation=" + uno.systemPathToFileUrl(os.path.abspath(profile)),
         "--headless", "--invisible", "--norestore", "--nologo",
         "--accept=pipe,name=%s;urp;StarOffice.ComponentContext" % pipe],
        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        local = uno.getComponentContext()
        resolver = local.ServiceManager.createInstanceWithContext("com.sun.star.bridge.UnoUrlResolver", local)
        deadline = time.time() + 120
        while True:
            try:
                ctx = resolver.resolve("uno:pipe,name=%s;urp;StarOffice.ComponentContext" % pipe)
                break
            except Exception:
                if time.time() > deadline or office.poll() is not None:
                    raise
                time.sleep(0.5)
        desktop = ctx.ServiceManager.createInstanceWithContext("com.sun.star.frame.Desktop", ctx)
        doc = desktop.loadComponentFromURL(uno.systemPathToFileUrl(os.path.abspath(src)), "_blank", 0,
                                           (prop("Hidden", True),))
        chart = doc.Sheets.getByName(sheet_name).getCharts().getByIndex(0).getEmbeddedObject()
        chart.HasMainTitle = True
        chart.getTitle().String = title
        chart.HasLegend = False
        doc.storeToURL(uno.systemPathToFileUrl(os.path.abspath(dst)), (prop("FilterName", "Calc MS Excel 2007 XML"),))
        doc.close(True)
        try:
            desktop.terminate()
        except Exception:
            pass  # the bridge goes down with the office
    finally:
        try:
            office.wait(timeout=30)
        except subprocess.TimeoutExpired:
            office.kill()


if __name__ == "__main__":
    main()
