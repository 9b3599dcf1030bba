"""Disks that lose their power: image files on a file system that can clone them while they are in use."""

import os
import shutil
import subprocess
import tempfile
import threading
import time

REGION = 320 << 20  # bytes; the least that each of the file systems takes
STORE = 12 << 30  # sparse

# How each is made and mounted. A clone has the identity of its original, which is mounted at the same time.
KINDS = {
    "ext4": (["mkfs.ext4", "-q", "-F"], []),
    "xfs": (["mkfs.xfs", "-q", "-f"], ["-o", "nouuid"]),
    "btrfs": (["mkfs.btrfs", "-q", "-f"], []),
}

_losetup = threading.Lock()  # two of them at once may choose the same device


def run(*command):
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    if result.returncode != 0:
        raise RuntimeError(f"{' '.join(command)}: {result.stderr.strip()}")
    return result.stdout.strip()


def unmount(place):
    """Somebody may be looking at it just now."""
    for _ in range(100):
        if subprocess.run(["umount", place], capture_output=True, check=False).returncode == 0:
            return
        time.sleep(0.05)
    run("umount", "--lazy", place)


class Mounted:
    """The regions of an image, each on a loop device of its own and mounted in a folder."""

    def __init__(self, image, kind, places):
        self.devices, self.places = [], []
        try:
            for number, place in enumerate(places):
                with _losetup:
                    device = run(
                        "losetup", "--find", "--show", f"--offset={number * REGION}", f"--sizelimit={REGION}", image
                    )
                self.devices.append(device)
                os.makedirs(place, exist_ok=True)
                if kind is not None:
                    run("mount", "-t", kind, *KINDS[kind][1], device, place)
                    self.places.append(place)
        except Exception:
            self.close()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        for place in self.places:
            unmount(place)
        for device in self.devices:
            run("losetup", "--detach", device)
        self.devices, self.places = [], []


class Store:
    """Where the images are: a small XFS in memory, because XFS clones a file in one moment while it is written."""

    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="vantrel-crash-")
        self.memory = os.path.join(self.folder, "memory")
        self.place = os.path.join(self.folder, "store")
        os.makedirs(self.memory)
        os.makedirs(self.place)
        run("mount", "-t", "tmpfs", "-o", f"size={STORE}", "tmpfs", self.memory)
        image = os.path.join(self.memory, "store.img")
        with open(image, "wb") as file:
            file.truncate(STORE)
        run("mkfs.xfs", "-q", "-m", "reflink=1", image)
        run("mount", "-o", "loop", image, self.place)

    def close(self):
        unmount(self.place)
        unmount(self.memory)
        shutil.rmtree(self.folder)


class Disk:
    """One image with two regions, so that one clone cuts the power of both in the same moment."""

    def __init__(self, store, name, kind):
        self.kind = kind
        self.base = os.path.join(store.place, name)
        self.mounts = os.path.join(store.folder, name)
        self.image = f"{self.base}.img"
        with open(self.image, "wb") as file:
            file.truncate(2 * REGION)
        places = [f"{self.mounts}-a", f"{self.mounts}-b"]
        with Mounted(self.image, None, places) as bare:
            for device in bare.devices:
                run(*KINDS[kind][0], device)
        self.mounted = Mounted(self.image, kind, places)
        self.a, self.b = places

    def cut(self, number):
        """The disk as a power cut in this moment would leave it; the name of the image."""
        image = f"{self.base}.cut{number}"
        run("cp", "--reflink=always", self.image, image)
        return image

    def after(self, image):
        """The two file systems of a cut disk, as they come up again."""
        return Mounted(image, self.kind, [f"{self.mounts}-cut-a", f"{self.mounts}-cut-b"])

    def close(self):
        self.mounted.close()
