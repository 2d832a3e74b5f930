"""Writes 300 applications, about 100,000 files, below ROOT/Applications of a small Mac OS X system.

Usage: makeApplications.py ROOT
"""
import os
import struct
import sys

APPLICATIONS = 300
LANGUAGES = ["English", "German", "French", "Italian", "Japanese", "Spanish", "Dutch", "sv", "da", "fi", "nb", "pt",
             "pt_PT", "zh_CN", "zh_TW", "ko", "ru", "pl"]


def write(path, contents=b"x" * 100, mode=0o644):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    descriptor = os.open(path, os.O_WRONLY | os.O_CREAT, mode)
    os.write(descriptor, contents)
    os.close(descriptor)


def property_list(values):
    members = "".join(f"<key>{key}</key><string>{value}</string>" for key, value in values.items())
    return f'<plist version="1.0"><dict>{members}</dict></plist>'.encode()


# An executable for two processors, as far as its table goes.
PROGRAM = (struct.pack(">II", 0xcafebabe, 2) + struct.pack(">IIIII", 18, 0, 4096, 4096, 12) +
           struct.pack(">IIIII", 7, 3, 8192, 4096, 12)).ljust(12288, b"\0")

root = sys.argv[1]
write(f"{root}/System/Library/CoreServices/SystemVersion.plist", property_list({"ProductVersion": "10.6.8"}))
os.makedirs(f"{root}/Users/sam/Library/Preferences")
for number in range(APPLICATIONS):
    contents = f"{root}/Applications/Application {number}.app/Contents"
    write(f"{contents}/Info.plist", property_list({"CFBundleIdentifier": f"com.example.application{number}"}))
    write(f"{contents}/PkgInfo", b"APPL????")
    write(f"{contents}/MacOS/Application {number}", PROGRAM, 0o755)
    for language in LANGUAGES:
        for file in range(6):
            write(f"{contents}/Resources/{language}.lproj/{file}.strings")
        for file in ("classes.nib", "info.nib", "keyedobjects.nib"):
            write(f"{contents}/Resources/{language}.lproj/MainMenu.nib/{file}")
    for file in range(130):
        write(f"{contents}/Resources/image{file}.png")
    for framework in range(2):
        version = f"{contents}/Frameworks/F{framework}.framework/Versions/A"
        write(f"{version}/F{framework}", PROGRAM if framework == 0 else PROGRAM[4096:8192], 0o755)
        for file in range(15):
            write(f"{version}/Headers/{file}.h")
