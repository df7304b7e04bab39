#!/usr/bin/env python3
"""Installs, upgrades, repairs and uninstalls installer packages under Wine.

    installer_test.py VERSION STAND_IN LANGUAGE WIDTH FOLDER PACKAGE [LANGUAGE WIDTH FOLDER PACKAGE...]

VERSION is that of the packages, STAND_IN a program to put in place of the suite's tools, FOLDER what
PACKAGE installs. Runs in the prefix and on the display of the environment (tools/wine.sh); WINE is the
command that starts a Windows program. Files, registry, shortcuts and exit codes are compared with what
they were before. Wine has no restart manager, and reads the context of a package from ALLUSERS at every
step, so that it is given on every command line here.
"""

import hashlib
import os
import pathlib
import re
import shlex
import shutil
import struct
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import installer  # noqa: E402

WINE = shlex.split(os.environ.get("WINE", "wine"))
DRIVE = pathlib.Path(os.environ["WINEPREFIX"]) / "drive_c"
PLACE = DRIVE / "packages"
FOLDER = "Übersetzung Λ мир/Marl Suite (1)"
EPOCH = 1_000_000_000
SUCCESS, FAILURE = 0, 1603
failures = 0


def expect(holds, text):
    global failures
    if not holds:
        failures += 1
        print(f"FAILED: {text}", flush=True)


def same(found, wanted, text):
    if isinstance(found, dict) and isinstance(wanted, dict):
        differing = {key for key in {*found, *wanted} if found.get(key) != wanted.get(key)}
        found = {key: found.get(key) for key in differing}
        wanted = {key: wanted.get(key) for key in differing}
    expect(found == wanted, f"{text}:\n   found  {found}\n   wanted {wanted}")


def wine(*arguments):
    return subprocess.run([*WINE, *arguments], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                          check=False).returncode


def msiexec(*arguments, code=SUCCESS):
    """Silently, with a log. Of an exit code 8 bits come through."""
    log = PLACE / "last.log"
    log.unlink(missing_ok=True)
    # An empty property at the end, because Wine would take the next word for its value.
    words = sorted(arguments, key=lambda word: word.endswith("="))
    found = wine("msiexec", words[0], words[1], "/qn", "/l*v", "C:\\packages\\last.log", *words[2:])
    same(found, code & 0xFF, f"exit code of msiexec {' '.join(arguments)}")
    expect(log.is_file() and log.stat().st_size > 0, "there is no log")
    return log.read_bytes().replace(b"\0", b"").decode("cp1252", "replace") if log.is_file() else ""


def tree():
    """The files of the drive and what is in them, except for the installer's own."""
    found = {}
    for path in DRIVE.rglob("*"):
        name = path.relative_to(DRIVE).as_posix()
        if path.is_symlink() or not path.is_file() or name.startswith(("windows/", "packages/")):
            continue
        if "/Temp/" in name or "/Microsoft/Installer/" in name:
            continue
        found[name] = hashlib.sha256(path.read_bytes()).hexdigest()
    return found


def below(files, folder):
    return {name[len(folder) + 1:]: value for name, value in files.items()
            if name.startswith(folder + "/")}


def registry(root):
    """The values below Software, without the installer's own bookkeeping."""
    # The 64-bit view holds the 32-bit one, as Wow6432Node.
    wine("reg", "export", f"{root}\\Software", "C:\\packages\\registry.txt", "/y", "/reg:64")
    text = (PLACE / "registry.txt").read_bytes().decode("utf-16", "replace")
    values, key = {}, ""
    for line in re.sub(r"\\\r?\n\s*", "", text).splitlines():
        if line.startswith("["):
            key = line[1:-1]
        elif line and "\\Installer" not in key and "\\Explorer" not in key:
            name, _, value = line.partition("=")
            values[f"{key}\\{name.strip(chr(34))}"] = value
    return values


def world():
    return tree(), {**registry("HKEY_CURRENT_USER"), **registry("HKEY_LOCAL_MACHINE")}


def added(after, before):
    return {name: value for name, value in after.items() if before.get(name) != value}


def content(folder):
    return {path.relative_to(folder).as_posix(): hashlib.sha256(path.read_bytes()).hexdigest()
            for path in folder.rglob("*") if path.is_file()}


def settings_of(values):
    return {name: value for name, value in values.items()
            if "\\Software\\Oru\\Marl\\" in name or "VB and VBA Program Settings" in name}


def shortcuts(files):
    return [name for name in files if name.endswith("Start Menu/Programs/Marl.lnk")]


def entries(values):
    """What the list of programs shows of Marl: name, version, publisher, and whether it can be modified."""
    shown = {}
    for name, value in values.items():
        match = re.search(r"\\Uninstall\\(\{[0-9A-Fa-f-]+\})\\(\w+)$", name)
        if match and match[2] in ("DisplayName", "DisplayVersion", "Publisher", "NoModify", "HelpLink"):
            shown.setdefault(match[1].upper(), {})[match[2]] = value.strip('"')
    return shown


def entry(version, language):
    names = {"en": "Marl", "de": "Marl (Deutsch)"}
    return {"DisplayName": names[language], "DisplayVersion": version, "Publisher": "Oru",
            "NoModify": "dword:00000001", "HelpLink": "http://support.marl.example"}


def wait_for(condition, seconds=60):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        if condition():
            return True
        time.sleep(0.2)
    return False


def panel():
    """Place and size of the program's main window, or nothing."""
    lines = subprocess.run(["xwininfo", "-root", "-tree"], capture_output=True, encoding="utf-8",
                           check=False).stdout.splitlines()
    for line in lines:
        match = re.search(r'(0x\w+) "Marl : .*\("marl\.exe".* (\d+)x(\d+)\+\S+ +\+(-?\d+)\+(-?\d+)$', line)
        if match and int(match[3]) >= 300:
            about = subprocess.run(["xwininfo", "-id", match[1]], capture_output=True,
                                   encoding="utf-8", check=False).stdout
            if "IsViewable" in about:
                return [int(number) for number in match.groups()[1:]]
    return None


def program_works(folder, shortcut):
    """The installed program comes up and starts a tool."""
    settings = "HKCU\\Software\\VB and VBA Program Settings\\Marl\\Settings"
    for name, value in (("FirstRun", "N"), ("Wizard", "N")):
        wine("reg", "add", settings, "/v", name, "/d", value, "/f")
    log = PLACE / "suite.log"
    log.unlink(missing_ok=True)
    environment = dict(os.environ, MARL_SUITE_LOG="C:\\packages\\suite.log")
    program = str(folder / "Marl.exe")
    with subprocess.Popen([*WINE, program], env=environment, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL, cwd=folder) as marl:
        if not wait_for(panel):
            expect(False, "the installed program does not come up")
            marl.kill()
            return
        time.sleep(1)
        left, top = panel()[2:]

        def press(column, row, name):
            subprocess.run(["xdotool", "mousemove", str(left + 3 + 58 + 116 * column),
                            str(top + panel()[1] - 323 + 84 * row), "sleep", "0.2", "click", "1"],
                           check=False)
            return name
        press(0, 1, "Edit")
        expect(wait_for(lambda: log.is_file() and b"Q17Bench.exe" in log.read_bytes(), 30),
               "the installed program does not start the editor")
        # Exit, on the panel; the tool's window is elsewhere.
        press(2, 3, "Exit")
        try:
            same(marl.wait(30), 0, "exit code of the installed program")
        except subprocess.TimeoutExpired:
            expect(False, "the installed program does not end")
            marl.kill()
    expect(shortcut.is_file() and "Marl.exe".encode("utf-16-le") in shortcut.read_bytes(),
           "the entry in the Start menu does not lead to the program")


def newer(folder, work):
    """The same folder as a later version would be: files changed, added and removed."""
    later = work / "later"
    shutil.copytree(folder, later)
    program = later / "Marl.exe"
    data = bytearray(program.read_bytes())
    at = data.find(struct.pack("<I", 0xFEEF04BD))
    struct.pack_into("<I", data, at + 12, struct.unpack_from("<I", data, at + 12)[0] + 1)
    program.write_bytes(data)
    (later / "q17icl.oru").write_bytes((later / "q17icl.oru").read_bytes() + b"later")
    (later / "Skins/New.qsk").write_text("<marlskin/>", encoding="utf-8")
    (later / "Skins/Harvest.qsk").write_text("<marlskin></marlskin>", encoding="utf-8")
    (next((later / "Help").iterdir()) / "keys.html").unlink()
    return later


def next_version(version):
    parts = version.split(".")
    return ".".join([*parts[:2], str(int(parts[2]) + 1)])


def life(version, stand_in, language, width, source, package, machine):
    """One package from its installation to its removal, for the user or the machine."""
    where = f"{language}, {width} bits, {'machine' if machine else 'user'}"
    print(f"== {where}", flush=True)
    context = "ALLUSERS=1" if machine else "ALLUSERS="
    suite = DRIVE / FOLDER
    shutil.rmtree(DRIVE / FOLDER.split("/", maxsplit=1)[0], ignore_errors=True)
    suite.mkdir(parents=True)
    for tool in ("Q17Bench.exe", "Q17Warden.exe"):
        shutil.copyfile(stand_in, suite / tool)
    (suite / "Skins").mkdir()
    (suite / "Skins/Mine.qsk").write_text("mine", encoding="utf-8")
    wine("reg", "add", "HKCU\\Software\\Oru\\Marl\\GUI", "/v", "Angle", "/t", "REG_DWORD", "/d", "45", "/f")
    own = content(suite)
    shutil.copyfile(package, PLACE / "this.msi")
    code = installer.product_code(version, language, width)
    packed = content(source)
    before_files, before_values = world()

    msiexec("/i", "C:\\packages\\this.msi", f"INSTALLFOLDER=C:\\{FOLDER}".replace("/", "\\"), context)
    files, values = world()
    same(below(files, FOLDER), {**own, **packed}, f"{where}: files in the folder")
    outside = {name for name in added(files, before_files) if not name.startswith(FOLDER + "/")}
    same(len(shortcuts(outside)), 1, f"{where}: shortcuts")
    same(outside - set(shortcuts(outside)), set(), f"{where}: files elsewhere")
    same(entries(added(values, before_values)), {code: entry(version, language)}, f"{where}: entry")
    root = "HKEY_LOCAL_MACHINE" if machine else "HKEY_CURRENT_USER"
    remembered = [name for name in added(values, before_values) if name.endswith("\\InstallFolder")]
    expect(remembered and all(name.startswith(root) for name in remembered),
           f"{where}: the folder is remembered in {remembered}")
    program_works(suite, DRIVE / shortcuts(outside)[0] if shortcuts(outside) else pathlib.Path())

    # Damage, and repair. What the user changed stays.
    (suite / "Marl.exe").unlink()
    (suite / "Skins/Slate.qsk").unlink()
    (suite / "Skins/Lagoon.qsk").write_text("changed by the user", encoding="utf-8")
    changed = {"Skins/Lagoon.qsk": content(suite)["Skins/Lagoon.qsk"]}
    # As /f does; Wine's /f takes neither a package nor a log.
    msiexec("/i", "C:\\packages\\this.msi", "REINSTALL=ALL", "REINSTALLMODE=omus", context)
    same(content(suite), {**own, **packed, **changed}, f"{where}: files after the repair")

    # Upgrade, without naming the folder.
    with tempfile.TemporaryDirectory() as work:
        later = newer(source, pathlib.Path(work))
        later_version = next_version(version)
        later_code = installer.product_code(later_version, language, width)
        installer.make(later, language, width, later_version, EPOCH, PLACE / "later.msi")
        (suite / "Skins/Harvest.qsk").write_text("changed too", encoding="utf-8")
        changed["Skins/Harvest.qsk"] = content(suite)["Skins/Harvest.qsk"]
        settings = settings_of(registry("HKEY_CURRENT_USER"))
        msiexec("/i", "C:\\packages\\later.msi", context)
        same(content(suite), {**own, **content(later), **changed}, f"{where}: files after the upgrade")
        files, values = world()
        same(entries(added(values, before_values)), {later_code: entry(later_version, language)},
             f"{where}: entry after the upgrade")
        same(len(shortcuts(files)), 1, f"{where}: shortcuts after the upgrade")
        same(settings_of(values), settings, f"{where}: settings")
        expect(any(name.endswith("\\GUI\\Angle") for name in settings), f"{where}: no settings")

        # Uninstall. Only what was installed goes.
        msiexec("/x", later_code, context)
        files, values = world()
        same(below(files, FOLDER), own, f"{where}: files that stay")
        same({name for name in added(files, before_files)}, set(), f"{where}: files left elsewhere")
        left = {name for name in added(values, before_values)
                if "VB and VBA Program Settings" not in name and "\\Oru\\Marl\\" not in name}
        same(left, set(), f"{where}: values left in the registry")
        same(entries(values), {}, f"{where}: entries left")
        expect(any(name.endswith("\\Oru\\Marl\\GUI\\Angle") for name in values),
               f"{where}: the user's settings are gone")

        # An older package over a newer one.
        msiexec("/i", "C:\\packages\\later.msi", f"INSTALLFOLDER=C:\\{FOLDER}".replace("/", "\\"), context)
        there = content(suite)
        log = msiexec("/i", "C:\\packages\\this.msi", context, code=FAILURE)
        same(content(suite), there, f"{where}: files after the refusal")
        expect("Property(S): NEWER_FOUND" in log, f"{where}: the log does not say why")
        msiexec("/x", later_code, context)


def refused(by_key, width, language):
    """A package of the other width changes nothing."""
    for other in {other for code, other in by_key if other != width and code == language}:
        print(f"== {other} bits over {width} bits", flush=True)
        shutil.copyfile(by_key[language, other][1], PLACE / "other.msi")
        there = tree()
        log = msiexec("/i", "C:\\packages\\other.msi", "ALLUSERS=1", code=FAILURE)
        same(tree(), there, "files after the refusal of the other width")
        expect("Property(S): OTHER_WIDTH_FOUND" in log, "the log does not say why")


def neighbours(version, packages):
    """The other language replaces, the other width refuses, and the folder without a word."""
    by_key = {(language, width): (source, package) for language, width, source, package in packages}
    for width in sorted({width for _, width in by_key}):
        languages = sorted({language for language, other in by_key if other == width})
        default = "Program Files/Marl Suite" if width == 64 else "Program Files (x86)/Marl Suite"
        for step, language in enumerate(languages):
            print(f"== {language}, {width} bits, {'over the other language' if step else 'default folder'}",
                  flush=True)
            source, package = by_key[language, width]
            shutil.copyfile(package, PLACE / "this.msi")
            msiexec("/i", "C:\\packages\\this.msi", "ALLUSERS=1")
            found, wanted = below(tree(), default), content(source)
            if step:
                # Wine keeps a file of the same version, whatever REINSTALLMODE says.
                print("not shown here: the program itself is replaced by that of the other language")
                found.pop("Marl.exe", None)
                wanted.pop("Marl.exe")
            same(found, wanted, f"{language}, {width} bits: the folder")
            same(set(entries(registry("HKEY_LOCAL_MACHINE"))),
                 {installer.product_code(version, language, width)}, f"{language}, {width}: entries")
            if not step:
                # Now, because Wine forgets the related products once it has replaced one.
                refused(by_key, width, language)
        msiexec("/x", installer.product_code(version, languages[-1], width), "ALLUSERS=1")
        same(below(tree(), default), {}, f"{width} bits: files left in the folder")


def main():
    version, stand_in = sys.argv[1:3]
    words = sys.argv[3:]
    packages = [(words[i], int(words[i + 1]), pathlib.Path(words[i + 2]), pathlib.Path(words[i + 3]))
                for i in range(0, len(words), 4)]
    PLACE.mkdir(exist_ok=True)
    for machine in (False, True):
        for language, width, source, package in packages:
            life(version, stand_in, language, width, source, package, machine)
    neighbours(version, packages)
    print(f"{len(packages)} packages, {failures} failures", flush=True)
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
