"""The list of what the package is made of, in SPDX 2.3: files with their checksums, and what the programs are linked
with, with versions and licences."""

import hashlib
import json
import re
import subprocess
import time

import contents
import identity


def debian_version(package):
    done = subprocess.run(["dpkg-query", "-W", "-f", "${Version}", package], capture_output=True, text=True)
    return done.stdout if done.returncode == 0 and done.stdout else "NOASSERTION"


def identifier(text):
    return "SPDXRef-" + re.sub(r"[^A-Za-z0-9.-]+", "-", text).strip("-")


def file_entry(item):
    return {"SPDXID": identifier(f"File-{item.path}"), "fileName": f"./{item.path}",
            "checksums": [{"algorithm": "SHA1", "checksumValue": hashlib.sha1(item.data).hexdigest()},
                          {"algorithm": "SHA256", "checksumValue": hashlib.sha256(item.data).hexdigest()}],
            "licenseConcluded": item.licence, "licenseInfoInFiles": ["NOASSERTION"], "copyrightText": "NOASSERTION"}


def library(name, package, licence):
    version = debian_version(package)
    return {"SPDXID": identifier(f"Package-{package}"), "name": name, "versionInfo": version,
            "supplier": "Organization: Debian", "downloadLocation": "NOASSERTION", "filesAnalyzed": False,
            "licenseConcluded": licence, "licenseDeclared": licence, "copyrightText": "NOASSERTION",
            "externalRefs": [{"referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
                              "referenceLocator": f"pkg:deb/debian/{package}@{version}"}]}


def document(items, version, title, epoch):
    files = [file_entry(item) for item in items]
    shas = sorted(entry["checksums"][0]["checksumValue"] for entry in files)
    product = {"SPDXID": "SPDXRef-Package-qxterm", "name": "qxterm", "summary": title, "versionInfo": version,
               "supplier": "Organization: qxterm developers", "downloadLocation": "NOASSERTION", "filesAnalyzed": True,
               "packageVerificationCode": {
                   "packageVerificationCodeValue": hashlib.sha1("".join(shas).encode()).hexdigest()},
               "licenseConcluded": "MIT AND OFL-1.1 AND " + " AND ".join(f"({one[2]})" for one in contents.LINKED),
               "licenseDeclared": "MIT", "licenseInfoFromFiles": ["NOASSERTION"], "copyrightText": "NOASSERTION"}
    libraries = [library(name, package, licence) for name, package, licence, _ in contents.LINKED]
    relationships = [{"spdxElementId": "SPDXRef-DOCUMENT", "relationshipType": "DESCRIBES",
                      "relatedSpdxElement": product["SPDXID"]}]
    relationships += [{"spdxElementId": product["SPDXID"], "relationshipType": "CONTAINS",
                       "relatedSpdxElement": entry["SPDXID"]} for entry in files]
    relationships += [{"spdxElementId": identifier(f"File-{name}"), "relationshipType": "STATIC_LINK",
                       "relatedSpdxElement": entry["SPDXID"]} for name in contents.PROGRAMS for entry in libraries]
    space = identity.code(" ".join(shas)).strip("{}").lower()
    whole = {"spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
             "name": f"qxterm-{version}", "documentNamespace": f"urn:uuid:{space}",
             "creationInfo": {"created": time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(epoch)),
                              "creators": ["Organization: qxterm developers", "Tool: qxterm-package"]},
             "packages": [product, *libraries], "files": files, "relationships": relationships}
    return json.dumps(whole, indent=2) + "\n"
