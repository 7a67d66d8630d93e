"""Copies of the project to be changed and built."""

import shutil
import subprocess


def copy_project(project, tree):
    """What git knows of, and what is new. What has not changed keeps its time, and is not built again."""
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                            cwd=project, capture_output=True, text=True, check=True).stdout.split("\0")
    for name in filter(None, listed):
        source, target = project / name, tree / name
        if not source.is_file():
            continue
        if not target.exists() or target.read_bytes() != source.read_bytes():
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, target)
