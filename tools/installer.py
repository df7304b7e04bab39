#!/usr/bin/env python3
"""Makes the installer package of a program folder.

    installer.py FOLDER LANGUAGE WIDTH VERSION EPOCH OUTPUT

FOLDER is what is installed, LANGUAGE en or de, WIDTH 32 or 64, VERSION that of the package (7.3.7044),
EPOCH the time of every file in seconds since 1970. The package depends on these alone: product and
package codes and those of the components are derived from them.
"""

import datetime
import os
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile
import uuid
from xml.sax.saxutils import quoteattr

ROOT = pathlib.Path(__file__).resolve().parent.parent
SOURCES = ROOT / "resources/installer"

LCIDS = {"en": 1033, "de": 1031}
PLATFORMS = {32: "Intel", 64: "x64"}
NAMESPACE = uuid.UUID("5f2bb7f0-3f5d-5c1a-9a59-3f5f0a7e4d10")
# What an elevated installation takes over from the user's command line and from the searches.
SECURE_PROPERTIES = ["INSTALLFOLDER", "MACHINEFOLDER", "NEWER_FOUND", "OLDER_FOUND",
                     "OTHER_WIDTH_FOUND", "USERFOLDER"]
NEVER_OVERWRITE = 128  # msidbComponentAttributesNeverOverwrite
COMPONENT_64BIT = 256  # msidbComponentAttributes64bit
LOCATOR_64BIT = 16  # msidbLocatorType64bit


def guid(*parts):
    """A code that depends on the parts alone, as the tables have it."""
    return "{" + str(uuid.uuid5(NAMESPACE, "/".join(str(part) for part in parts))).upper() + "}"


def upgrade_code(width):
    """The same for all languages and versions of a width, for ever."""
    return guid("upgrade", width)


def product_code(version, language, width):
    return guid("product", version, language, width)


def identifier(prefix, path):
    """A name for tables: letters, digits, underscores and full stops. Never the same for two paths."""
    plain = "".join(letter if letter.isalnum() and letter.isascii() else "_" for letter in path)
    return f"{prefix}_{plain[-40:]}_{uuid.uuid5(NAMESPACE, path).hex[:8]}"


def file_version(path):
    """The version in a program's resources and its language, or nothing."""
    data = path.read_bytes()
    at = data.find(struct.pack("<I", 0xFEEF04BD))
    if at < 0 or data[:2] != b"MZ":
        return None
    high, low = struct.unpack_from("<II", data, at + 8)
    key = "Translation\0".encode("utf-16-le")
    values = data.find(key, at)
    language = struct.unpack_from("<H", data, (values + len(key) + 3) // 4 * 4)[0] if values >= 0 else 0
    return f"{high >> 16}.{high & 0xFFFF}.{low >> 16}.{low & 0xFFFF}", language


def files_of(folder):
    return sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*") if path.is_file())


def write_fragments(folder, width, work):
    """A component for each file, in nested directories, and the list of the components."""
    lines, references = ['<?xml version="1.0" encoding="utf-8"?>', "<Include>"], []
    open_parts = []
    for name in files_of(folder):
        parts = name.split("/")[:-1]
        common = 0
        while common < min(len(parts), len(open_parts)) and parts[common] == open_parts[common]:
            common += 1
        lines += ["</Directory>"] * (len(open_parts) - common)
        for depth in range(common, len(parts)):
            path = "/".join(parts[:depth + 1])
            lines.append(f'<Directory Id={quoteattr(identifier("d", path))} '
                         f'Name={quoteattr(parts[depth])}>')
        open_parts = parts
        component = identifier("c", name)
        lines.append(f'<Component Id={quoteattr(component)} Guid={quoteattr(guid("file", width, name))}>'
                     f'<File Id={quoteattr(identifier("f", name))} KeyPath="yes" '
                     f'Name={quoteattr(name.split("/")[-1])} Source={quoteattr("files/" + name)}/>'
                     '</Component>')
        references.append(f"<ComponentRef Id={quoteattr(component)}/>")
    lines += ["</Directory>"] * len(open_parts) + ["</Include>"]
    (work / "Files.wxi").write_text("\n".join(lines), encoding="utf-8")
    (work / "Features.wxi").write_text(
        '<?xml version="1.0" encoding="utf-8"?>\n<Include>\n' + "\n".join(references) + "\n</Include>\n",
        encoding="utf-8")


def run(*arguments, **options):
    result = subprocess.run([str(argument) for argument in arguments], capture_output=True,
                            encoding="utf-8", check=False, **options)
    if result.returncode or "warning" in result.stderr.lower() or "critical" in result.stderr.lower():
        sys.exit(f"installer: {arguments[0]}: {result.stdout}{result.stderr}")
    return result.stdout


def make(folder, language, width, version, epoch, output):
    other = {32: 64, 64: 32}[width]
    # Every tool converts times from and to local ones.
    os.environ.update(TZ="UTC", LC_ALL="C.UTF-8", SOURCE_DATE_EPOCH=str(epoch))
    # A fixed name: the paths of the sources must not have an influence on anything.
    with tempfile.TemporaryDirectory(prefix="marl-msi-") as place:
        work = pathlib.Path(place)
        staged = work / "files"
        shutil.copytree(folder, staged)
        shutil.copyfile(ROOT / "resources/icons/Marl.ico", work / "Marl.ico")
        shutil.copyfile(SOURCES / "Marl.wxs", work / "Marl.wxs")
        shutil.copyfile(SOURCES / f"{language}.wxi", work / "Texts.wxi")
        write_fragments(staged, width, work)
        for path in [*staged.rglob("*"), work / "Marl.ico"]:
            os.utime(path, (epoch, epoch))
        variables = {
            "Lcid": LCIDS[language], "Version": version,
            "ProductCode": product_code(version, language, width),
            "UpgradeCode": upgrade_code(width), "OtherUpgradeCode": upgrade_code(other),
            "FolderGuid": guid("folder", width), "StartMenuGuid": guid("start menu", width),
            "ProgramFiles": "ProgramFilesFolder" if width == 32 else "ProgramFiles64Folder",
        }
        defines = [word for name, value in variables.items() for word in ("-D", f"{name}={value}")]
        package = work / "Marl.msi"
        run("wixl", "--wxidir", ".", "-a", "x86" if width == 32 else "x64", *defines, "-o", "Marl.msi", "Marl.wxs",
            cwd=work)
        finish(package, staged, language, width, version, epoch)
        shutil.copyfile(package, output)


def short_name(name, taken):
    """The 8.3 name that a table needs before the name itself; `taken` are those of the same folder."""
    stem, dot, extension = name.rpartition(".")
    if not dot:
        stem, extension = name, ""
    plain = ["".join(letter for letter in part.upper() if letter.isalnum() and letter.isascii())
             for part in (stem, extension)]
    short = plain[0][:8] + (f".{plain[1][:3]}" if plain[1] else "")
    if short.lower() == name.lower():
        taken.add(short)
        return name
    for number in range(1, 1000):
        tail = f"~{number}"
        short = plain[0][:8 - len(tail)] + tail + (f".{plain[1][:3]}" if plain[1] else "")
        if short not in taken:
            taken.add(short)
            return f"{short}|{name}"
    raise ValueError(name)


class Table:
    """A table of a package: rows of texts by the names of their columns."""

    def __init__(self, package, name):
        self.package, self.name = package, name
        # Streams of a table are left in the current folder.
        with tempfile.TemporaryDirectory() as place:
            exported = subprocess.run(["msiinfo", "export", str(package), name], capture_output=True,
                                      check=True, cwd=place).stdout.decode("utf-8").rstrip("\x00")
        lines = exported.replace("\r\n", "\n").rstrip("\n").split("\n")
        self.head = lines[:3]
        self.columns = lines[0].split("\t")
        self.rows = [dict(zip(self.columns, line.split("\t"))) for line in lines[3:]]

    def write(self):
        lines = self.head + ["\t".join(row[column] for column in self.columns) for row in self.rows]
        path = self.package.parent / f"{self.name}.idt"
        path.write_bytes("".join(line + "\r\n" for line in lines).encode("utf-8"))
        run("msibuild", self.package, "-i", path)


def finish(package, folder, language, width, version, epoch):
    """What wixl does not set, or sets to something else."""
    # The texts are in this code page; wixl leaves it open.
    (package.parent / "_ForceCodepage.idt").write_bytes(b"\r\n\r\n1252\t_ForceCodepage\r\n")
    run("msibuild", package, "-i", package.parent / "_ForceCodepage.idt")

    properties = Table(package, "Property")
    for row in properties.rows:
        if row["Property"] == "SecureCustomProperties":
            row["Value"] = ";".join(SECURE_PROPERTIES)
    properties.write()

    registry = Table(package, "Registry")
    for row in registry.rows:
        if row["Component_"] == "Folder":
            row["Root"] = "-1"  # The user's or the machine's, as the installation is.
    registry.write()

    upgrades = Table(package, "Upgrade")
    for row in upgrades.rows:
        if row["ActionProperty"] == "OLDER_FOUND":
            # Both ends of the range belong to it (256, 512); features migrate (1).
            row["Attributes"] = "769"
    upgrades.write()

    names = {identifier("f", name): name for name in files_of(folder)}
    taken = {}
    files, hashes = Table(package, "File"), Table(package, "MsiFileHash")
    for row in sorted(files.rows, key=lambda row: names[row["File"]]):
        place, _, leaf = names[row["File"]].rpartition("/")
        row["FileName"] = short_name(leaf, taken.setdefault(place, set()))
        known = file_version(folder / names[row["File"]])
        if known:
            row["Version"], row["Language"] = known[0], str(known[1])
            # A file has a version or a hash.
            hashes.rows = [other for other in hashes.rows if other["File_"] != row["File"]]
    files.write()
    hashes.write()

    folders = {identifier("d", str(parent)): str(parent) for name in names.values()
               for parent in pathlib.PurePosixPath(name).parents if str(parent) != "."}
    directories = Table(package, "Directory")
    for row in sorted(directories.rows, key=lambda row: folders.get(row["Directory"], "")):
        if row["Directory"] in folders:
            place, _, leaf = folders[row["Directory"]].rpartition("/")
            row["DefaultDir"] = short_name(leaf, taken.setdefault(place, set()))
        elif row["Directory"] == "MACHINEFOLDER":
            row["DefaultDir"] = short_name(row["DefaultDir"], set())
    directories.write()

    components = Table(package, "Component")
    skins = {identifier("c", name) for name in names.values() if name.startswith("Skins/")}
    for row in components.rows:
        attributes = int(row["Attributes"])
        if row["Component"] in skins:
            attributes |= NEVER_OVERWRITE  # A skin that the user has changed stays.
        if width == 64:
            attributes |= COMPONENT_64BIT
        row["Attributes"] = str(attributes)
    components.write()

    if width == 64:
        searches = Table(package, "RegLocator")
        for row in searches.rows:
            row["Type"] = str(int(row["Type"]) | LOCATOR_64BIT)
        searches.write()

    time = datetime.datetime.fromtimestamp(epoch, datetime.timezone.utc).strftime("%Y/%m/%d %H:%M:%S")
    summary = Table(package, "_SummaryInformation")
    values = {"7": f"{PLATFORMS[width]};{LCIDS[language]}",
              "9": guid("package", version, language, width, epoch), "12": time, "13": time}
    for row in summary.rows:
        row["Value"] = values.get(row["PropertyId"], row["Value"])
    summary.write()


def main():
    if len(sys.argv) != 7:
        sys.exit(__doc__)
    folder, language, width, version, epoch, output = sys.argv[1:]
    make(pathlib.Path(folder).resolve(), language, int(width), version, int(epoch),
         pathlib.Path(output).resolve())


if __name__ == "__main__":
    main()
