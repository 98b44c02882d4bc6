#!/usr/bin/env python3
"""Makes the sample scene files of this folder without the program under test: Python's own JSON and base64, the
openssl command line for Triple DES. Run it in this folder; the files come out the same every time."""

import base64
import json
import subprocess

KEY = (b"Zelvoria-escenas" + b"-aula-01").hex()
FOREIGN_KEY = b"some other 24-byte key!!".hex()


def scene(name, pan=0, tilt=0, zoom=0, ds="", hid="", serial=""):
    return {"Name": name, "DS_Path": ds, "HID_Path": hid, "HID_SerialNumber": serial,
            "Tilt": tilt, "Pan": pan, "Zoom": zoom}


def triple_des(plain, key):
    return subprocess.run(["openssl", "enc", "-e", "-des-ede3", "-nosalt", "-K", key],
                          input=plain, stdout=subprocess.PIPE, check=True).stdout


def write(name, scenes, key=KEY):
    text = json.dumps(scenes, ensure_ascii=False, separators=(",", ":")).replace("/", "\\/")
    shifted = bytes(byte + 11 for byte in base64.b64encode(text.encode()))
    expanded = b"".join(bytes([194, byte]) if byte >= 128 else bytes([byte]) for byte in shifted)
    with open(name + ".presets", "wb") as file:
        file.write(base64.b64encode(triple_des(expanded, key)))


write("empty", [])
write("accents", [
    scene("Aula Magna Ñ", -12, 5, 300, "/dev/bus/usb/001/004", "IOService:/cámara", "SN-0042"),
    scene("A\u0301lava, pingüino, \U0001F3A5", 168, -90, 0),
    scene("\"comillas\", \\ y\ttab", 2**63 - 1, -(2**63), 2**63 - 1),
])
write("bracket", [scene("Pizarra [izquierda]", 1, 2, 3), scene("Mesa", 4, 5, 6)])
write("null", [scene("Vista null y nullnull", 1, 2, 3), scene("Mesa", 4, 5, 6, hid=None, ds=None)])
write("foreign", [scene(f"Escena {i}") for i in range(3)], FOREIGN_KEY)
