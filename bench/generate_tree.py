#!/usr/bin/env python3
"""Deterministic generator of the benchmark trees: a realistic personal home, loose files for Start,
a very large tree of small files for the memory figure, and trees of one shape each for the
duplicate and second-run figures.

The same parameters and seed always give the same names, sizes, contents and dates. Only the
standard library is used; images are made with the `vips` command (libvips-tools) and one
encrypted PDF with `qpdf`.

  generate_tree.py personal ROOT [--files N] [--seed S] [--median B] [--sigma X] [--max-size B]
                                 [--images N] [--pdfs N]
      ROOT/home/{Documents,Downloads,Desktop}: nested folders, log-normal sizes, about 10 % exact
      duplicates in groups of 2-4 (some large), same-size near-duplicates that differ only in the
      first, a middle or the last byte, files of 64-128 KiB, hidden files and folders, a git project
      with a node_modules folder, valid and damaged JPEG, PNG, HEIC and TIFF images and PDFs.
      ROOT/manifest.json describes what was made.
  generate_tree.py loose ROOT --files N [--seed S]
      ROOT/home/Downloads holding N loose files of every category, for Start.
  generate_tree.py many ROOT --files N [--seed S]
      ROOT/home/Documents holding N small files in nested folders, for the memory figure.
  generate_tree.py small ROOT --files N [--seed S] [--median B] [--sigma X]
      ROOT/home/Documents: N files, most at most 64 KiB (log-normal), 3 % up to 256 KiB, in nested
      folders of about 50; about 10 % exact copies in groups of 2-4 and 2 % same-size files that
      differ in the first, a middle or the last byte.
  generate_tree.py videos ROOT --files N [--seed S] [--min-size B] [--max-size B]
      ROOT/home/Videos/YEAR/EVENT: N large files, 15 % exact copies, 15 % same-size files that
      differ in one byte (two in three in the middle, where only a full read tells them apart).
  generate_tree.py photos ROOT --files N [--seed S] [--median B] [--sigma X] [--min-size B]
                                         [--max-size B]
      ROOT/home/Pictures/YEAR/YEAR-MM-DD: camera-numbered photos of JPEG sizes, 5 % of them days
      imported twice into a "DAY (2)" folder, 0.5 % same-size files with an edited header.
  generate_tree.py sorted ROOT --files N [--seed S] [--median B] [--sigma X] [--max-size B]
      ROOT/home/Documents as Start leaves it: every file in its category folder or in a
      subfolder, nothing loose; exact copies (10 %) only in subfolders, where Start keeps them.
  generate_tree.py media ROOT [--images N] [--pdfs N] [--seed S]
      ROOT/home/{Desktop,Downloads,Documents}: N images in all (one in nine damaged) and N PDFs
      (one in five damaged or locked), for the health figures.

A tree whose manifest records the same command and parameters is left as it is. The manifest
records the parameters, the files and bytes made, what each kind of file counts ("made"), and the
duplicates the scanner must find among the files it lists.
"""

import argparse
import collections
import datetime
import json
import math
import os
import random
import shutil
import subprocess
import sys
import tempfile

KIB = 1024
MIB = 1024 * 1024
POOL_SIZE = 32 * MIB
# Every written file starts from an 8-byte content number, so no two generated contents collide
# unless the generator means them to.
MIN_SIZE = 32
EPOCH_2017 = 1_483_228_800
EPOCH_2025 = 1_735_689_600

WORDS = (
    "report invoice budget summary notes draft final scan receipt contract letter plan minutes "
    "proposal statement offer agenda photo holiday trip family birthday wedding garden house "
    "car insurance tax return bank payslip lease recipe manual guide slides thesis chapter "
    "review quote order ticket booking itinerary resume cover application form certificate "
    "passport visa warranty backup export archive sketch mockup brief schedule timesheet"
).split()
NON_ASCII = ["résumé", "Übersicht", "façade", "naïve", "Zürich", "日本旅行", "Ångström", "piñata"]

# (extension, weight) for ordinary files; contents are random, so image and PDF extensions here are
# files that merely carry the name (the health set below holds real images and PDFs).
EXTENSIONS = [
    ("pdf", 12), ("docx", 6), ("xlsx", 3), ("pptx", 1), ("txt", 7), ("md", 2), ("csv", 2),
    ("html", 1), ("json", 2), ("jpg", 16), ("jpeg", 2), ("png", 7), ("heic", 2), ("gif", 1),
    ("webp", 1), ("mp4", 2), ("mov", 1), ("mkv", 0.3), ("mp3", 3), ("m4a", 1), ("wav", 0.3),
    ("zip", 4), ("gz", 0.5), ("dmg", 0.4), ("pkg", 0.2), ("exe", 0.3), ("sh", 0.3), ("js", 0.5),
    ("psd", 0.3), ("blend", 0.1), ("ics", 0.5), ("vcf", 0.3), ("log", 1), ("", 2), ("py", 1),
    ("epub", 0.5), ("key", 0.2), ("numbers", 0.2), ("pages", 0.2), ("svg", 0.5), ("xml", 0.5),
]

TOP_FOLDERS = {
    "Documents": ["Work", "Personal", "Taxes", "Invoices", "School", "Recipes", "Manuals",
                  "Letters", "Scans", "Health", "Travel", "Finance", "Archive", "Books"],
    "Downloads": ["Installers", "Software", "Papers", "Music", "Videos", "Unsorted", "Fonts"],
    "Desktop": ["Screenshots", "Photos", "Stuff", "To sort", "Old desktop"],
}
SUB_WORDS = ["2018", "2019", "2020", "2021", "2022", "2023", "2024", "Client A", "Client B",
             "Q1", "Q2", "Q3", "Q4", "old", "new", "misc", "drafts", "final", "shared", "home",
             "Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"]


class Pool:
    """A fixed block of pseudo-random bytes from which contents are cut."""

    def __init__(self, seed):
        self.data = memoryview(random.Random(seed ^ 0x5EED).randbytes(POOL_SIZE))

    def write(self, handle, size, number, variant=None):
        """Writes the content numbered `number` of `size` bytes. `variant` = (offset, mask) flips
        bits of one byte, giving a file that differs from the plain content only there."""
        rng = random.Random(number * 7919 + size)
        written = 0
        while written < size:
            take = min(size - written, 4 * MIB)
            start = rng.randrange(0, POOL_SIZE - take + 1)
            out = bytearray(self.data[start : start + take])
            if written == 0:
                head = number.to_bytes(8, "little")[: min(8, take)]
                out[: len(head)] = head
            if variant is not None and written <= variant[0] < written + take:
                out[variant[0] - written] ^= variant[1]
            handle.write(out)
            written += take


def log_normal_size(rng, median, sigma, max_size):
    size = int(math.exp(rng.gauss(math.log(median), sigma)))
    return max(MIN_SIZE, min(size, max_size))


def bounded_log_normal_size(rng, median, sigma, low, high):
    """A log-normal size drawn again until it lies within [low, high]: no pile of files of the
    bound's size, which clamping would make (and which would be one huge size group)."""
    while True:
        size = int(math.exp(rng.gauss(math.log(median), sigma)))
        if low <= size <= high:
            return size


class Tree:
    def __init__(self, root, seed):
        self.root = os.path.abspath(root)
        self.home = os.path.join(self.root, "home")
        self.rng = random.Random(seed)
        self.pool = Pool(seed)
        self.next_number = 1
        self.taken = {}  # folder -> set of names
        self.files = []  # manifest rows
        self.bytes = 0

    def number(self):
        self.next_number += 1
        return self.next_number

    def unique_name(self, folder, name):
        names = self.taken.setdefault(folder, set())
        if name not in names and not os.path.lexists(os.path.join(folder, name)):
            names.add(name)
            return name
        stem, dot, ext = name.rpartition(".")
        if not dot:
            stem, ext = name, ""
        for n in range(2, 1_000_000):
            candidate = f"{stem} ({n}).{ext}" if ext else f"{stem} ({n})"
            if candidate not in names and not os.path.lexists(os.path.join(folder, candidate)):
                names.add(candidate)
                return candidate
        raise RuntimeError("no free name")

    def date(self):
        return self.rng.randrange(EPOCH_2017, EPOCH_2025) + self.rng.random()

    def write(self, folder, name, size, content, variant=None, kind="plain", visible=True,
              when=None):
        """Writes one file; `content` is the content number shared by exact copies."""
        os.makedirs(folder, exist_ok=True)
        name = self.unique_name(folder, name)
        path = os.path.join(folder, name)
        with open(path, "wb") as handle:
            if size:
                self.pool.write(handle, size, content, variant)
        when = self.date() if when is None else when
        os.utime(path, (when, when))
        self.bytes += size
        self.files.append({"path": path, "size": size, "content": content,
                           "variant": list(variant) if variant else None, "kind": kind,
                           "visible": visible})
        return path

    def copy(self, source, folder, name, kind="copy", visible=True, when=None):
        os.makedirs(folder, exist_ok=True)
        name = self.unique_name(folder, name)
        path = os.path.join(folder, name)
        shutil.copyfile(source["path"], path)
        when = self.date() if when is None else when
        os.utime(path, (when, when))
        self.bytes += source["size"]
        row = dict(source)
        row.update({"path": path, "kind": kind, "visible": visible})
        self.files.append(row)
        return path

    def file_name(self, extension):
        rng = self.rng
        style = rng.random()
        if extension in ("jpg", "jpeg", "heic") and style < 0.6:
            stem = f"IMG_{rng.randrange(1, 10000):04d}"
        elif extension == "png" and style < 0.5:
            stem = (f"Screenshot 20{rng.randrange(18, 25)}-{rng.randrange(1, 13):02d}-"
                    f"{rng.randrange(1, 29):02d} at {rng.randrange(0, 24)}.{rng.randrange(0, 60):02d}"
                    f".{rng.randrange(0, 60):02d}")
        elif style < 0.05:
            stem = rng.choice(NON_ASCII) + " " + rng.choice(WORDS)
        else:
            parts = [rng.choice(WORDS).capitalize() if rng.random() < 0.5 else rng.choice(WORDS)]
            if rng.random() < 0.6:
                parts.append(rng.choice(WORDS))
            if rng.random() < 0.5:
                parts.append(str(rng.randrange(1, 3000)))
            stem = rng.choice([" ", "-", "_"]).join(parts)
        return f"{stem}.{extension}" if extension else stem


def pick_extension(rng):
    total = sum(weight for _, weight in EXTENSIONS)
    x = rng.random() * total
    for extension, weight in EXTENSIONS:
        x -= weight
        if x <= 0:
            return extension
    return EXTENSIONS[-1][0]


def make_folders(tree, count):
    """Nested folders under the three connected folders, with the loose level of each weighted."""
    rng = tree.rng
    folders = []
    for top, names in TOP_FOLDERS.items():
        base = os.path.join(tree.home, top)
        os.makedirs(base, exist_ok=True)
        folders.append((base, {"Documents": 2, "Downloads": 30, "Desktop": 12}[top]))
        for name in names:
            folders.append((os.path.join(base, name), 3))
    while len(folders) < count:
        parent, _ = rng.choice(folders)
        depth = parent[len(tree.home):].count("/")
        if depth >= 6:
            continue
        child = rng.choice(SUB_WORDS + WORDS)
        if rng.random() < 0.3:
            child = child.capitalize() + " " + str(rng.randrange(1, 100))
        path = os.path.join(parent, child)
        if any(path == f for f, _ in folders):
            continue
        folders.append((path, 1))
    for folder, _ in folders:
        # A folder's name is taken before any file is written beside it.
        os.makedirs(folder, exist_ok=True)
        tree.taken.setdefault(os.path.dirname(folder), set()).add(os.path.basename(folder))
    return folders


def weighted_folder(rng, folders, total):
    x = rng.random() * total
    for folder, weight in folders:
        x -= weight
        if x <= 0:
            return folder
    return folders[-1][0]


def run(command):
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def make_images(tree, count, work):
    """Valid and damaged JPEG, PNG, TIFF and HEIC images, cut from one synthetic photograph."""
    rng = tree.rng
    base = os.path.join(work, "base.v")
    noise = os.path.join(work, "noise.v")
    smooth = os.path.join(work, "smooth.v")
    bands = os.path.join(work, "bands.v")
    # A 4500 x 3400 picture with large soft shapes and fine grain, compressing like a photograph.
    run(["vips", "perlin", smooth, "4500", "3400", "--cell-size", "300", "--seed", str(rng.randrange(1 << 30))])
    run(["vips", "gaussnoise", noise, "4500", "3400", "--sigma", "12", "--mean", "0"])
    run(["vips", "bandjoin", f"{smooth} {smooth} {smooth}", bands])
    run(["vips", "linear", bands, os.path.join(work, "scaled.v"), "90 70 110", "130 120 100"])
    run(["vips", "add", os.path.join(work, "scaled.v"), noise, os.path.join(work, "sum.v")])
    run(["vips", "cast", os.path.join(work, "sum.v"), base, "uchar"])

    folders = [os.path.join(tree.home, "Desktop", "Photos", f"20{y}") for y in range(19, 25)]
    folders.append(os.path.join(tree.home, "Downloads", "Images"))
    sizes = [(4032, 3024), (3000, 2000), (1920, 1080), (1280, 960), (800, 600), (640, 480)]
    formats = [("jpg", 0.55), ("png", 0.2), ("tif", 0.12), ("heic", 0.13)]
    made = []
    for i in range(count):
        x = rng.random()
        for extension, weight in formats:
            x -= weight
            if x <= 0:
                break
        width, height = rng.choice(sizes)
        if extension == "heic":  # the HEVC encoder is slow; phones' HEIC files are large anyway
            width, height = rng.choice(sizes[2:])
        if extension in ("png", "tif"):
            width, height = rng.choice(sizes[1:])
        left = rng.randrange(0, 4500 - width + 1)
        top = rng.randrange(0, 3400 - height + 1)
        folder = rng.choice(folders)
        os.makedirs(folder, exist_ok=True)
        name = tree.unique_name(folder, f"{'IMG' if extension != 'png' else 'Export'}_{i:04d}.{extension}")
        path = os.path.join(folder, name)
        save = {"jpg": "[Q=88]", "png": "[compression=6]", "tif": "[compression=deflate]",
                "heic": "[Q=50]"}[extension]
        run(["vips", "crop", base, path + save, str(left), str(top), str(width), str(height)])
        made.append(path)
    rows = []
    for path in made:
        size = os.path.getsize(path)
        tree.bytes += size
        row = {"path": path, "size": size, "content": tree.number(), "variant": None,
               "kind": "image", "visible": True}
        tree.files.append(row)
        rows.append(row)
    # Damaged images: truncated ones, ones with a wrecked middle, and text with an image name.
    damaged = []
    for i, row in enumerate(rows[: max(1, count // 8)]):
        folder = os.path.dirname(row["path"])
        extension = row["path"].rsplit(".", 1)[1]
        name = tree.unique_name(folder, f"Damaged_{i:03d}.{extension}")
        path = os.path.join(folder, name)
        with open(row["path"], "rb") as handle:
            data = bytearray(handle.read())
        if i % 3 == 0:
            data = data[: len(data) // 2]
        elif i % 3 == 1:
            middle = len(data) // 2
            for k in range(middle, min(len(data), middle + 4096)):
                data[k] = (data[k] * 31 + 7) & 0xFF
        else:
            data = b"not an image at all\n" * 50 + i.to_bytes(4, "little")
        with open(path, "wb") as handle:
            handle.write(data)
        tree.bytes += len(data)
        entry = {"path": path, "size": len(data), "content": tree.number(), "variant": None,
                 "kind": "damaged-image", "visible": True}
        tree.files.append(entry)
        damaged.append(entry)
    return rows + damaged


def pdf_bytes(pages, label):
    """A small valid PDF with one line of text per page."""
    objects = []
    kids = " ".join(f"{3 + 2 * p} 0 R" for p in range(pages))
    objects.append(b"<< /Type /Catalog /Pages 2 0 R >>")
    objects.append(f"<< /Type /Pages /Kids [{kids}] /Count {pages} >>".encode())
    font = 3 + 2 * pages
    for p in range(pages):
        text = f"BT /F1 18 Tf 72 720 Td ({label} page {p + 1}) Tj ET".encode()
        objects.append(f"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Contents {4 + 2 * p} "
                       f"0 R /Resources << /Font << /F1 {font} 0 R >> >> >>".encode())
        objects.append(b"<< /Length %d >>\nstream\n" % len(text) + text + b"\nendstream")
    objects.append(b"<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>")
    out = bytearray(b"%PDF-1.4\n%\xe2\xe3\xcf\xd3\n")
    offsets = []
    for number, body in enumerate(objects, start=1):
        offsets.append(len(out))
        out += b"%d 0 obj\n" % number + body + b"\nendobj\n"
    xref = len(out)
    out += b"xref\n0 %d\n0000000000 65535 f \n" % (len(objects) + 1)
    for offset in offsets:
        out += b"%010d 00000 n \n" % offset
    out += b"trailer\n<< /Size %d /Root 1 0 R >>\nstartxref\n%d\n%%%%EOF\n" % (len(objects) + 1, xref)
    return bytes(out)


def make_pdfs(tree, count, work):
    rng = tree.rng
    folders = [os.path.join(tree.home, "Documents", name) for name in ("Papers", "Invoices", "Manuals")]
    folders.append(os.path.join(tree.home, "Downloads", "Papers"))
    rows = []
    for i in range(count):
        folder = rng.choice(folders)
        os.makedirs(folder, exist_ok=True)
        kind = "pdf"
        data = pdf_bytes(rng.randrange(1, 40), f"Document {i} {rng.choice(WORDS)}")
        if i % 10 == 7:
            data = data[: len(data) * 2 // 3]  # truncated: the cross-reference table is gone
            kind = "damaged-pdf"
        elif i % 10 == 9:
            data = b"%PDF-1.4\n" + bytes(rng.randrange(256) for _ in range(3000))
            kind = "damaged-pdf"
        name = tree.unique_name(folder, f"{rng.choice(WORDS).capitalize()} {i:04d}.pdf")
        path = os.path.join(folder, name)
        with open(path, "wb") as handle:
            handle.write(data)
        if i % 25 == 3 and shutil.which("qpdf"):
            locked = os.path.join(work, "locked.pdf")
            run(["qpdf", "--encrypt", "secret", "owner", "256", "--", path, locked])
            shutil.move(locked, path)
            kind = "locked-pdf"
        size = os.path.getsize(path)
        tree.bytes += size
        row = {"path": path, "size": size, "content": tree.number(), "variant": None,
               "kind": kind, "visible": True}
        tree.files.append(row)
        rows.append(row)
    return rows


def make_project(tree, files, modules):
    """A git project with a node_modules folder: the scanner never enters it, other tools do."""
    rng = tree.rng
    project = os.path.join(tree.home, "Documents", "Work", "website")
    git = os.path.join(project, ".git")
    for folder in ("objects/pack", "refs/heads", "hooks"):
        os.makedirs(os.path.join(git, folder), exist_ok=True)
    with open(os.path.join(git, "HEAD"), "w") as handle:
        handle.write("ref: refs/heads/main\n")
    for i in range(files // 2):
        folder = os.path.join(git, "objects", f"{rng.randrange(256):02x}")
        tree.write(folder, f"{rng.getrandbits(152):038x}", rng.randrange(60, 4000), tree.number(),
                   kind="project", visible=False)
    tree.write(project, "package.json", 600, tree.number(), kind="project", visible=False)
    for i in range(files // 2):
        folder = os.path.join(project, rng.choice(["src", "src/components", "public", "styles", "test"]))
        tree.write(folder, f"{rng.choice(WORDS)}{i}.{rng.choice(['js', 'css', 'html', 'svg', 'json'])}",
                   log_normal_size(rng, 3000, 1.0, 200 * KIB), tree.number(), kind="project",
                   visible=False)
    # node_modules holds many tiny files, with the licence texts that packages repeat.
    licence = tree.number()
    for i in range(modules):
        package = os.path.join(project, "node_modules", f"{rng.choice(WORDS)}-{i // 12}")
        if i % 12 == 0:
            tree.write(package, "LICENSE", 1077, licence, kind="project", visible=False)
        else:
            tree.write(package, f"{rng.choice(['index', 'util', 'lib', 'main'])}{i}.js",
                       log_normal_size(rng, 1500, 1.0, 60 * KIB), tree.number(), kind="project",
                       visible=False)
    return [project]


def make_hidden(tree, count):
    """Hidden files and folders, one of them holding a copy of a visible file."""
    rng = tree.rng
    rows = []
    for i in range(count):
        top = rng.choice(list(TOP_FOLDERS))
        if i % 3 == 0:
            folder = os.path.join(tree.home, top, ".cache", f"part{i % 7}")
            name = f"blob{i}"
        else:
            folder = os.path.join(tree.home, top, rng.choice(TOP_FOLDERS[top]))
            name = rng.choice([".DS_Store", ".directory", f".~lock.{rng.choice(WORDS)}#", ".hidden"])
        rows.append(tree.write(folder, name, rng.randrange(40, 9000), tree.number(), kind="hidden",
                               visible=False))
    return rows


def personal(args):
    tree = Tree(args.root, args.seed)
    rng = tree.rng
    with tempfile.TemporaryDirectory() as work:
        folders = make_folders(tree, max(40, args.files // 18))
        total_weight = sum(weight for _, weight in folders)
        project_dirs = make_project(tree, max(20, args.files // 100), max(60, args.files // 25))
        hidden = make_hidden(tree, max(10, args.files // 200))
        images = make_images(tree, args.images, work) if args.images else []
        pdfs = make_pdfs(tree, args.pdfs, work) if args.pdfs else []

        special = 0
        # Large exact duplicates, some above the full-digest chunk size many times over.
        large = []
        for i in range(max(2, args.files // 5000)):
            size = rng.randrange(8 * MIB, min(args.max_size, 50 * MIB) + 1)
            original = tree.write(weighted_folder(rng, folders, total_weight),
                                  tree.file_name(rng.choice(["mp4", "mov", "zip", "dmg"])),
                                  size, tree.number(), kind="large")
            large.append(tree.files[-1])
            special += 1
        # Same-size files that differ only in the first, a middle or the last byte: the sample
        # digest tells the first and last apart; the middle ones need a full read.
        for i in range(max(3, args.files // 1000)):
            size = rng.choice([rng.randrange(200 * KIB, 4 * MIB), rng.randrange(4 * MIB, 20 * MIB)])
            base = tree.number()
            folder = weighted_folder(rng, folders, total_weight)
            extension = rng.choice(["mp4", "zip", "pdf", "psd"])
            tree.write(folder, tree.file_name(extension), size, base, kind="near-base")
            where = i % 3
            offset = {0: 0, 1: size // 2 + rng.randrange(-1000, 1000), 2: size - 1}[where]
            for k in range(rng.randrange(1, 3)):
                tree.write(weighted_folder(rng, folders, total_weight), tree.file_name(extension),
                           size, base, variant=(offset, k + 1),
                           kind="near-" + ["first", "middle", "last"][where])
            special += 1
        # Files of 64-128 KiB, whose sample digest is the whole file: equal sizes, some identical.
        for i in range(max(4, args.files // 250)):
            size = rng.randrange(64 * KIB + 1, 128 * KIB + 1) if i % 4 else 128 * KIB
            tree.write(weighted_folder(rng, folders, total_weight), tree.file_name(pick_extension(rng)),
                       size, tree.number(), kind="mid")
            if i % 3 == 0:
                tree.copy(tree.files[-1], weighted_folder(rng, folders, total_weight),
                          tree.file_name(pick_extension(rng)), kind="mid")
            else:
                tree.write(weighted_folder(rng, folders, total_weight),
                           tree.file_name(pick_extension(rng)), size, tree.number(), kind="mid")
            special += 2

        zero = max(5, args.files // 100)
        for i in range(zero):
            tree.write(weighted_folder(rng, folders, total_weight), tree.file_name(pick_extension(rng)),
                       0, tree.number(), kind="empty")

        ordinary_target = args.files - len(tree.files)
        duplicate_target = args.files // 10
        copies_planned = 0
        originals = []
        for i in range(max(0, ordinary_target - duplicate_target)):
            extension = pick_extension(rng)
            size = log_normal_size(rng, args.median, args.sigma, args.max_size)
            tree.write(weighted_folder(rng, folders, total_weight), tree.file_name(extension), size,
                       tree.number())
            originals.append(tree.files[-1])
        # Duplicates in groups of 2-4: one to three copies of an original, elsewhere or beside it,
        # under its own name, a "copy" name or a new one. The large files get copies too.
        candidates = large + rng.sample(originals, min(len(originals), duplicate_target))
        for source in candidates:
            if copies_planned >= duplicate_target:
                break
            for k in range(rng.choice([1, 1, 1, 2, 2, 3])):
                name = os.path.basename(source["path"])
                style = rng.random()
                if style < 0.3:
                    stem, dot, ext = name.rpartition(".")
                    name = f"{stem} copy.{ext}" if dot else name + " copy"
                elif style < 0.5:
                    name = tree.file_name(source["path"].rsplit(".", 1)[-1] if "." in name else "")
                tree.copy(source, weighted_folder(rng, folders, total_weight), name)
                copies_planned += 1
        # A copy hidden away, which nobody counts.
        if originals:
            tree.copy(originals[0], os.path.join(tree.home, "Documents", ".Trash-backup"),
                      os.path.basename(originals[0]["path"]), kind="hidden", visible=False)

    return tree, {"images": [r["path"] for r in images], "pdfs": [r["path"] for r in pdfs],
                  "skipped_folders": project_dirs}


def loose(args):
    tree = Tree(args.root, args.seed)
    rng = tree.rng
    downloads = os.path.join(tree.home, "Downloads")
    os.makedirs(downloads, exist_ok=True)
    for i in range(args.files):
        extension = pick_extension(rng)
        tree.write(downloads, tree.file_name(extension), rng.randrange(MIN_SIZE, 16 * KIB),
                   tree.number())
    return tree, {}


def many(args):
    tree = Tree(args.root, args.seed)
    rng = tree.rng
    documents = os.path.join(tree.home, "Documents")
    per_folder = 100
    for i in range(args.files):
        if i % per_folder == 0:
            folder = os.path.join(documents, f"{i // 100_000:02d}", f"{(i // 1000) % 100:02d}",
                                  f"{(i // per_folder) % 10}")
            os.makedirs(folder, exist_ok=True)
        # Empty files are the cheapest to make; the scanner reads no content on a quick scan.
        name = f"file-{i:07d}.{rng.choice(['txt', 'jpg', 'pdf', 'docx', 'png', 'mp3'])}"
        open(os.path.join(folder, name), "wb").close()
    tree.files = []
    return tree, {"count": args.files}


# The category folders Start sorts into, and the extensions each takes; project documents go to
# "07 Projects", anything else to "06 Other Files".
CATEGORY_FOLDERS = [
    ("01 Videos", "mp4 mov m4v avi mkv webm mpeg mpg mts m2ts"),
    ("02 Images", "jpg jpeg png gif heic heif webp avif tif tiff bmp svg cr3 cr2 arw nef dng"),
    ("03 Audio", "mp3 wav aac m4a aiff aif flac ogg"),
    ("04 Documents", "pdf doc docx xls xlsx csv ppt pptx txt rtf pages numbers key html"),
    ("05 Installers and ZIP", "dmg pkg zip rar 7z tar gz"),
]
OTHER_FILES = "06 Other Files"
PROJECT_EXTENSIONS = set("aep aepx prproj drp fcpxml logicx sesx rpp als flp blend c4d psd psb ai "
                         "indd sketch fig resolve".split())


def category_folder(extension):
    for folder, extensions in CATEGORY_FOLDERS:
        if extension.lower() in extensions.split():
            return folder
    return OTHER_FILES


def nested_folders(tree, base, count, max_depth=4):
    """`count` folders below `base` (itself included), named like a person's, at most `max_depth`
    levels deep."""
    rng = tree.rng
    folders = [base]
    known = {base}
    os.makedirs(base, exist_ok=True)
    while len(folders) < count:
        parent = rng.choice(folders)
        if parent[len(base):].count("/") >= max_depth:
            continue
        child = rng.choice(SUB_WORDS + WORDS)
        if rng.random() < 0.4:
            child = child.capitalize() + " " + str(rng.randrange(1, 100))
        path = os.path.join(parent, child)
        if path in known:
            continue
        known.add(path)
        folders.append(path)
    for folder in folders:
        os.makedirs(folder, exist_ok=True)
        tree.taken.setdefault(os.path.dirname(folder), set()).add(os.path.basename(folder))
    return folders


def copy_name(name, rng):
    """The name a copy gets: the same, a "copy" name, or a numbered one."""
    style = rng.random()
    stem, dot, ext = name.rpartition(".")
    if not dot:
        stem, ext = name, ""
    if style < 0.3:
        stem += " copy"
    elif style < 0.45:
        stem += f" ({rng.randrange(1, 4)})"
    return f"{stem}.{ext}" if ext else stem


def add_copies(tree, originals, count, place):
    """`count` exact copies of originals, in groups of 2-4 (one to three copies of a file);
    `place(source)` gives each copy's folder and name."""
    rng = tree.rng
    made = 0
    for source in rng.sample(originals, min(len(originals), count)):
        for _ in range(rng.choice([1, 1, 1, 2, 2, 3])):
            if made >= count:
                return made
            folder, name = place(source)
            tree.copy(source, folder, name)
            made += 1
    return made


def add_near_duplicates(tree, originals, count, where, place):
    """`count` files of the same size as an original that differ from it in one byte only, at the
    offset `where(source, i)`; `place(source)` gives each one's folder and name."""
    rng = tree.rng
    rows = []
    for i, source in enumerate(rng.sample(originals, min(len(originals), count))):
        offset, label = where(source, i)
        folder, name = place(source)
        tree.write(folder, name, source["size"], source["content"], variant=(offset, 1 + i % 255),
                   kind="near-" + label)
        rows.append(tree.files[-1])
    return rows


def first_middle_or_last(source, i):
    size = source["size"]
    where = ["first", "middle", "last"][i % 3]
    offset = {"first": 0, "middle": size // 2, "last": size - 1}[where]
    return offset, where


def small(args):
    """Many small files: most at most 64 KiB, a few up to 256 KiB, in nested folders of about 50;
    about 10 % exact copies in groups of 2-4 and 2 % same-size files differing in one byte."""
    tree = Tree(args.root, args.seed)
    rng = tree.rng
    documents = os.path.join(tree.home, "Documents")
    folders = nested_folders(tree, documents, max(10, args.files // 50))
    copies = args.files // 10
    near = args.files // 50
    originals = []
    for i in range(args.files - copies - near):
        if rng.random() < 0.03:
            size = int(math.exp(rng.uniform(math.log(64 * KIB), math.log(256 * KIB))))
        else:
            size = bounded_log_normal_size(rng, args.median, args.sigma, MIN_SIZE, 64 * KIB)
        tree.write(rng.choice(folders), tree.file_name(pick_extension(rng)), size, tree.number())
        originals.append(tree.files[-1])
    add_near_duplicates(tree, originals, near, first_middle_or_last,
                        lambda source: (rng.choice(folders),
                                        tree.file_name(pick_extension(rng))))
    add_copies(tree, originals, copies,
               lambda source: (rng.choice(folders),
                               copy_name(os.path.basename(source["path"]), rng)))
    return tree, {"roots": [documents]}


def videos(args):
    """A few large files: sizes spread evenly between --min-size and --max-size, in Videos/YEAR/
    EVENT; about 15 % exact copies and 15 % same-size files differing in one byte, two in three of
    them in the middle (which only a full read tells apart)."""
    tree = Tree(args.root, args.seed)
    rng = tree.rng
    base = os.path.join(tree.home, "Videos")
    low, high = args.min_size, args.max_size
    folders = [os.path.join(base, str(year), f"{rng.choice(WORDS).capitalize()} {n}")
               for year in range(2018, 2025) for n in range(1, 3)]
    copies = max(1, args.files * 15 // 100)
    near = max(1, args.files * 15 // 100)
    originals = []
    for i in range(max(1, args.files - copies - near)):
        extension = rng.choice(["mp4", "mp4", "mov", "mkv"])
        stem = (f"VID_20{rng.randrange(18, 25)}{rng.randrange(1, 13):02d}{rng.randrange(1, 29):02d}_"
                f"{rng.randrange(0, 24):02d}{rng.randrange(0, 60):02d}{rng.randrange(0, 60):02d}")
        tree.write(rng.choice(folders), f"{stem}.{extension}", rng.randrange(low, high + 1),
                   tree.number(), kind="video")
        originals.append(tree.files[-1])

    def middle_or_last(source, i):
        size = source["size"]
        if i % 3 == 2:
            return size - 1, "last"
        return size // 2 + rng.randrange(-4096, 4096), "middle"

    # Edited exports of the same length: another name beside the original.
    add_near_duplicates(tree, originals, near, middle_or_last,
                        lambda source: (os.path.dirname(source["path"]),
                                        "Edited " + os.path.basename(source["path"])))
    add_copies(tree, originals, copies,
               lambda source: (rng.choice(folders + [os.path.join(base, "Backup")]),
                               copy_name(os.path.basename(source["path"]), rng)))
    return tree, {"roots": [base]}


def photos(args):
    """A photo library: Pictures/YEAR/YEAR-MM-DD folders of 5-60 camera-numbered photos of
    --min-size to --max-size bytes (log-normal around --median), with mtimes on their day; a few
    days imported twice (a second folder with the same files) and 0.5 % same-size files
    differing in one byte near the start (an edited header)."""
    tree = Tree(args.root, args.seed)
    rng = tree.rng
    base = os.path.join(tree.home, "Pictures")
    low, high = args.min_size, args.max_size
    copies_target = args.files // 20
    near = max(1, args.files // 200)
    own = args.files - copies_target - near
    counter = rng.randrange(1, 9000)
    days = []
    day = EPOCH_2017 + rng.randrange(0, 30) * 86400
    originals = []
    while len(originals) < own:
        day += rng.randrange(1, 12) * 86400
        label = datetime.datetime.fromtimestamp(day, datetime.timezone.utc)
        folder = os.path.join(base, f"{label:%Y}", f"{label:%Y-%m-%d}")
        rows = []
        for _ in range(min(own - len(originals), rng.randrange(5, 61))):
            counter = counter % 9999 + 1
            size = bounded_log_normal_size(rng, args.median, args.sigma, low, high)
            when = day + rng.randrange(8 * 3600, 22 * 3600)
            tree.write(folder, f"{rng.choice(['IMG', 'IMG', 'DSC'])}_{counter:04d}.JPG", size,
                       tree.number(), kind="photo", when=when)
            rows.append(tree.files[-1])
        originals.extend(rows)
        days.append((folder, rows))
    # Days imported twice: the importer made a second folder beside the first, with all of the
    # day's photos or, for the last one, those it copied before it was stopped.
    made = 0
    for folder, rows in rng.sample(days, len(days)):
        if made >= copies_target:
            break
        for row in rows[: copies_target - made]:
            tree.copy(row, folder + " (2)", os.path.basename(row["path"]),
                      when=os.path.getmtime(row["path"]))
            made += 1
    add_near_duplicates(tree, originals, near,
                        lambda source, i: (rng.randrange(20, 2000), "header"),
                        lambda source: (os.path.dirname(source["path"]),
                                        os.path.basename(source["path"]).replace(".JPG", "_edit.JPG")))
    return tree, {"roots": [base]}


def sorted_home(args):
    """Documents as Start leaves it: every file in a category folder ("01 Videos" to "06 Other
    Files"), directly or in a subfolder of one, or in one of the person's own nested folders
    beside them, so that nothing is loose. Exact copies (10 %) lie only in subfolders, where
    Start leaves them; same-size files differing in one byte (2 %) lie anywhere."""
    tree = Tree(args.root, args.seed)
    rng = tree.rng
    documents = os.path.join(tree.home, "Documents")
    own = nested_folders(tree, os.path.join(documents, "Archive"), max(5, args.files // 200))
    sub = {}
    for folder, _ in CATEGORY_FOLDERS + [(OTHER_FILES, "")]:
        top = os.path.join(documents, folder)
        os.makedirs(top, exist_ok=True)
        sub[folder] = [os.path.join(top, name) for name in rng.sample(SUB_WORDS, 4)]
    copies = args.files // 10
    near = args.files // 50

    def extension():
        while True:
            chosen = pick_extension(rng)
            if chosen not in PROJECT_EXTENSIONS:
                return chosen

    def extension_of(path):
        name = os.path.basename(path)
        return name.rpartition(".")[2] if "." in name else ""

    def folder_for(name, nested):
        category = category_folder(extension_of(name))
        if nested:
            return rng.choice(sub[category] + own[1:])
        return os.path.join(documents, category)

    # Files with copies lie only in subfolders: Start would trash a copy lying directly in a
    # category folder, and this tree must stay as it is.
    originals, nested = [], []
    for i in range(args.files - copies - near):
        name = tree.file_name(extension())
        inside = rng.random() < 0.4
        tree.write(folder_for(name, inside), name,
                   bounded_log_normal_size(rng, args.median, args.sigma, MIN_SIZE, args.max_size),
                   tree.number())
        originals.append(tree.files[-1])
        if inside:
            nested.append(tree.files[-1])
    add_near_duplicates(tree, originals, near, first_middle_or_last,
                        lambda source: (folder_for(source["path"], rng.random() < 0.4),
                                        tree.file_name(extension_of(source["path"]))))
    add_copies(tree, nested, copies,
               lambda source: (folder_for(source["path"], True),
                               copy_name(os.path.basename(source["path"]), rng)))
    return tree, {"roots": [documents]}


def media(args):
    """A health-check set: --images images in all, about one in nine of them damaged, and --pdfs
    PDFs, a fifth of them damaged or locked."""
    tree = Tree(args.root, args.seed)
    valid = args.images
    while valid > 0 and valid + max(1, valid // 8) > args.images:
        valid -= 1
    with tempfile.TemporaryDirectory() as work:
        images = make_images(tree, valid, work) if valid else []
        pdfs = make_pdfs(tree, args.pdfs, work) if args.pdfs else []
    return tree, {"images": [r["path"] for r in images], "pdfs": [r["path"] for r in pdfs],
                  "roots": [os.path.join(tree.home, name) for name in
                            ("Documents", "Downloads", "Desktop") if
                            os.path.isdir(os.path.join(tree.home, name))]}


KINDS = {"personal": personal, "loose": loose, "many": many, "small": small, "videos": videos,
         "photos": photos, "sorted": sorted_home, "media": media}
# Size parameters a kind takes when they are not given.
SIZE_DEFAULTS = {"median": 8 * KIB, "sigma": 2.0, "max_size": 50 * MIB}
SIZE_DEFAULTS_OF = {
    "small": {"median": 6 * KIB, "sigma": 1.2},
    "videos": {"min_size": 20_000_000, "max_size": 100_000_000},
    "photos": {"median": 1_000_000, "sigma": 0.4, "min_size": 1_000_000, "max_size": 8_000_000},
    "sorted": {"median": 16 * KIB, "sigma": 1.8},
}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("kind", choices=list(KINDS))
    parser.add_argument("root")
    parser.add_argument("--files", type=int, default=50_000)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--median", type=int, help="median file size in bytes")
    parser.add_argument("--sigma", type=float, help="log-normal spread of sizes")
    parser.add_argument("--min-size", type=int, help="smallest file (videos, photos)")
    parser.add_argument("--max-size", type=int)
    parser.add_argument("--images", type=int, default=240)
    parser.add_argument("--pdfs", type=int, default=200)
    args = parser.parse_args()
    for key, value in {**SIZE_DEFAULTS, **SIZE_DEFAULTS_OF.get(args.kind, {})}.items():
        if getattr(args, key) is None:
            setattr(args, key, value)

    # What was asked for, as the manifest records it (the smallest size only where a kind has one).
    parameters = {k: v for k, v in vars(args).items() if k != "root" and v is not None}
    manifest_path = os.path.join(args.root, "manifest.json")
    if os.path.exists(manifest_path):
        with open(manifest_path) as handle:
            if json.load(handle).get("parameters") == parameters:
                print(f"{args.root}: already generated", file=sys.stderr)
                return
        sys.exit(f"{args.root} holds a tree made with other parameters; remove it first")
    if os.path.exists(args.root) and os.listdir(args.root):
        sys.exit(f"{args.root} is not empty; remove it first")

    tree, extra = KINDS[args.kind](args)
    visible = [row for row in tree.files if row["visible"]]
    groups = {}
    for row in visible:
        if row["size"] > 0:
            variant = tuple(row["variant"]) if row["variant"] else None
            groups.setdefault((row["content"], variant, row["size"]), []).append(row)
    manifest = {
        "parameters": parameters,
        "home": tree.home,
        "files": extra.get("count", len(tree.files)),
        "bytes": tree.bytes,
        "scanned_files": len(visible),
        # What the duplicate analysis must find among the files the scanner lists.
        "expected_duplicates": sum(len(g) - 1 for g in groups.values() if len(g) > 1),
        "made": dict(sorted(collections.Counter(row["kind"] for row in tree.files).items())),
        **extra,
    }
    with open(manifest_path, "w") as handle:
        json.dump(manifest, handle, indent=1)
    print(f"{args.root}: {manifest['files']} files, {manifest['bytes'] / 1e9:.2f} GB", file=sys.stderr)


if __name__ == "__main__":
    main()
