"""Writes COUNT packages' receipts of a Mac OS X 10.6 system with LINES paths each below ROOT, and all lines to ROOT/lines.

Usage: makeReceipts.py ROOT COUNT LINES WRITER, where WRITER makes a bill of materials of the lines on its input
"""
import os
import subprocess
import sys

root, count, lines, writer = sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), sys.argv[4]
receipts = f"{root}/private/var/db/receipts"
os.makedirs(receipts)
os.makedirs(f"{root}/System/Library/CoreServices", exist_ok=True)
os.makedirs(f"{root}/Users/sam/Library/Preferences", exist_ok=True)
os.symlink("private/var", f"{root}/var")
with open(f"{root}/System/Library/CoreServices/SystemVersion.plist", "w") as file:
    file.write('<plist version="1.0"><dict><key>ProductVersion</key><string>10.6.8</string></dict></plist>')
with open(f"{root}/lines", "w") as everything:
    for package in range(count):
        paths = [f"Applications/Package {package}.app/Contents/Resources/folder {line % 40}/some file {line * 7919 % lines}"
                 for line in range(lines)]
        everything.writelines(f"./{path}\n" for path in paths)
        with open(f"{receipts}/com.example.package{package}.bom", "wb") as bill:
            subprocess.run([writer], input="\n".join(paths).encode(), stdout=bill, check=True)
        with open(f"{receipts}/com.example.package{package}.plist", "w") as file:
            file.write(f'<plist version="1.0"><dict><key>PackageIdentifier</key><string>com.example.package{package}'
                       "</string></dict></plist>")
