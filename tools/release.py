#!/usr/bin/env python3
"""Parts of a release; tools/release.sh calls it.

    release.py zip FOLDER ARCHIVE           an archive with entries in order and fixed times
    release.py licences WIDTH FOLDER        the licences of what a program is built with
    release.py bill VERSION STAGE FILE      the bill of materials of all program folders
    release.py winget VERSION PACKAGE OUT FOLDER   the manifest of the package manager
    release.py check VERSION OUT STAGE      whether the release holds what it should
    release.py sizes OUT                    a table of sizes, and whether they are small enough

The time of everything is SOURCE_DATE_EPOCH.
"""

import datetime
import hashlib
import json
import os
import pathlib
import re
import struct
import subprocess
import sys
import uuid
import zipfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import installer  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parent.parent
ARCHITECTURES = {32: "x86", 64: "x64"}
TRIPLETS = {32: "i686-w64-mingw32", 64: "x86_64-w64-mingw32"}
PACKAGES = {32: "i686", 64: "x86-64"}
# As Windows shows sizes: 2.5 and 3 MB of 1,048,576 bytes.
LIMITS = {".zip": 5 * 1024 * 512, ".msi": 3 * 1024 * 1024}
# What every Windows from 7 on has.
WINDOWS_LIBRARIES = {"advapi32", "comctl32", "comdlg32", "gdi32", "kernel32", "msimg32", "msvcrt", "ole32",
                     "oleaut32", "shell32", "user32", "uxtheme", "gdiplus", "shlwapi", "version", "wtsapi32",
                     "rpcrt4", "oleacc", "dwmapi", "shcore"}


def epoch():
    return int(os.environ["SOURCE_DATE_EPOCH"])


def now():
    return datetime.datetime.fromtimestamp(epoch(), datetime.timezone.utc)


def digest(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


def make_zip(folder, archive):
    folder = pathlib.Path(folder)
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as out:
        for name in installer.files_of(folder):
            entry = zipfile.ZipInfo(name, now().timetuple()[:6])
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.create_system = 3
            entry.external_attr = 0o100644 << 16
            out.writestr(entry, (folder / name).read_bytes(), compresslevel=9)


def package_version(name):
    """The version of a Debian package, or nothing on another system."""
    try:
        return subprocess.run(["dpkg-query", "-W", "-f", "${Version}", name], capture_output=True,
                              encoding="utf-8", check=True).stdout
    except (OSError, subprocess.CalledProcessError):
        return ""


def runtime(width):
    """What is linked into a program: name, package, file with its terms, and licence."""
    gcc = f"g++-mingw-w64-{PACKAGES[width]}-posix"
    crt = f"mingw-w64-{PACKAGES[width]}-dev"
    return [("libstdc++", gcc, "GPL-3.0-or-later WITH GCC-exception-3.1"),
            ("libgcc", gcc, "GPL-3.0-or-later WITH GCC-exception-3.1"),
            ("winpthreads", crt, "MIT AND BSD-3-Clause"),
            ("mingw-w64 runtime", crt, "ZPL-2.1")]


def licences(width, folder):
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    lines = ["Marl is built with the following, and parts of it are in the program.", ""]
    for package in sorted({package for _, package, _ in runtime(int(width))}):
        terms = pathlib.Path("/usr/share/doc") / package / "copyright"
        names = [name for name, other, _ in runtime(int(width)) if other == package]
        target = f"{names[0].split()[0].replace('+', 'x')}.txt"
        if "libstdc++" in names:
            target = "gcc.txt"
        elif "winpthreads" in names:
            target = "mingw-w64.txt"
        (folder / target).write_bytes(terms.read_bytes())
        lines.append(f"{target}: {', '.join(names)} (Debian package {package})")
    general = pathlib.Path("/usr/share/common-licenses/GPL-3")
    (folder / "GPL-3.txt").write_bytes(general.read_bytes())
    lines += ["GPL-3.txt: the licence that gcc.txt names, with its exception for programs like this one", ""]
    (folder / "README.txt").write_text("\r\n".join(lines), encoding="utf-8", newline="")


def picture_source(name):
    """Where a picture comes from: `./marl art` and `./marl help-pictures` make them."""
    match = re.match(r"set(\d)_\d+\.png$", name)
    if match:
        return f"resources/art/glyphs, resources/art/styles/set{match[1]}-*.svg, resources/art/tints.txt"
    match = re.match(r"(about|splash)", name)
    if match:
        return f"resources/art/{match[1]}.svg"
    if re.match(r"menu_\d+\.png$", name):
        return "resources/art/glyphs, resources/art/styles, resources/art/tints.txt"
    if name.startswith(("Marl.ico", "program-")):
        return "resources/art/application.svg, resources/art/application.txt"
    return ""


def bill(version, stage, target):
    stage = pathlib.Path(stage)
    components = []

    def component(kind, name, reference, **more):
        components.append({"type": kind, "name": name, "bom-ref": reference, **more})

    def file(path, name, reference, **properties):
        component("file", name, reference, hashes=[{"alg": "SHA-256", "content": digest(path)}],
                  properties=[{"name": f"marl:{key}", "value": value} for key, value in properties.items()])
    for folder in sorted(stage.iterdir()):
        for name in installer.files_of(folder):
            properties = {}
            if name.endswith(".png"):
                page = "the program's icon (resources/art)" if name.endswith("marl.png") else \
                    "a picture of the running program, by ./marl help-pictures"
                properties["source"] = page
            elif name.startswith("Help/"):
                properties["source"] = "help/" + folder.name[:-2] + ", by pandoc"
            file(folder / name, name, f"{folder.name}/{name}", **properties)
    for path in sorted((ROOT / "resources/icons").iterdir()):
        file(path, f"resources/icons/{path.name}", f"picture/{path.name}", source=picture_source(path.name))
    for width in (32, 64):
        for name, package, licence in runtime(width):
            component("library", name, f"{name}/{width}", version=package_version(package),
                      licenses=[{"expression": licence}],
                      properties=[{"name": "marl:package", "value": package},
                                  {"name": "marl:width", "value": str(width)}])
    tools = ["g++-mingw-w64-i686-posix", "g++-mingw-w64-x86-64-posix", "binutils-mingw-w64-i686",
             "binutils-mingw-w64-x86-64", "cmake", "ninja-build", "pandoc", "wixl", "msitools"]
    data = {
        "bomFormat": "CycloneDX", "specVersion": "1.5", "version": 1,
        "serialNumber": "urn:uuid:" + str(uuid.uuid5(installer.NAMESPACE, f"bill/{version}/{epoch()}")),
        "metadata": {
            "timestamp": now().strftime("%Y-%m-%dT%H:%M:%SZ"),
            "component": {"type": "application", "name": "Marl", "version": version, "bom-ref": "Marl"},
            "tools": {"components": [{"type": "application", "name": name, "version": package_version(name)}
                                     for name in tools]},
        },
        "components": components,
        "dependencies": [{"ref": f"{folder.name}/Marl.exe",
                          "dependsOn": [f"{name}/{folder.name[-2:]}"
                                        for name, _, _ in runtime(int(folder.name[-2:]))]}
                         for folder in sorted(stage.iterdir())],
    }
    pathlib.Path(target).write_text(json.dumps(data, indent=1, ensure_ascii=False) + "\n", encoding="utf-8")


def packages(out, version):
    """The installer packages: language, width, path."""
    found = []
    for path in sorted(pathlib.Path(out).glob(f"Marl-{version}-*.msi")):
        match = re.match(rf"Marl-{re.escape(version)}-(\w+)-win(\d+)\.msi$", path.name)
        found.append((match[1], int(match[2]), path))
    return found


def winget(version, package, out, folder):
    """Three files: the version, the installers, and the description. MARL_RELEASE_URL is where the
    packages will lie."""
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    address = os.environ.get("MARL_RELEASE_URL", f"https://www.marl.example/download/{version}").rstrip("/")
    head = f"PackageIdentifier: Oru.Marl\nPackageVersion: {version}\n"

    def write(name, text, kind):
        (folder / name).write_text(head + text + f"ManifestType: {kind}\nManifestVersion: 1.6.0\n",
                                   encoding="utf-8")
    write("Oru.Marl.yaml", "DefaultLocale: en-US\n", "version")
    text = ("Platform:\n- Windows.Desktop\nMinimumOSVersion: 6.1.7601.0\nInstallerType: msi\n"
            "UpgradeBehavior: install\nInstallers:\n")
    for language, width, path in packages(out, version):
        code = installer.product_code(package, language, width)
        for scope, custom in (("user", 'ALLUSERS=2 MSIINSTALLPERUSER=1'), ("machine", "ALLUSERS=1")):
            text += (f"- Architecture: {ARCHITECTURES[width]}\n"
                     f"  InstallerLocale: {'en-US' if language == 'en' else 'de-DE'}\n"
                     f"  Scope: {scope}\n"
                     f"  InstallerUrl: {address}/{path.name}\n"
                     f"  InstallerSha256: {digest(path).upper()}\n"
                     f"  InstallerSwitches:\n    Custom: {custom}\n"
                     f"  ProductCode: '{code}'\n"
                     f"  AppsAndFeaturesEntries:\n  - DisplayVersion: {package}\n"
                     f"    ProductCode: '{code}'\n"
                     f"    UpgradeCode: '{installer.upgrade_code(width)}'\n")
    write("Oru.Marl.installer.yaml", text, "installer")
    write("Oru.Marl.locale.en-US.yaml",
          "PackageLocale: en-US\nPublisher: Oru\nPublisherUrl: https://www.marl.example\n"
          "PublisherSupportUrl: https://support.marl.example\nPackageName: Marl\n"
          "PackageUrl: https://www.marl.example\nLicense: Proprietary\nCopyright: Copyright © 1996-2007 Oru\n"
          "ShortDescription: Switchboard of the Marl Translation Suite\n"
          "Moniker: marl\nTags:\n- translation\n", "defaultLocale")


def imports(path, width):
    text = subprocess.run([f"{TRIPLETS[width]}-objdump", "-p", str(path)], capture_output=True,
                          encoding="utf-8", check=True).stdout
    return {name.lower().removesuffix(".dll") for name in re.findall(r"DLL Name: (\S+)", text)}


def machine(path):
    data = path.read_bytes()
    return struct.unpack_from("<H", data, struct.unpack_from("<I", data, 0x3C)[0] + 4)[0]


def check(version, out, stage):
    out, stage = pathlib.Path(out), pathlib.Path(stage)
    failed = []

    def expect(holds, text):
        if not holds:
            failed.append(text)
    keys = sorted(folder.name for folder in stage.iterdir())
    codes = sorted({key[:-2] for key in keys})
    expect(keys == sorted(f"{code}{width}" for code in codes for width in (32, 64)), f"folders: {keys}")
    wanted = {"CHANGELOG.md", "SHA256SUMS", f"Marl-{version}-bom.cdx.json", "winget/Oru.Marl.yaml",
              "winget/Oru.Marl.installer.yaml", "winget/Oru.Marl.locale.en-US.yaml"}
    wanted |= {f"Marl-{version}-symbols-win{width}.zip" for width in (32, 64)}
    wanted |= {f"Marl-{version}-{key[:-2]}-win{key[-2:]}.{kind}" for key in keys for kind in ("zip", "msi")}
    expect(set(installer.files_of(out)) == wanted,
           f"files: {sorted(set(installer.files_of(out)) ^ wanted)}")
    for line in (out / "SHA256SUMS").read_text(encoding="utf-8").splitlines():
        value, name = line.split("  ", 1)
        expect(digest(out / name) == value, f"SHA256SUMS: {name}")
    bill_of = json.loads((out / f"Marl-{version}-bom.cdx.json").read_text(encoding="utf-8"))
    billed = {entry["bom-ref"]: entry for entry in bill_of["components"]}
    for entry in billed.values():
        expect(entry["type"] != "library" or entry["version"], f"bill: no version of {entry['name']}")
        if entry["name"].endswith((".png", ".ico", ".bin")):
            expect(any(item["name"] == "marl:source" and item["value"] for item in entry["properties"]),
                   f"bill: no source of {entry['name']}")
    for key in keys:
        folder, code, width = stage / key, key[:-2], int(key[-2:])
        names = installer.files_of(folder)
        for name in ("Marl.exe", "q17icl.oru", f"Help/{code}/index.html", "Licences/gcc.txt",
                     "Licences/mingw-w64.txt", "Licences/GPL-3.txt", "Skins/Marl.qsk"):
            expect(name in names, f"{key}: {name} is missing")
        expect({name.split("/")[1] for name in names if name.startswith("Help/")} == {code},
               f"{key}: help of another language")
        found = installer.file_version(folder / "Marl.exe")
        expect(found and found[0] == version, f"{key}: the program's version is {found}")
        expect(machine(folder / "Marl.exe") == {32: 0x14C, 64: 0x8664}[width], f"{key}: width")
        strange = imports(folder / "Marl.exe", width) - WINDOWS_LIBRARIES
        expect(not strange, f"{key}: the program needs {sorted(strange)}")
        with zipfile.ZipFile(out / f"Marl-{version}-{code}-win{width}.zip") as archive:
            expect(archive.testzip() is None and
                   {name: hashlib.sha256(archive.read(name)).hexdigest() for name in archive.namelist()} ==
                   {name: digest(folder / name) for name in names}, f"{key}: the archive differs")
        for name in names:
            entry = billed.get(f"{key}/{name}")
            expect(entry and entry["hashes"][0]["content"] == digest(folder / name), f"bill: {key}/{name}")
        folder_name = str(ROOT).encode()
        expect(folder_name not in (folder / "Marl.exe").read_bytes(), f"{key}: a path of the build")
    manifest = (out / "winget/Oru.Marl.installer.yaml").read_text(encoding="utf-8")
    for _, _, path in packages(out, version):
        expect(manifest.count(digest(path).upper()) == 2, f"winget: the hash of {path.name}")
    head = (out / "CHANGELOG.md").read_text(encoding="utf-8")
    text = subprocess.run(["cmake", "-P", str(ROOT / "cmake/VersionFile.cmake")], capture_output=True,
                          encoding="utf-8", check=True).stdout.splitlines()[1]
    expect(re.search(r"^## (.+)$", head, re.MULTILINE)[1] == text, "CHANGELOG.md does not begin with it")
    for line in failed:
        print(f"FAILED: {line}")
    print(f"{len(keys)} program folders, {len(wanted)} files in the release, {len(failed)} failures")
    return 1 if failed else 0


def sizes(out):
    status = 0
    for name in installer.files_of(pathlib.Path(out)):
        size = (pathlib.Path(out) / name).stat().st_size
        limit = 0 if "symbols" in name else LIMITS.get(pathlib.Path(name).suffix, 0)
        note = f"of {limit:,}" if limit else ""
        if limit and size > limit:
            note, status = f"MORE THAN {limit:,}", 1
        print(f"{size:>12,}  {name}  {note}".rstrip())
    return status


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    command, words = sys.argv[1], sys.argv[2:]
    commands = {"zip": make_zip, "licences": licences, "bill": bill, "winget": winget, "check": check,
                "sizes": sizes}
    if command not in commands:
        sys.exit(__doc__)
    sys.exit(commands[command](*words) or 0)


if __name__ == "__main__":
    main()
