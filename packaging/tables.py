"""The tables of the installer's database: what is installed where, in which order, and under which conditions."""

import hashlib
import struct

import dialogs
import identity
import version_resource

# Column types of the installer's own: s text, l text that may be translated, i number, v binary; capitals may be
# empty; behind it the length.
COLUMNS = {
    "AdminExecuteSequence": ("Action:s72", "Condition:S255", "Sequence:I2"),
    "AdminUISequence": ("Action:s72", "Condition:S255", "Sequence:I2"),
    "AdvtExecuteSequence": ("Action:s72", "Condition:S255", "Sequence:I2"),
    "ActionText": ("Action:s72", "Description:L64", "Template:L128"),
    "AppSearch": ("Property:s72", "Signature_:s72"),
    "Binary": ("Name:s72", "Data:v0"),
    "Component": ("Component:s72", "ComponentId:S38", "Directory_:s72", "Attributes:i2", "Condition:S255", "KeyPath:S72"),
    "Control": ("Dialog_:s72", "Control:s50", "Type:s20", "X:i2", "Y:i2", "Width:i2", "Height:i2", "Attributes:I4",
                "Property:S50", "Text:L0", "Control_Next:S50", "Help:L50"),
    "ControlEvent": ("Dialog_:s72", "Control_:s50", "Event:s50", "Argument:s255", "Condition:S255", "Ordering:I2"),
    "CustomAction": ("Action:s72", "Type:i2", "Source:S72", "Target:S0"),
    "Dialog": ("Dialog:s72", "HCentering:i2", "VCentering:i2", "Width:i2", "Height:i2", "Attributes:I4", "Title:L128",
               "Control_First:s50", "Control_Default:S50", "Control_Cancel:S50"),
    "Directory": ("Directory:s72", "Directory_Parent:S72", "DefaultDir:l255"),
    "Error": ("Error:i2", "Message:L0"),
    "EventMapping": ("Dialog_:s72", "Control_:s50", "Event:s50", "Attribute:s50"),
    "Feature": ("Feature:s38", "Feature_Parent:S38", "Title:L64", "Description:L255", "Display:I2", "Level:i2",
                "Directory_:S72", "Attributes:i2"),
    "FeatureComponents": ("Feature_:s38", "Component_:s72"),
    "File": ("File:s72", "Component_:s72", "FileName:l255", "FileSize:i4", "Version:S72", "Language:S20",
             "Attributes:I2", "Sequence:i4"),
    "Icon": ("Name:s72", "Data:v0"),
    "InstallExecuteSequence": ("Action:s72", "Condition:S255", "Sequence:I2"),
    "InstallUISequence": ("Action:s72", "Condition:S255", "Sequence:I2"),
    "LaunchCondition": ("Condition:s255", "Description:l255"),
    "Media": ("DiskId:i2", "LastSequence:i4", "DiskPrompt:L64", "Cabinet:S255", "VolumeLabel:S32", "Source:S72"),
    "MsiFileHash": ("File_:s72", "Options:i2", "HashPart1:i4", "HashPart2:i4", "HashPart3:i4", "HashPart4:i4"),
    "Property": ("Property:s72", "Value:l0"),
    "RegLocator": ("Signature_:s72", "Root:i2", "Key:s255", "Name:S255", "Type:I2"),
    "Registry": ("Registry:s72", "Root:i2", "Key:l255", "Name:L255", "Value:L0", "Component_:s72"),
    "RemoveFile": ("FileKey:s72", "Component_:s72", "FileName:L255", "DirProperty:s72", "InstallMode:i2"),
    "Shortcut": ("Shortcut:s72", "Directory_:s72", "Name:l128", "Component_:s72", "Target:s72", "Arguments:S255",
                 "Description:L255", "Hotkey:I2", "Icon_:S72", "IconIndex:I2", "ShowCmd:I2", "WkDir:S72"),
    "TextStyle": ("TextStyle:s72", "FaceName:s32", "Size:i2", "Color:I4", "StyleBits:I2"),
    "UIText": ("Key:s72", "Text:L255"),
    "Upgrade": ("UpgradeCode:s38", "VersionMin:S20", "VersionMax:S20", "Language:S255", "Attributes:i4", "Remove:S255",
                "ActionProperty:s72"),
}
# How many of the first columns are the table's key.
KEYS = {"Control": 2, "ControlEvent": 5, "EventMapping": 3, "FeatureComponents": 2, "Upgrade": 5,
        "AppSearch": 2}

MACHINE = 2  # HKEY_LOCAL_MACHINE
IS_64_BIT, KEY_IN_REGISTRY = 256, 4
PRODUCT_KEY = "Software\\qxterm"
MAPPING_KEY = "Software\\Microsoft\\Windows NT\\CurrentVersion\\IniFileMapping\\qxterm.ini"
# Each user's own part of the registry. Without "@" in front Windows looks into the file in its folder for a value that
# a user has none of: so profiles that stood there before are still found.
MAPPING = "USR:Software\\qxterm"

FONT, ICON, LIBRARY = "Tahoma", "qxterm.ico", "Actions"

# Types of custom actions: a routine of a library in the package; a property set.
IN_LIBRARY, SET_PROPERTY = 1, 51
ROLLBACK, COMMIT, DEFERRED, AS_SYSTEM = 256, 512, 1024, 2048


def file_key(path):
    return "f" + hashlib.md5(path.lower().encode()).hexdigest()[:16]


def hash_parts(data):
    return struct.unpack("<4i", hashlib.md5(data).digest())


def short_name(number, path):
    """A name of eight and three characters for systems that want one, and the name itself."""
    name = path.rpartition("/")[2]
    suffix = name.rpartition(".")[2][:3].upper() if "." in name else ""
    return f"F{number:07}{'.' if suffix else ''}{suffix}|{name}"


class Tables(dict):
    def add(self, table, *row):
        if len(row) != len(COLUMNS[table]):
            raise ValueError(f"{table} has {len(COLUMNS[table])} columns, this row has {len(row)}: {row}")
        self.setdefault(table, []).append(row)


def add_files(t, items):
    folders = {""}
    for item in items:
        parts = item.path.split("/")[:-1]
        folders |= {"/".join(parts[:n]) for n in range(len(parts) + 1)}
    t.add("Directory", "TARGETDIR", "", "SourceDir")
    t.add("Directory", "ProgramFiles64Folder", "TARGETDIR", ".")
    t.add("Directory", "ProgramMenuFolder", "TARGETDIR", ".")
    t.add("Directory", "INSTALLFOLDER", "ProgramFiles64Folder", "qxterm")
    names = {"": "INSTALLFOLDER"}
    for number, folder in enumerate(sorted(folders - {""})):
        parent, _, name = folder.rpartition("/")
        names[folder] = f"d{file_key(folder)}"
        t.add("Directory", names[folder], names[parent], f"D{number:07}|{name}")
    owners = {}
    for number, item in enumerate(items, 1):
        key = file_key(item.path)
        folder = item.path.rpartition("/")[0]
        component = "c" + key
        owners[item.path] = component
        t.add("Component", component, identity.component(item.path), names[folder], IS_64_BIT, "", key)
        t.add("FeatureComponents", "Main", component)
        own = version_resource.file_version(item.data) if item.path.endswith(".exe") else None
        t.add("File", key, component, short_name(number, item.path), len(item.data), own or "", "1033" if own else "",
              512, number)
        if own is None:
            t.add("MsiFileHash", key, 0, *hash_parts(item.data))
    # A folder goes when nothing is left in it.
    for folder, name in sorted(names.items()):
        t.add("RemoveFile", f"r{name}", owners["qxterm.exe"], "", name, 2)
    t.add("Media", 1, len(items), "", "#qxterm.cab", "", "")
    return owners


def add_registry(t, version):
    for key, values in (
            ("Mapping", [(MAPPING_KEY, "", MAPPING)]),
            ("Product", [(PRODUCT_KEY, "InstallFolder", "[INSTALLFOLDER]"), (PRODUCT_KEY, "Version", version)])):
        t.add("Component", key, identity.code(f"registry {key}"), "INSTALLFOLDER", IS_64_BIT | KEY_IN_REGISTRY, "",
              f"{key}1")
        t.add("FeatureComponents", "Main", key)
        for number, (path, name, value) in enumerate(values, 1):
            t.add("Registry", f"{key}{number}", MACHINE, path, name, value, key)
    # An upgrade or a repair goes where the program is.
    t.add("AppSearch", "EARLIERFOLDER", "EarlierFolder")
    t.add("RegLocator", "EarlierFolder", MACHINE, PRODUCT_KEY, "InstallFolder", 2 | 16)


def add_actions(t, items):
    """Routines of the library, and what each is told."""
    files = "|".join(["[INSTALLFOLDER]"] + [item.path.replace("/", "\\") for item in items])
    library = IN_LIBRARY + DEFERRED + AS_SYSTEM
    for name, kind, routine in (
            ("SetAside", library, "SetAside"), ("PutBack", library + ROLLBACK, "PutBack"),
            ("ClearAside", library + COMMIT, "ClearAside"), ("BringProfiles", library, "BringProfiles"),
            ("RemoveProfiles", library, "RemoveProfiles"), ("RefreshMapping", library, "RefreshMapping"),
            ("RefuseOlder", IN_LIBRARY, "RefuseOlder"), ("ReadProfiles", IN_LIBRARY, "ReadProfiles"),
            ("CheckFilesInUse", IN_LIBRARY, "CheckFilesInUse")):
        t.add("CustomAction", name, kind, LIBRARY, routine)
    for name in ("SetAside", "PutBack", "ClearAside"):
        t.add("CustomAction", f"Tell{name}", SET_PROPERTY, name, files)
    t.add("CustomAction", "TellFilesToCheck", SET_PROPERTY, "FilesToCheck", files)
    t.add("CustomAction", "InstallLocation", SET_PROPERTY, "ARPINSTALLLOCATION", "[INSTALLFOLDER]")
    t.add("CustomAction", "EarlierFolder", SET_PROPERTY, "INSTALLFOLDER", "[EARLIERFOLDER]")


def add_sequences(t):
    ours = "NOT Installed OR REINSTALL OR REMOVE"
    begin = [("FindRelatedProducts", "", 25), ("AppSearch", "", 50),
             ("EarlierFolder", "EARLIERFOLDER AND NOT INSTALLFOLDER", 60), ("LaunchConditions", "", 100),
             ("RefuseOlder", "NEWERVERSION AND NOT Installed", 110)]
    costs = (("CostInitialize", 800), ("FileCost", 900), ("CostFinalize", 1000))
    # What is installed is repaired or removed as a whole: the windows have no use for its costs then.
    ui = begin + [(action, "NOT Installed", place) for action, place in costs] + [
        ("WelcomeDlg", "NOT Installed", 1230), ("MaintenanceDlg", "Installed AND NOT Preselected", 1240),
        ("ProgressDlg", "", 1280), ("ExecuteAction", "", 1300),
        ("ExitDlg", "", -1), ("UserExitDlg", "", -2), ("FatalDlg", "", -3)]
    # In the transaction from its first step on: when anything fails, also the older version stands there again.
    execute = begin + [(action, "", place) for action, place in costs] + [
        ("ValidateProductID", "", 700), ("ReadProfiles", 'PROFILES AND NOT REMOVE = "ALL"', 1010),
        ("InstallLocation", "NOT Installed", 1020), ("InstallValidate", "", 1400),
        ("TellFilesToCheck", ours, 1410), ("CheckFilesInUse", ours, 1411), ("InstallInitialize", "", 1500),
        ("RemoveExistingProducts", "", 1510),
        ("TellPutBack", ours, 1520), ("PutBack", ours, 1521), ("TellSetAside", ours, 1522), ("SetAside", ours, 1523),
        ("TellClearAside", ours, 1524), ("ClearAside", ours, 1525),
        ("ProcessComponents", "", 1600), ("UnpublishFeatures", "", 1800),
        ("RemoveProfiles", 'REMOVE = "ALL" AND NOT UPGRADINGPRODUCTCODE', 2500),
        ("RemoveRegistryValues", "", 2600), ("RemoveShortcuts", "", 3200), ("RemoveFiles", "", 3500),
        ("InstallFiles", "", 4000), ("CreateShortcuts", "", 4500), ("WriteRegistryValues", "", 5000),
        ("RefreshMapping", ours, 5100), ("RegisterUser", "", 6000), ("RegisterProduct", "", 6100),
        ("PublishFeatures", "", 6300), ("PublishProduct", "", 6400),
        ("BringProfiles", 'BringProfiles AND NOT REMOVE = "ALL"', 6500), ("InstallFinalize", "", 6600)]
    # An unpacked copy on a server (msiexec /a), and what a group policy announces.
    frame = [(action, "", place) for action, place in (*costs, ("InstallValidate", 1400), ("InstallInitialize", 1500))]
    admin = [*frame, ("InstallAdminPackage", "", 3900), ("InstallFiles", "", 4000), ("InstallFinalize", "", 6600)]
    announce = [row for row in frame if row[0] != "FileCost"] + [
        ("CreateShortcuts", "", 4500), ("PublishFeatures", "", 6300), ("PublishProduct", "", 6400),
        ("InstallFinalize", "", 6600)]
    copy_windows = [*frame[:3], ("ExecuteAction", "", 1300)]
    for table, rows in (("InstallUISequence", ui), ("InstallExecuteSequence", execute), ("AdminExecuteSequence", admin),
                        ("AdminUISequence", copy_windows), ("AdvtExecuteSequence", announce)):
        for row in rows:
            t.add(table, *row)


def add_windows(t):
    w = dialogs.describe()
    for table, rows in (("Dialog", w.dialogs), ("Control", w.controls), ("ControlEvent", w.events),
                        ("EventMapping", w.mappings)):
        for row in rows:
            t.add(table, *row)
    t.add("TextStyle", "Body", FONT, 8, "", "")
    t.add("TextStyle", "Heading", FONT, 9, "", 1)
    for action, text in (("InstallFiles", "Copying files"), ("RemoveFiles", "Removing files"),
                         ("CreateShortcuts", "Making the entry in the start menu"),
                         ("WriteRegistryValues", "Writing to the registry"),
                         ("RemoveExistingProducts", "Removing the older version"),
                         ("SetAside", "Setting files in use aside"), ("BringProfiles", "Bringing profiles")):
        t.add("ActionText", action, text, "")
    for key, text in (("bytes", "bytes"), ("GB", "GB"), ("KB", "KB"), ("MB", "MB"), ("MenuAbsent", ""),
                      ("NewFolder", "Folder|New Folder")):
        t.add("UIText", key, text)


def build(items, version, title, product_code):
    """All tables but the binary ones: {name: rows}."""
    t = Tables()
    t.add("Feature", "Main", "", title, "", 1, 1, "INSTALLFOLDER", 8)
    owners = add_files(t, items)
    add_registry(t, version)
    t.add("Shortcut", "StartMenu", "ProgramMenuFolder", "QXTERM|qxterm", owners["qxterm-start.exe"],
          "[INSTALLFOLDER]qxterm-start.exe", "", title, "", ICON, 0, 1, "INSTALLFOLDER")
    add_actions(t, items)
    add_sequences(t)
    add_windows(t)
    t.add("LaunchCondition", "Installed OR VersionNT >= 601", "[ProductName] needs Windows 7 or a later version.")
    t.add("LaunchCondition", "Privileged", "Only an administrator can install [ProductName]: it is for all users of the "
          "computer.")
    # Every other package of this or an older version is replaced; a newer one is only found.
    t.add("Upgrade", identity.UPGRADE_CODE, "0.0.0", version, "", 1 | 256 | 512, "", "OLDERVERSION")
    t.add("Upgrade", identity.UPGRADE_CODE, version, "", "", 2, "", "NEWERVERSION")
    for row in (("Manufacturer", "qxterm developers"), ("ProductCode", product_code), ("ProductLanguage", "1033"),
                ("ProductName", title), ("ProductVersion", version), ("UpgradeCode", identity.UPGRADE_CODE),
                ("ALLUSERS", "1"), ("ARPPRODUCTICON", ICON), ("ARPNOMODIFY", "1"),
                ("ARPCOMMENTS", "A character terminal for Windows"),
                # Nobody's session is ended for an upgrade, and no computer is started anew.
                ("MSIRESTARTMANAGERCONTROL", "Disable"), ("REBOOT", "ReallySuppress"),
                # Files of the package count, whatever stands in the folder.
                ("REINSTALLMODE", "amus"),
                ("SecureCustomProperties", "INSTALLFOLDER;NEWERVERSION;OLDERVERSION;PROFILES"),
                ("DefaultUIFont", "Body"), ("Outcome", dialogs.INSTALLED), ("ErrorDialog", "ErrorDlg")):
        t.add("Property", *row)
    return t
