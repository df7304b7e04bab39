#!/usr/bin/env python3
"""Checks the tables of installer packages against the consistency rules that tables alone can show.

    installer_check.py LANGUAGE WIDTH FOLDER PACKAGE [LANGUAGE WIDTH FOLDER PACKAGE...]

Names in brackets are those of the platform's own consistency evaluators. One of them is broken on
purpose: REINSTALLMODE stands in the table of properties (ICE40; resources/installer/Marl.wxs says why).
First every rule is tried on a package with a planted fault.
"""

import copy
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import installer  # noqa: E402

TABLES = ["Component", "Directory", "Feature", "FeatureComponents", "File", "Icon", "InstallExecuteSequence",
          "InstallUISequence", "LaunchCondition", "Media", "MsiFileHash", "Property", "RegLocator",
          "Registry", "AppSearch", "Shortcut", "Upgrade", "CustomAction", "CreateFolder", "RemoveFile"]
GUID = re.compile(r"^\{[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\}$")
SHORT = re.compile(r"^[^\s\\/:*?\"<>|+,;=\[\]]{1,8}(\.[^\s\\/:*?\"<>|+,;=\[\].]{1,3})?$")
KEYS = {"Component": 1, "Directory": 1, "Feature": 1, "FeatureComponents": 2, "File": 1, "Icon": 1,
        "InstallExecuteSequence": 1, "InstallUISequence": 1, "LaunchCondition": 1, "Media": 1,
        "MsiFileHash": 1, "Property": 1, "RegLocator": 1, "Registry": 1, "AppSearch": 2, "Shortcut": 1,
        "Upgrade": 5}


def read(package):
    known = installer.run("msiinfo", "tables", package).split()
    return {name: installer.Table(package, name).rows if name in known else [] for name in TABLES}


def complaints(tables, language, width, folder):
    """The broken rules, as sentences."""
    found = []

    def rule(holds, text):
        if not holds:
            found.append(text)

    properties = {row["Property"]: row["Value"] for row in tables["Property"]}
    components = {row["Component"]: row for row in tables["Component"]}
    directories = {row["Directory"]: row for row in tables["Directory"]}
    files = {row["File"]: row for row in tables["File"]}
    registry = {row["Registry"]: row for row in tables["Registry"]}
    features = {row["Feature"] for row in tables["Feature"]}

    for name, count in KEYS.items():
        keys = [tuple(list(row.values())[:count]) for row in tables[name]]
        rule(len(keys) == len(set(keys)), f"{name}: a key occurs twice")

    # The product. [ICE24]
    for name in ("ProductCode", "UpgradeCode"):
        rule(GUID.match(properties.get(name, "")), f"Property: {name} is no code")
    rule(properties.get("ProductCode") != properties.get("UpgradeCode"), "Property: one code for two")
    version = properties.get("ProductVersion", "")
    rule(re.match(r"^\d{1,3}\.\d{1,3}\.\d{1,5}$", version) and
         all(int(part) <= most for part, most in zip(version.split("."), (255, 255, 65535))),
         f"Property: {version} is no version")
    rule(properties.get("ProductLanguage") == str(installer.LCIDS[language]), "Property: language")
    for name in ("ProductName", "Manufacturer", "ARPHELPLINK", "ARPPRODUCTICON"):
        rule(properties.get(name), f"Property: {name} is missing")
    rule(properties.get("ARPNOMODIFY") == "1", "Property: the entry can be modified")
    rule(properties.get("ARPPRODUCTICON") in {row["Name"] for row in tables["Icon"]}, "Icon: missing")
    rule(not tables["CustomAction"], "there are custom actions")
    for name in properties:
        rule(re.match(r"^[A-Za-z_][A-Za-z0-9_.]*$", name), f"Property: {name} is no name")

    # Components. [ICE08, ICE18, ICE21, ICE80, ICE92]
    codes = [row["ComponentId"] for row in tables["Component"]]
    rule(len(codes) == len(set(codes)), "Component: a code occurs twice")
    in_feature = {row["Component_"] for row in tables["FeatureComponents"]}
    for name, row in components.items():
        rule(GUID.match(row["ComponentId"]), f"Component {name}: no code")
        rule(row["Directory_"] in directories, f"Component {name}: no such directory")
        rule(name in in_feature, f"Component {name}: in no feature")
        attributes = int(row["Attributes"])
        if attributes & 4:
            key = registry.get(row["KeyPath"])
        else:
            key = files.get(row["KeyPath"])
        rule(key and key["Component_"] == name, f"Component {name}: its key path is not its own")
        rule(bool(attributes & 256) == (width == 64), f"Component {name}: wrong width")
        rule(not attributes & (16 | 2048), f"Component {name}: permanent or shared")
    for row in tables["FeatureComponents"]:
        rule(row["Feature_"] in features and row["Component_"] in components,
             "FeatureComponents: leads nowhere")

    # Directories and names. [ICE03, ICE30, ICE90, ICE99]
    taken = {}
    for name, row in directories.items():
        seen, parent = {name}, row["Directory_Parent"]
        while parent and parent in directories and parent not in seen:
            seen.add(parent)
            parent = directories[parent]["Directory_Parent"]
        rule(not parent and "TARGETDIR" in seen, f"Directory {name}: not below the root")
        own = row["DefaultDir"]
        if own not in (".", "SourceDir"):
            taken.setdefault(row["Directory_Parent"], []).append(own)
    for name, row in files.items():
        rule(row["Component_"] in components, f"File {name}: no such component")
        if row["Component_"] in components:
            taken.setdefault(components[row["Component_"]]["Directory_"], []).append(row["FileName"])
    for place, names in taken.items():
        shorts, longs = [], []
        for name in names:
            short, bar, long = name.partition("|")
            rule(SHORT.match(short), f"{place}: {short} is no short name")
            rule(not bar or not re.search(r'[\\/:*?"<>|]', long), f"{place}: {long} is no name")
            shorts.append(short.lower())
            longs.append((long or short).lower())
        rule(len(shorts) == len(set(shorts)) and len(longs) == len(set(longs)),
             f"{place}: two entries of one name")

    # Files: those of the folder, in order, with a version or a hash. [ICE04, ICE60]
    def path_of(row):
        parts = [row["FileName"].split("|")[-1]]
        place = components[row["Component_"]]["Directory_"] if row["Component_"] in components else ""
        while place in directories and place != "INSTALLFOLDER":
            parts.insert(0, directories[place]["DefaultDir"].split("|")[-1])
            place = directories[place]["Directory_Parent"]
        return "/".join(parts)
    packed = {path_of(row): int(row["FileSize"]) for row in files.values()}
    rule(packed == {name: (folder / name).stat().st_size for name in installer.files_of(folder)},
         "File: not the files of the folder")
    rule(sorted(int(row["Sequence"]) for row in files.values()) == list(range(1, len(files) + 1)),
         "File: gaps in the sequence")
    rule([int(row["LastSequence"]) for row in tables["Media"]] == [len(files)], "Media: last sequence")
    hashed = {row["File_"] for row in tables["MsiFileHash"]}
    for name, row in files.items():
        rule((name in hashed) != bool(row["Version"]), f"File {name}: version and hash")
        known = installer.file_version(folder / path_of(row)) if (folder / path_of(row)).is_file() else None
        rule((row["Version"] or None) == (known[0] if known else None), f"File {name}: version")

    # Shortcuts of a profile, and where they lead. [ICE15, ICE43, ICE57, ICE94]
    for row in tables["Shortcut"]:
        key = registry.get(components.get(row["Component_"], {}).get("KeyPath", ""))
        rule(key and key["Root"] == "1", f"Shortcut {row['Shortcut']}: its component's key is not the user's")
        target = re.match(r"^\[(\w+)\](.+)$", row["Target"])
        rule(target and target[1] in directories and target[2] in packed,
             f"Shortcut {row['Shortcut']}: it leads nowhere")
    for name, row in registry.items():
        rule(row["Root"] in ("-1", "1"), f"Registry {name}: outside the user's or the machine's part")
        rule(row["Component_"] in components, f"Registry {name}: no such component")

    # Upgrades and conditions. [ICE61, ICE63, ICE88]
    secure = properties.get("SecureCustomProperties", "").split(";")
    own = [row for row in tables["Upgrade"] if row["UpgradeCode"] == properties.get("UpgradeCode")]
    rule(len(own) == 2, "Upgrade: not two ranges")
    for row in tables["Upgrade"]:
        rule(row["ActionProperty"] in secure, f"Upgrade: {row['ActionProperty']} is not secure")
        rule(row["ActionProperty"] == row["ActionProperty"].upper(), "Upgrade: a property is private")
        detect = int(row["Attributes"]) & 2
        if row["ActionProperty"] == "OLDER_FOUND":
            rule(not detect and row["VersionMax"] == version and int(row["Attributes"]) & 768 == 768,
                 "Upgrade: what is replaced")
        else:
            rule(detect, f"Upgrade: {row['ActionProperty']} would be removed")
        if row["ActionProperty"] == "NEWER_FOUND":
            rule(row["VersionMin"] == version and not int(row["Attributes"]) & 256 and
                 not row["VersionMax"], "Upgrade: what is newer")
    conditions = " ".join(row["Condition"] for row in tables["LaunchCondition"])
    for name in ("NEWER_FOUND", "OTHER_WIDTH_FOUND"):
        rule(f"NOT {name}" in conditions, f"LaunchCondition: nothing refuses {name}")
    rule(all(row["Description"] for row in tables["LaunchCondition"]), "LaunchCondition: no message")
    for row in tables["RegLocator"]:
        rule(bool(int(row["Type"]) & 16) == (width == 64), "RegLocator: wrong width")
    for row in tables["AppSearch"]:
        rule(row["Property"] in directories, f"AppSearch: {row['Property']} is no directory")
        rule(row["Signature_"] in {other["Signature_"] for other in tables["RegLocator"]},
             "AppSearch: no such search")

    # Sequences. [ICE12, ICE27, ICE63, ICE82]
    for name in ("InstallExecuteSequence", "InstallUISequence"):
        numbers = [int(row["Sequence"]) for row in tables[name] if row["Sequence"]]
        rule(len(numbers) == len(set(numbers)), f"{name}: two actions at one place")
    order = {row["Action"]: int(row["Sequence"]) for row in tables["InstallExecuteSequence"]}
    wanted = ["FindRelatedProducts", "AppSearch", "LaunchConditions", "CostInitialize", "FileCost",
              "CostFinalize", "InstallValidate", "InstallInitialize", "ProcessComponents",
              "UnpublishFeatures", "RemoveRegistryValues", "RemoveShortcuts", "RemoveFiles",
              "InstallFiles", "CreateShortcuts", "WriteRegistryValues", "RegisterUser",
              "RegisterProduct", "PublishFeatures", "PublishProduct", "InstallFinalize",
              "RemoveExistingProducts"]
    rule([name for name in sorted(order, key=order.get) if name in wanted] == wanted,
         "InstallExecuteSequence: out of order")
    return found


def faults(tables):
    """Packages with one planted fault each."""
    def planted(change):
        broken = copy.deepcopy(tables)
        change(broken)
        return broken

    def first(name, column, value):
        return lambda broken: broken[name][0].__setitem__(column, value)

    def named(table, key, name, column, value):
        def change(broken):
            next(row for row in broken[table] if row[key] == name)[column] = value
        return change
    yield "a code twice", planted(lambda broken: broken["Component"][0].__setitem__(
        "ComponentId", broken["Component"][1]["ComponentId"]))
    yield "a key path of another", planted(lambda broken: broken["Component"][0].__setitem__(
        "KeyPath", broken["Component"][1]["KeyPath"]))
    yield "a missing component", planted(lambda broken: broken["FeatureComponents"].pop())
    yield "a missing file", planted(lambda broken: broken["File"].pop())
    yield "a size", planted(first("File", "FileSize", "1"))
    yield "no short name", planted(first("File", "FileName", "a long name.html"))
    yield "one name twice", planted(lambda broken: broken["File"][0].__setitem__(
        "FileName", broken["File"][1]["FileName"]))
    yield "the last sequence", planted(first("Media", "LastSequence", "1"))
    yield "a hash and a version", planted(lambda broken: next(
        row for row in broken["File"] if not row["Version"]).__setitem__("Version", "1.0.0.0"))
    yield "a lost directory", planted(named("Directory", "Directory", "USERFOLDER", "Directory_Parent", "NONE"))
    yield "a shortcut of the machine", planted(named("Registry", "Component_", "StartMenu", "Root", "2"))
    yield "a shortcut to nowhere", planted(first("Shortcut", "Target", "[INSTALLFOLDER]None.exe"))
    yield "same versions stay", planted(named("Upgrade", "ActionProperty", "OLDER_FOUND", "Attributes", "257"))
    yield "newer ones go", planted(named("Upgrade", "ActionProperty", "NEWER_FOUND", "Attributes", "0"))
    yield "an insecure property", planted(named("Property", "Property", "SecureCustomProperties", "Value", ""))
    yield "no refusal", planted(lambda broken: broken["LaunchCondition"].clear())
    yield "a wrong order", planted(named("InstallExecuteSequence", "Action", "RemoveExistingProducts",
                                         "Sequence", "1401"))
    yield "two at one place", planted(named("InstallExecuteSequence", "Action", "RemoveFiles",
                                            "Sequence", "4000"))
    yield "a custom action", planted(lambda broken: broken["CustomAction"].append({"Action": "Run"}))
    yield "modify", planted(named("Property", "Property", "ARPNOMODIFY", "Value", "0"))
    yield "a large version", planted(named("Property", "Property", "ProductVersion", "Value", "2007.3.1"))
    yield "a wrong width", planted(lambda broken: broken["Component"][0].__setitem__(
        "Attributes", str(int(broken["Component"][0]["Attributes"]) ^ 256)))


def main():
    words = sys.argv[1:]
    failed = 0
    codes = set()
    for i in range(0, len(words), 4):
        language, width, folder, package = words[i], int(words[i + 1]), pathlib.Path(words[i + 2]), \
            pathlib.Path(words[i + 3])
        tables = read(package)
        found = complaints(tables, language, width, folder)
        for text in found:
            print(f"FAILED: {package.name}: {text}")
        failed += len(found)
        for name, broken in faults(tables):
            if not complaints(broken, language, width, folder):
                print(f"FAILED: {package.name}: nobody notices {name}")
                failed += 1
        codes.update(row["Value"] for row in tables["Property"] if row["Property"] == "ProductCode")
        count = len(tables["File"])
        print(f"{package.name}: {count} files, {len(found)} broken rules, "
              f"{len(list(faults(tables)))} planted faults")
    if len(codes) != len(words) // 4:
        print("FAILED: two packages have one product code")
        failed += 1
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
