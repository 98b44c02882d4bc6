#!/usr/bin/env python3
"""Refuses an include against the arrows between the project's folders.

    include_arrows.py ROOT              checks the tree under ROOT
    include_arrows.py ROOT --self-test  checks that wrong includes are found, on copies of ROOT's rules
"""

import pathlib
import re
import sys
import tempfile

# Folder -> what its files may include of the project, as path prefixes. The longest matching folder counts.
ARROWS = {
    "src/model": [],
    "src/usb": ["usb/usb.h", "usb/interface_report.h", "usb/video_control_descriptors.h"],
    "src/usb/libusb": ["usb/usb.h", "usb/libusb/"],
    "src/usb/v4l2": ["usb/usb.h", "usb/video_control_descriptors.h", "usb/v4l2/"],
    "src/usb/linux": ["usb/usb.h", "usb/interface_report.h", "usb/system_registry.h", "usb/linux/", "usb/libusb/", "usb/v4l2/"],
    "src/uvc": ["uvc/", "usb/usb.h", "usb/video_control_descriptors.h"],
    "src/platform": ["platform/"],
    "src/ptz": ["ptz/", "model/", "uvc/", "platform/"],
    "src/scenes": ["scenes/", "platform/"],
    "src/ui": ["ui/", "ptz/", "scenes/", "platform/"],
    "src/app": ["app/", "ui/", "ptz/", "scenes/", "platform/"],
    "src/selfcheck": [
        "selfcheck/",
        "model/",
        "ptz/supported_camera.h",
        "uvc/",
        "usb/usb.h",
        "usb/interface_report.h",
        "scenes/",
        "platform/",
        "app/product.h",
    ],
    "simulator": ["simulator/", "model/", "usb/usb.h"],
    "simulator/edition": ["simulator/", "app/", "scenes/", "platform/", "uvc/uvc_controller.h"],
}

# The entry points choose the backends, and nobody else does.
ENTRY_POINTS = {
    "src/app/main.cpp": ["usb/system_registry.h", "uvc/uvc_controller.h"],
    "src/selfcheck/main.cpp": ["usb/system_registry.h"],
}

# Headers from outside -> the folders that may include them.
OUTSIDE = [
    (r"libusb", ["src/usb/libusb"]),
    (r"linux/videodev2\.h|sys/ioctl\.h", ["src/usb/v4l2"]),
    (r"openssl/", ["src/scenes"]),
    (r"nlohmann/", ["src/scenes"]),
    (
        r"Q[A-Z]\w*",
        ["src/platform/qt", "src/scenes", "src/ui", "src/app", "src/selfcheck"]
        + ["simulator/preview", "simulator/edition", "simulator/usbip"],
    ),
]

# The window's state, what the buttons do and what a check finds are tested without widgets, and know none.
WITHOUT_WIDGETS = re.compile(
    r"src/ui/(content_view|scene_actions|modal_prompts|observable)\.(h|cpp)"
    r"|src/selfcheck/(\w*findings|examination|facts|report_text|order_trial|field_values|steps|watched_device)\.(h|cpp)"
)

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)


def longest_folder(path, folders):
    matching = [folder for folder in folders if path.startswith(folder + "/")]
    return max(matching, key=len, default=None)


def faults_of(path, text):
    folder = longest_folder(path, ARROWS)
    if folder is None:
        return [f"{path}: a folder that no arrow is known of"]
    faults = []
    for bracket, name in INCLUDE.findall(text):
        if bracket == '"':
            allowed = ARROWS[folder] + ENTRY_POINTS.get(path, [])
            if not any(name.startswith(prefix) for prefix in allowed):
                faults.append(f'{path}: includes "{name}" against the arrows of {folder}')
            continue
        for pattern, folders in OUTSIDE:
            if re.fullmatch(pattern + r".*", name) and longest_folder(path, folders) is None:
                faults.append(f"{path}: <{name}> belongs to {', '.join(folders)}")
        if WITHOUT_WIDGETS.fullmatch(path) and re.match(r"Q[A-Z]", name):
            faults.append(f"{path}: <{name}> in a file that must do without Qt")
    return faults


def node_of(path):
    """The name in the picture of a folder, or of what an include names."""
    if path.startswith("simulator"):
        return "edition" if path.startswith("simulator/edition") else "simulator"
    return path.removeprefix("src/").split("/")[0]


def picture_faults(picture):
    drawn = set(re.findall(r"<title>(\w+)&#45;&gt;(\w+)</title>", picture))
    allowed = {
        (node_of(path), node_of(name))
        for path, names in (ARROWS | ENTRY_POINTS).items()
        for name in names
        if node_of(path) != node_of(name)
    }
    return [f"docs/architecture.svg: {start} -> {end} is missing or wrong" for start, end in drawn ^ allowed]


def check(root):
    faults, files = [], 0
    for top in ("src", "simulator"):
        for file in sorted((root / top).rglob("*")):
            if file.suffix in (".h", ".cpp"):
                files += 1
                faults += faults_of(file.relative_to(root).as_posix(), file.read_text(encoding="utf-8"))
    return faults, files


def self_test():
    wrong = {
        "src/uvc/a.h": '#include "usb/libusb/libusb_registry.h"\n',
        "src/uvc/b.cpp": "#include <QString>\n",
        "src/ptz/a.cpp": '#include "scenes/scene_tree.h"\n',
        "src/scenes/a.cpp": "  #  include <libusb-1.0/libusb.h>\n",
        "src/ui/a.cpp": '#include "uvc/uvc_controller.h"\n',
        "src/ui/content_view.h": "#include <QWidget>\n",
        "src/app/a.cpp": '#include "usb/libusb/libusb_registry.h"\n',
        "src/selfcheck/a.cpp": '#include "usb/linux/linux_registry.h"\n',
        "src/selfcheck/store_findings.cpp": "#include <QString>\n",
        "src/new/a.cpp": "",
        "simulator/a.cpp": '#include "app/app_delegate.h"\n',
    }
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        for path, text in wrong.items():
            (root / path).parent.mkdir(parents=True, exist_ok=True)
            (root / path).write_text(text)
        faults, _ = check(root)
        missed = [] if picture_faults("") else ["docs/architecture.svg"]
        missed += [path for path in wrong if not any(fault.startswith(path + ":") for fault in faults)]
    return [f"a wrong include was not found in {path}" for path in missed]


def main():
    root = pathlib.Path(sys.argv[1])
    faults = self_test() if "--self-test" in sys.argv else []
    if not faults and "--self-test" not in sys.argv:
        faults, files = check(root)
        faults += picture_faults((root / "docs/architecture.svg").read_text(encoding="utf-8"))
        if files == 0:
            faults = [f"no source files under {root}"]
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
