#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The bill of materials of a release, SPDX 2.3 in JSON, on standard output: source, packages and page with all their files,
what is linked into them from elsewhere, what they need on the machine, and the compilers.

Usage: bill.py FOLDER VERSION COMMIT WEB    FOLDER holds *.tar.gz, *.deb and kalorfix.html; WEB is the folder of package-lock.json;
SOURCE_DATE_EPOCH is the time of the commit. The versions of compilers and libraries are those of this machine's packages.
"""
import hashlib
import io
import json
import os
import re
import subprocess
import sys
import tarfile
from datetime import datetime, timezone
from pathlib import Path

OURS = "MIT"
RUNTIME = "GPL-3.0-or-later WITH GCC-exception-3.1"  # libstdc++ and libgcc
LLVM = "Apache-2.0 WITH LLVM-exception"
COPYRIGHT = "Copyright (c) 2026 The kalorfix maintainers"

# What the packages ask of the machine. Other names have no assertion.
LICENCES = {"libc6": "LGPL-2.1-or-later", "libfmt9": "MIT", "libgcc-s1": RUNTIME, "libmd4c-html0": "MIT", "libssl3": "Apache-2.0",
            "libstdc++6": RUNTIME, "python3": "PSF-2.0"}
# What em++ links into the page, from its own sources: name, licence, file with the version and how it stands there.
EMSCRIPTEN = Path("/usr/share/emscripten")
WEB_LIBRARIES = [
    ("musl", "MIT", "system/lib/libc/musl/VERSION", r"([0-9.]+)"),
    ("libc++", LLVM, "system/lib/libcxx/include/__config", r"define _LIBCPP_VERSION (\d+)"),
    ("libc++abi", LLVM, "system/lib/libcxx/include/__config", r"define _LIBCPP_VERSION (\d+)"),
    ("compiler-rt", LLVM, "emscripten-version.txt", r"([0-9.]+)"),
    ("dlmalloc", "CC0-1.0", "system/lib/dlmalloc.c", r"Version (\S+)"),
    ("emscripten", "MIT OR NCSA", "emscripten-version.txt", r"([0-9.]+)"),
]
TRIPLETS = {"amd64": "x86_64-linux-gnu", "armhf": "arm-linux-gnueabihf", "arm64": "aarch64-linux-gnu"}


def said(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.strip()


def debian_package_of(path):
    """Name and version of the Debian package that holds a file."""
    name = said("dpkg", "-S", os.path.realpath(path)).split(": ")[0].split(",")[0]
    return name.split(":")[0], said("dpkg-query", "-W", "-f=${Version}", name)


def identifier(*words):
    return "SPDXRef-" + re.sub(r"[^A-Za-z0-9.-]", "-", "-".join(words))


def checksums(data):
    return [{"algorithm": name, "checksumValue": hashlib.new(name.lower(), data).hexdigest()} for name in ("SHA1", "SHA256")]


class Bill:
    def __init__(self):
        self.packages, self.files, self.relationships = {}, [], []

    def relate(self, one, kind, other):
        relation = {"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}
        if relation not in self.relationships:
            self.relationships.append(relation)

    def product(self, path, name, purpose, contents, licence=OURS):
        """A file of the release and the (name, bytes, licence) of what is in it."""
        data = path.read_bytes()
        me = identifier(path.name)
        sums = []
        for file_name, file_data, file_licence in contents:
            entry = {"SPDXID": identifier(path.name, str(len(sums)), Path(file_name).name), "fileName": "./" + file_name,
                     "checksums": checksums(file_data), "licenseConcluded": file_licence,
                     "licenseInfoInFiles": [OURS if b"SPDX-License-Identifier: MIT" in file_data else "NONE"],
                     "copyrightText": COPYRIGHT if file_licence == OURS else "NOASSERTION"}
            sums.append(entry["checksums"][0]["checksumValue"])
            self.files.append(entry)
            self.relate(me, "CONTAINS", entry["SPDXID"])
        self.packages[me] = {
            "SPDXID": me, "name": name, "versionInfo": VERSION, "packageFileName": path.name, "downloadLocation": "NOASSERTION",
            "supplier": "Organization: The kalorfix maintainers", "primaryPackagePurpose": purpose, "filesAnalyzed": True,
            "packageVerificationCode": {"packageVerificationCodeValue": hashlib.sha1("".join(sorted(sums)).encode()).hexdigest()},
            "checksums": checksums(data), "licenseConcluded": licence, "licenseDeclared": OURS,
            "licenseInfoFromFiles": sorted({info for entry in self.files[-len(sums):] for info in entry["licenseInfoInFiles"]}),
            "copyrightText": COPYRIGHT}
        self.relate("SPDXRef-DOCUMENT", "DESCRIBES", me)
        return me

    def outside(self, name, licence, version=None, purl=None, comment=None):
        """Something that others made."""
        me = identifier("outside", name, version or "")
        package = {"SPDXID": me, "name": name, "downloadLocation": "NOASSERTION", "filesAnalyzed": False, "supplier": "NOASSERTION",
                   "licenseConcluded": licence, "licenseDeclared": licence, "copyrightText": "NOASSERTION"}
        if version:
            package["versionInfo"] = version
        if purl:
            package["externalRefs"] = [
                {"referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl", "referenceLocator": purl}]
        if comment:
            package["comment"] = comment
        self.packages.setdefault(me, package)
        return me

    def debian(self, name, licence, version):
        return self.outside(name, licence, version, f"pkg:deb/debian/{name.replace('+', '%2B')}@{version.replace('+', '%2B')}")


def unpacked(data, mode="r:*"):
    with tarfile.open(fileobj=io.BytesIO(data), mode=mode) as archive:
        for member in sorted((m for m in archive if m.isfile()), key=lambda m: m.name):
            yield member.name.removeprefix("./"), archive.extractfile(member).read()


def debian_package(bill, path, source):
    fields = dict(line.split(": ", 1) for line in said("dpkg-deb", "-f", str(path), "Package", "Architecture", "Depends").splitlines())
    name, architecture = fields["Package"], fields["Architecture"]
    code = {"kalorfix": f"{OURS} AND {RUNTIME}", "kalorfix-dbgsym": f"{OURS} AND {RUNTIME}",
            "kalorfix-tool": f"{OURS} AND BSD-3-Clause AND {RUNTIME}"}.get(name, OURS)
    tree = subprocess.run(["dpkg-deb", "--fsys-tarfile", str(path)], check=True, capture_output=True).stdout
    contents = [(file, data, code if data[:4] == b"\x7fELF" else OURS) for file, data in unpacked(tree)]
    me = bill.product(path, name, "LIBRARY" if name == "kalorfix" else "APPLICATION" if name == "kalorfix-tool" else "OTHER",
                      contents, code)
    bill.relate(me, "GENERATED_FROM", source)
    for depends in fields.get("Depends", "").split(", "):
        needed, _, version = depends.replace(":any", "").partition(" ")
        if needed.startswith("kalorfix"):
            for other in sorted(path.parent.glob(f"{needed}_{VERSION}_{'*' if architecture == 'all' else architecture}.deb")):
                bill.relate(me, "DEPENDS_ON", identifier(other.name))
        elif needed:
            outside = bill.outside(needed, LICENCES.get(needed, "NOASSERTION"), comment=f"Debian package {version}".strip())
            bill.relate(me, "DYNAMIC_LINK" if needed.startswith("lib") else "DEPENDS_ON", outside)
    if any(data[:4] == b"\x7fELF" for _, data, _ in contents):
        compiler = TRIPLETS[architecture] + "-g++"
        # The library brings type information and, on 32-bit ARM, divisions and the unwinder along; the tool takes the shared ones.
        linked = {"kalorfix": ["libstdc++.a", *(["libgcc.a", "libgcc_eh.a"] if architecture == "armhf" else [])]}
        for archive in linked.get(name, []):
            holder, version = debian_package_of(said(compiler, f"-print-file-name={archive}"))
            bill.relate(me, "STATIC_LINK", bill.debian(holder, RUNTIME, version))
        if name == "kalorfix-tool":
            holder, version = debian_package_of("/usr/include/CLI/CLI.hpp")
            bill.relate(me, "STATIC_LINK", bill.debian(holder, "BSD-3-Clause", version))
        holder, version = debian_package_of(said("which", compiler))
        bill.relate(bill.debian(holder, "GPL-3.0-or-later", version), "BUILD_TOOL_OF", me)


def browser_page(bill, path, source, web):
    parts = []
    for name, licence, file, pattern in WEB_LIBRARIES:
        version = re.search(pattern, (EMSCRIPTEN / file).read_text(encoding="utf-8", errors="replace"))[1]
        parts.append(("STATIC_LINK", bill.outside(name, licence, version, comment="as it comes with Debian's emscripten")))
    holder, version = debian_package_of("/usr/include/fmt/format.h")
    parts.append(("STATIC_LINK", bill.debian(holder, "MIT", version)))
    lock = json.loads((web / "package-lock.json").read_text(encoding="utf-8"))["packages"]
    for name in json.loads((web / "package.json").read_text(encoding="utf-8"))["dependencies"]:
        package = lock[f"node_modules/{name}"]
        parts.append(("CONTAINS", bill.outside(name, package["license"], package["version"], f"pkg:npm/{name}@{package['version']}")))
    licence = " AND ".join(sorted({OURS, LLVM, "CC0-1.0", "(MIT OR NCSA)"}))
    me = bill.product(path, "kalorfix page", "APPLICATION", [(path.name, path.read_bytes(), licence)], licence)
    bill.relate(me, "GENERATED_FROM", source)
    for kind, part in parts:
        bill.relate(me, kind, part)
    holder, version = debian_package_of(said("which", "em++"))
    bill.relate(bill.debian(holder, "MIT OR NCSA", version), "BUILD_TOOL_OF", me)


def main(folder, commit, web):
    bill = Bill()
    archive = folder / f"kalorfix-{VERSION}.tar.gz"
    contents = [(name, data, OURS) for name, data in unpacked(archive.read_bytes())]
    source = bill.product(archive, "kalorfix", "SOURCE", contents)
    bill.packages[source]["sourceInfo"] = f"git commit {commit}"
    for path in sorted(folder.glob("*.deb")):
        debian_package(bill, path, source)
    browser_page(bill, folder / "kalorfix.html", source, web)
    known = set(bill.packages) | {entry["SPDXID"] for entry in bill.files} | {"SPDXRef-DOCUMENT"}
    lost = [r for r in bill.relationships if not {r["spdxElementId"], r["relatedSpdxElement"]} <= known]
    if lost:
        sys.exit(f"bill.py: a relation to nothing: {lost[0]}")
    created = datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), timezone.utc)
    json.dump({
        "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT", "name": f"kalorfix-{VERSION}",
        "documentNamespace": f"https://kalorfix.invalid/spdx/kalorfix-{VERSION}-{commit}",
        "creationInfo": {"created": created.strftime("%Y-%m-%dT%H:%M:%SZ"),
                         "creators": ["Organization: The kalorfix maintainers", f"Tool: kalorfix-bill-{VERSION}"]},
        "packages": list(bill.packages.values()), "files": bill.files, "relationships": bill.relationships,
    }, sys.stdout, indent=1)
    print()


if __name__ == "__main__":
    VERSION = sys.argv[2]
    main(Path(sys.argv[1]), sys.argv[3], Path(sys.argv[4]))
