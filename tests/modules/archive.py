"""Writes an archive, also one that no decent program would write.

Usage: archive.py FILE MEMBER... where FILE ends with "zip" or is a compressed tar archive, and a member is NAME=TEXT,
NAME@FILE of this machine, NAME->DESTINATION for a link, NAME*SIZE for so many zeros.
"""
import io
import stat
import sys
import tarfile
import zipfile


def members():
    for word in sys.argv[2:]:
        if "->" in word:
            name, destination = word.split("->", 1)
            yield name, destination.encode(), True
        elif "@" in word:
            name, path = word.split("@", 1)
            yield name, open(path, "rb").read(), False
        elif "*" in word:
            name, size = word.split("*", 1)
            yield name, bytes(int(size)), False
        else:
            name, text = word.split("=", 1)
            yield name, text.encode(), False


if sys.argv[1].endswith("zip"):
    with zipfile.ZipFile(sys.argv[1], "w", zipfile.ZIP_DEFLATED) as archive:
        for name, contents, is_link in members():
            info = zipfile.ZipInfo(name)
            info.compress_type = zipfile.ZIP_DEFLATED
            info.create_system = 3
            info.external_attr = ((stat.S_IFLNK if is_link else stat.S_IFREG) | 0o644) << 16
            archive.writestr(info, contents)
else:
    with tarfile.open(sys.argv[1], "w:gz") as archive:
        for name, contents, is_link in members():
            info = tarfile.TarInfo(name)
            if is_link:
                info.type = tarfile.SYMTYPE
                info.linkname = contents.decode()
                archive.addfile(info)
            else:
                info.size = len(contents)
                archive.addfile(info, io.BytesIO(contents))
