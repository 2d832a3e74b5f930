#!/usr/bin/env python3
"""makeLeftovers.py FOLDER SCALE: a Mac OS X volume of 1,000 applications, 20,000 preference files and 500 launch files
for each unit of SCALE; every third of the latter two belongs to an application that is gone. FOLDER/lists names every
property list that has to be read, each ended by a NUL."""
import os
import plistlib
import sys

folder, scale = sys.argv[1], int(sys.argv[2])
LONG_AGO = 1309521600
lists = []


def write(path, value, binary=True):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        plistlib.dump(value, file, fmt=plistlib.FMT_BINARY if binary else plistlib.FMT_XML)


def identifier(number):
    return f"com.maker{number % 97}.product{number}"


write(f"{folder}/System/Library/CoreServices/SystemVersion.plist", {"ProductVersion": "10.6.8"}, binary=False)
applications = 1000 * scale
for number in range(applications):
    info = f"{folder}/Applications/Product {number}.app/Contents/Info.plist"
    write(info, {"CFBundleIdentifier": identifier(number), "CFBundleName": f"Product {number}",
                 "CFBundleExecutable": f"Product {number}", "CFBundleVersion": "1.0"}, binary=number % 2 == 0)
    lists.append(info)
preferences = f"{folder}/Users/sam/Library/Preferences"
for number in range(20000 * scale):
    owner = number % applications if number % 3 else applications + number
    path = f"{preferences}/{identifier(owner)}.part{number}.plist"
    write(path, {"Window": "120 80 640 480"})
    if number % 2:
        os.utime(path, (LONG_AGO, LONG_AGO))
agents = f"{folder}/Users/sam/Library/LaunchAgents"
for number in range(500 * scale):
    program = f"/Applications/Product {number}.app/Contents/{'Info.plist' if number % 3 else 'gone'}"
    path = f"{agents}/{identifier(number)}.agent.plist"
    write(path, {"Label": identifier(number) + ".agent", "ProgramArguments": [program, "--background"]}, binary=False)
    lists.append(path)
write(f"{preferences}/loginwindow.plist", {"AutoLaunchedApplicationDictionary": [{"Path": "/Applications/Gone.app"}]})
with open(f"{folder}/lists", "w") as file:
    file.write("\0".join(lists))
