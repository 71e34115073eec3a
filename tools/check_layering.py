#!/usr/bin/env python3
"""Checks that no layer includes a layer above it, that no kind of data includes another, and that widgets stay where they belong.

Usage: check_layering.py ROOT. Prints each offence and exits with 1 when there is one.
"""

import re
import sys
from pathlib import Path

# Each layer may include itself and the layers before it.
LAYERS = ["platform", "model", "convert", "wizard", "app"]

# Folders that may use Qt Widgets or Qt Gui; everything else runs without a display.
WIDGET_FOLDERS = ["platform/ui", "wizard/pages", "wizard/widgets", "app/gui"]
WIDGET_HEADERS = re.compile(r"^(Qt(Widgets|Gui|Svg)/|Q(Abstract(Button|ScrollArea|TextDocumentLayout)|Accessible|Action|Application|Brush|"
                            r"CheckBox|Clipboard|Color|Desktop|Dialog|Font|Frame|[HV]BoxLayout|GridLayout|GuiApplication|Icon|Image|"
                            r"Key|Label|Layout|List(View|Widget)|MainWindow|MessageBox|MouseEvent|Paint|Palette|Pixmap|ProgressBar|"
                            r"ProxyStyle|PushButton|Screen|Scroll(Area|Bar)|Stack(edLayout|edWidget)|Style|Svg|TableView|"
                            r"Text(Browser|Cursor|Document|Edit|Format)|ToolTip|Widget|Window))")

# Parts of one layer that must not know each other, beside the converters.
INDEPENDENT = [("platform/core", "platform/"), ("model/backup_entry", "model/iphone_backup"), ("app/cli", "app/gui"),
               ("app/gui", "app/cli")]

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def is_in_widget_folder(path):
    return path.startswith(tuple(folder + "/" for folder in WIDGET_FOLDERS))


def includes_of(path):
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if match:
            yield number, match.group(1) == '"', match.group(2)


def offences_of(path, root):
    source = path.relative_to(root).as_posix()
    layer = source.split("/")[0]
    for number, is_own, target in includes_of(path):
        where = f"{source}:{number}: includes {target}: "
        if not is_own:
            if WIDGET_HEADERS.match(target) and not is_in_widget_folder(source):
                yield where + "only " + ", ".join(WIDGET_FOLDERS) + " may use widgets"
            continue
        target_layer = target.split("/")[0]
        if target_layer not in LAYERS:
            if target_layer in ("tests", "bench", "fuzz"):
                yield where + "the program must not need its tests"
            continue
        if is_in_widget_folder(target) and not is_in_widget_folder(source):
            yield where + "only " + ", ".join(WIDGET_FOLDERS) + " may need widgets"
        if LAYERS.index(target_layer) > LAYERS.index(layer):
            yield where + f"{layer} stands below {target_layer}"
        if layer == target_layer == "convert" and source.count("/") == 2 and target.count("/") == 2 \
                and source.split("/")[1] != target.split("/")[1]:
            yield where + "a kind of data must not need another"
        for folder, forbidden in INDEPENDENT:
            if source.startswith(folder + "/") and target.startswith(forbidden) and not target.startswith(folder + "/"):
                yield where + f"{folder} must not need {forbidden}"


def main():
    root = Path(sys.argv[1])
    files = [path for layer in LAYERS for suffix in ("h", "cpp") for path in sorted((root / layer).rglob(f"*.{suffix}"))]
    if not files:
        print(f"no sources below {root}")
        return 1
    offences = [offence for path in files for offence in offences_of(path, root)]
    print("\n".join(offences) or f"{len(files)} files, no offence")
    return 1 if offences else 0


if __name__ == "__main__":
    sys.exit(main())
